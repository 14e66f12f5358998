// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXConfiguredTrack.h>
#include <KelGeoLocationSettings.h>
#include <KelGeoPositionRect.h>
#include <KelTemporarySettings.h>
#include <KelTestSupport.h>
#include <KelTestTracks.h>

#include <QTemporaryDir>
#include <QtTest>

#include <limits>

using namespace KelTestTracks;

class tst_KelGPXConfiguredTrack : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void defaultTrackHasTheUsersConfiguration();
    void constructorSettlesTheShape_data();
    void constructorSettlesTheShape();
    void constructorFromAPoint();
    void xmlConstructorKeepsTheShapeAsWritten();
    void missingTrackInXml();
    void writtenForm();
    void writtenIntoAStore();
    void readBackIsEqual();

    void effectiveShape_data();
    void effectiveShape();
    void autoConfigureTrackShape_data();
    void autoConfigureTrackShape();
    void setConfiguration_data();
    void setConfiguration();
    void setConfigurationReplacesEverythingElse();
    void setTrackLeavesTheConfiguration();

    void positionRelativeFromStart_data();
    void positionRelativeFromStart();
    void drawingPoints_data();
    void drawingPoints();

    void differentAspects_data();
    void differentAspects();
    void equality();
    void forwardsToTheConfiguration();
    void settersTellWhetherTheValueChanged();
    void forwardsToTheTrack();
    void wouldChangeHaloToVisibleAgainst_data();
    void wouldChangeHaloToVisibleAgainst();
    void isATrackElement();

private:
    KelTemporarySettings m_settings;
};

namespace
{

KelGPXTrackConfiguration usersConfiguration()
{
    KelGPXTrackConfiguration made = KelGPXTrackConfiguration::defaultValue();
    made.setLineWidth(3.0);
    made.setLineColor(QColor(1, 2, 3));
    return made;
}

/// No value as in a default.
KelGPXTrackConfiguration richConfiguration()
{
    return KelGPXTrackConfiguration(QColor(10, 20, 30, 40), 7.0, QColor(50, 60, 70, 80), 9.0,
                                    KelGPXTrackDisplayOptions(DisplayFill), KelGPXMarkerShape(MarkerStar9),
                                    KelGPXTrackShape(TrackShapePolygon), KelPenStyle(Qt::DashDotLine), 30, 5);
}

/// Has that configured shape, whatever suits the track: reading leaves shapes as they are written.
KelGPXConfiguredTrack withShapeAsWritten(const KelGPXTrack &track, int configuredShape)
{
    QDomDocument document;
    QDomElement entry = document.createElement(QStringLiteral("entry"));
    document.appendChild(entry);
    KelGPXTrackConfiguration written = KelGPXTrackConfiguration::defaultValue();
    written.setTrackShape(KelGPXTrackShape(configuredShape));
    written.toXml(entry);
    KelGPXConfiguredTrack made(entry, QDir(QString()));
    made.setTrack(track);
    return made;
}

QStringList childNames(const QDomElement &element)
{
    QStringList names;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        names.append(child.tagName());
    return names;
}

} // namespace

void tst_KelGPXConfiguredTrack::initTestCase()
{
    KelGeoLocationSettings::instance().setDefaultTrackConfiguration(usersConfiguration());
}

void tst_KelGPXConfiguredTrack::defaultTrackHasTheUsersConfiguration()
{
    const KelGPXConfiguredTrack fresh;
    QVERIFY(fresh.track() == KelGPXTrack());
    QVERIFY(fresh.configuration() == usersConfiguration());
    QVERIFY(!fresh.track().isValid());
    QCOMPARE(fresh.configuration().trackShape().toInt(), 256);
}

void tst_KelGPXConfiguredTrack::constructorSettlesTheShape_data()
{
    QTest::addColumn<QString>("coordinates");
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("kept");

    QTest::newRow("automatic line") << LINE << 256 << 4;
    QTest::newRow("automatic ring") << RING << 256 << 8;
    QTest::newRow("automatic point") << POINT << 256 << 1;
    QTest::newRow("unknown line") << LINE << 0 << 4;
    QTest::newRow("no points at all") << QString() << 256 << 0;
    QTest::newRow("automatic bit beside another") << RING << (256 | 4) << 8;
    QTest::newRow("line configured as polygon") << LINE << 8 << 8;
    QTest::newRow("ring configured as point") << RING << 1 << 1;
    QTest::newRow("line configured as hop") << LINE << 2 << 2;
    QTest::newRow("point configured as line is kept") << POINT << 4 << 4;
}

void tst_KelGPXConfiguredTrack::constructorSettlesTheShape()
{
    QFETCH(QString, coordinates);
    QFETCH(int, given);
    KelGPXTrackConfiguration configuration = KelGPXTrackConfiguration::defaultValue();
    configuration.setTrackShape(KelGPXTrackShape(given));
    const KelGPXConfiguredTrack made(track(coordinates), configuration);
    QTEST(made.configuration().trackShape().toInt(), "kept");
}

void tst_KelGPXConfiguredTrack::constructorFromAPoint()
{
    const KelGPXTrackPoint point(KelGeoPosition(53.5, 8.5), 12, QDateTime(), QStringLiteral("harbour"));
    const KelGPXConfiguredTrack made(point, configuration(TrackShapeAuto));

    QCOMPARE(made.name(), QStringLiteral("harbour"));
    QVERIFY(made.isSinglePoint());
    QVERIFY(made.firstPoint() == KelGeoPosition(53.5, 8.5));
    QCOMPARE(made.configuration().trackShape().toInt(), 1);
    QCOMPARE(made.track().shape().toInt(), 1);
}

void tst_KelGPXConfiguredTrack::xmlConstructorKeepsTheShapeAsWritten()
{
    const QDomDocument xml = KelTestSupport::document(QStringLiteral(
        "<entry smoothing='40'><trk><name>walk</name><shape>polygon</shape><trkseg><compressedPoints>8,50 9,51"
        "</compressedPoints></trkseg></trk><pensize>7</pensize><trackShape>auto</trackShape></entry>"));
    const KelGPXConfiguredTrack made(xml.documentElement(), QDir(QString()));

    QCOMPARE(made.name(), QStringLiteral("walk"));
    QCOMPARE(made.track().countPoints(), 2);
    QCOMPARE(made.lineWidth().value(), 7.0);
    QCOMPARE(made.smoothingStrength(), 40);
    QCOMPARE(made.configuration().trackShape().toInt(), 256);
    QCOMPARE(made.effectiveShape().toInt(), 8); // the track's own, not the natural 4
}

void tst_KelGPXConfiguredTrack::missingTrackInXml()
{
    const QDomDocument xml = KelTestSupport::document(QStringLiteral("<entry><pensize>7</pensize></entry>"));
    const KelGPXConfiguredTrack made(xml.documentElement(), QDir(QString()));

    QVERIFY(made.track() == KelGPXTrack());
    QCOMPARE(made.lineWidth().value(), 7.0);
    QVERIFY(KelGPXConfiguredTrack(QDomElement(), QDir(QString())).track() == KelGPXTrack());
}

void tst_KelGPXConfiguredTrack::writtenForm()
{
    QDomDocument document;
    QDomElement host = document.createElement(QStringLiteral("host"));
    document.appendChild(host);
    host.appendChild(document.createElement(QStringLiteral("before")));
    configured(QStringLiteral("walk")).toXml(host, QStringLiteral("entry"), QDir(QString()));

    QCOMPARE(childNames(host), QStringList({"before", "entry"}));
    QVERIFY(host.attributes().isEmpty());
    const QDomElement entry = host.lastChildElement();
    const QStringList names = childNames(entry);
    QCOMPARE(names.mid(0, 8), QStringList({"trk", "pensize", "color", "fillcolor", "halosize", "displayOptions",
                                           "markerShape", "trackShape"}));
    QCOMPARE(names.size(), 9); // and the pen style's own
    QCOMPARE(entry.attribute(QStringLiteral("smoothing")), QStringLiteral("100"));
    QCOMPARE(entry.attribute(QStringLiteral("smoothingSteps")), QStringLiteral("1"));
    QCOMPARE(childNames(entry.firstChildElement(QStringLiteral("trk"))), QStringList({"name", "shape", "trkseg"}));
}

void tst_KelGPXConfiguredTrack::writtenIntoAStore()
{
    const QTemporaryDir store;
    QVERIFY(store.isValid());
    const KelGPXConfiguredTrack original = configured(QStringLiteral("stored walk"));
    QDomDocument document;
    QDomElement host = document.createElement(QStringLiteral("host"));
    document.appendChild(host);
    original.toXml(host, QStringLiteral("entry"), QDir(store.path()));

    const QDomElement entry = host.firstChildElement(QStringLiteral("entry"));
    const QDomElement trk = entry.firstChildElement(QStringLiteral("trk"));
    QCOMPARE(childNames(trk), QStringList({"include"}));
    QVERIFY(QFileInfo::exists(store.filePath(trk.text())));
    QCOMPARE(entry.firstChildElement(QStringLiteral("pensize")).text(), QStringLiteral("10"));
    QVERIFY(KelGPXConfiguredTrack(entry, QDir(store.path())) == original);
}

void tst_KelGPXConfiguredTrack::readBackIsEqual()
{
    const KelGPXConfiguredTrack original(track(RING), richConfiguration());
    QDomDocument document;
    QDomElement host = document.createElement(QStringLiteral("host"));
    document.appendChild(host);
    original.toXml(host, QStringLiteral("entry"), QDir(QString()));

    const KelGPXConfiguredTrack copy(host.firstChildElement(), QDir(QString()));
    QVERIFY(copy.configuration() == richConfiguration());
    QVERIFY(copy == original);
}

void tst_KelGPXConfiguredTrack::effectiveShape_data()
{
    QTest::addColumn<QString>("coordinates");
    QTest::addColumn<int>("ownShape");
    QTest::addColumn<int>("configuredShape");
    QTest::addColumn<int>("effective");

    QTest::newRow("a one-point track configured as linestring is drawn as point") << POINT << 4 << 4 << 1;
    QTest::newRow("a one-point track configured as polygon") << POINT << 8 << 8 << 1;
    QTest::newRow("automatic takes the track's own shape") << LINE << 8 << 256 << 8;
    QTest::newRow("automatic takes the track's own shape, not the natural one") << RING << 4 << 256 << 4;
    QTest::newRow("the configured shape") << RING << 8 << 4 << 4;
    QTest::newRow("ring configured as point") << RING << 8 << 1 << 1;
    QTest::newRow("unknown stays unknown") << LINE << 4 << 0 << 0;
    QTest::newRow("automatic bit beside another is not automatic") << LINE << 8 << (256 | 4) << (256 | 4);
    QTest::newRow("no points") << QString() << 4 << 256 << 4;
}

void tst_KelGPXConfiguredTrack::effectiveShape()
{
    QFETCH(QString, coordinates);
    QFETCH(int, ownShape);
    QFETCH(int, configuredShape);
    const KelGPXConfiguredTrack made = withShapeAsWritten(
        track(coordinates, QStringLiteral("track"), KelGPXTrackShapeEnum(ownShape)), configuredShape);
    QCOMPARE(made.configuration().trackShape().toInt(), configuredShape);
    QCOMPARE(made.track().shape().toInt(), ownShape);

    QTEST(made.effectiveShape().toInt(), "effective");
}

void tst_KelGPXConfiguredTrack::autoConfigureTrackShape_data()
{
    constructorSettlesTheShape_data();
}

void tst_KelGPXConfiguredTrack::autoConfigureTrackShape()
{
    QFETCH(QString, coordinates);
    QFETCH(int, given);
    KelGPXConfiguredTrack made = withShapeAsWritten(track(coordinates), given);
    QCOMPARE(made.configuration().trackShape().toInt(), given);

    made.autoConfigureTrackShape();
    QTEST(made.configuration().trackShape().toInt(), "kept");
}

void tst_KelGPXConfiguredTrack::setConfiguration_data()
{
    QTest::addColumn<QString>("coordinates");
    QTest::addColumn<int>("oldShape");
    QTest::addColumn<int>("oldMarker");
    QTest::addColumn<int>("newShape");
    QTest::addColumn<int>("newMarker");
    QTest::addColumn<int>("shape");
    QTest::addColumn<int>("marker");

    QTest::newRow("point stays a point") << POINT << 1 << 1 << 4 << 32 << 1 << 32;
    QTest::newRow("point with marker 0 keeps the old marker") << POINT << 1 << 128 << 4 << 0 << 1 << 128;
    QTest::newRow("point with marker 0 on marker 0 gets the circle") << POINT << 1 << 0 << 4 << 0 << 1 << 2;
    QTest::newRow("point with an arrow keeps the arrow") << POINT << 1 << 1 << 1 << 1024 << 1 << 1024;
    QTest::newRow("point with unknown shape") << POINT << 1 << 1 << 0 << 8 << 1 << 8;
    QTest::newRow("line takes the new shape") << LINE << 4 << 1 << 8 << 2 << 8 << 2;
    QTest::newRow("line with unknown shape keeps the current one") << LINE << 8 << 1 << 0 << 2 << 8 << 2;
    QTest::newRow("line takes marker 0") << LINE << 4 << 1024 << 4 << 0 << 4 << 0;
    QTest::newRow("line takes automatic as it is") << LINE << 4 << 1 << 256 << 1 << 256 << 1;
    QTest::newRow("ring with unknown shape keeps the current one") << RING << 1 << 1 << 0 << 0 << 1 << 0;
}

void tst_KelGPXConfiguredTrack::setConfiguration()
{
    QFETCH(QString, coordinates);
    QFETCH(int, oldShape);
    QFETCH(int, oldMarker);
    QFETCH(int, newShape);
    QFETCH(int, newMarker);
    KelGPXConfiguredTrack made(track(coordinates),
                               configuration(KelGPXTrackShapeEnum(oldShape), KelGPXMarkerShapeEnum(oldMarker)));

    made.setConfiguration(configuration(KelGPXTrackShapeEnum(newShape), KelGPXMarkerShapeEnum(newMarker)));

    QTEST(made.configuration().trackShape().toInt(), "shape");
    QTEST(made.configuration().markerShape().toInt(), "marker");
}

void tst_KelGPXConfiguredTrack::setConfigurationReplacesEverythingElse()
{
    KelGPXConfiguredTrack made = configured(QStringLiteral("walk"));
    made.setConfiguration(richConfiguration());
    QVERIFY(made.configuration() == richConfiguration());
}

void tst_KelGPXConfiguredTrack::setTrackLeavesTheConfiguration()
{
    KelGPXConfiguredTrack made = configured(QStringLiteral("walk"));
    QCOMPARE(made.configuration().trackShape().toInt(), 4);
    made.setTrack(track(RING, QStringLiteral("ring")));
    QCOMPARE(made.name(), QStringLiteral("ring"));
    QCOMPARE(made.configuration().trackShape().toInt(), 4);
    QCOMPARE(made.naturalShape().toInt(), 8);
}

void tst_KelGPXConfiguredTrack::positionRelativeFromStart_data()
{
    QTest::addColumn<QString>("coordinates");
    QTest::addColumn<int>("shape");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<KelGeoPosition>("position");

    const KelGeoPosition first(50.0, 8.0);
    const KelGeoPosition second(50.2, 8.1);
    const KelGeoPosition third(50.1, 8.2);
    const KelGeoPosition last(50.3, 8.4);
    const KelGeoPosition none;
    const QString fourPoints = QStringLiteral("8,50 8.1,50.2 8.2,50.1 8.3,50.4");
    QTest::newRow("start of five points") << LINE << 4 << 0.0 << first;
    QTest::newRow("end") << LINE << 4 << 1.0 << last;
    QTest::newRow("middle") << LINE << 4 << 0.5 << third;
    QTest::newRow("below half way to the second point") << LINE << 4 << 0.1249 << first;
    QTest::newRow("half way to the second point is rounded up") << LINE << 4 << 0.125 << second;
    QTest::newRow("a little before the start") << LINE << 4 << -0.1249 << first;
    QTest::newRow("half a step before the start is rounded away from zero") << LINE << 4 << -0.125 << none;
    QTest::newRow("a little behind the end") << LINE << 4 << 1.1249 << last;
    QTest::newRow("half a step behind the end") << LINE << 4 << 1.125 << none;
    QTest::newRow("far before the start") << LINE << 4 << -1e30 << none;
    QTest::newRow("far behind the end") << LINE << 4 << 1e30 << none;
    QTest::newRow("no number") << LINE << 4 << std::numeric_limits<double>::quiet_NaN() << none;
    QTest::newRow("middle of four points is the third") << fourPoints << 4 << 0.5 << third;
    QTest::newRow("line drawn as point counts by index") << LINE << 1 << 0.5 << third;
    QTest::newRow("ring drawn as line counts by index") << RING << 4 << 0.5 << KelGeoPosition(54.0, 9.0);
    QTest::newRow("single point, start") << POINT << 1 << 0.0 << KelGeoPosition(53.5, 8.5);
    QTest::newRow("single point, end") << POINT << 1 << 1.0 << KelGeoPosition(53.5, 8.5);
    QTest::newRow("polygon has only its centre") << RING << 8 << 0.0 << KelGeoPosition(53.5, 8.5);
    QTest::newRow("polygon, any fraction") << RING << 8 << 5.0 << KelGeoPosition(53.5, 8.5);
    QTest::newRow("hop has only its centre") << LINE << 2 << 1.0 << KelGeoPosition(50.2, 8.2);
    QTest::newRow("no points, start") << QString() << 4 << 0.0 << none;
    QTest::newRow("no points, before the start") << QString() << 4 << -1.0 << none;
    QTest::newRow("no points, polygon") << QString() << 8 << 0.5 << none;
}

void tst_KelGPXConfiguredTrack::positionRelativeFromStart()
{
    QFETCH(QString, coordinates);
    QFETCH(int, shape);
    QFETCH(double, fraction);
    QFETCH(KelGeoPosition, position);
    const KelGPXConfiguredTrack made(track(coordinates), configuration(KelGPXTrackShapeEnum(shape)));

    const KelGeoPosition found = made.positionRelativeFromStart(fraction);
    QCOMPARE(found.isValid(), position.isValid());
    QCOMPARE(found, position);
}

void tst_KelGPXConfiguredTrack::drawingPoints_data()
{
    QTest::addColumn<QString>("coordinates");
    QTest::addColumn<int>("shape");
    QTest::addColumn<QList<KelGeoPosition>>("points");

    using Points = QList<KelGeoPosition>;
    const Points ring{{53.0, 8.0}, {53.0, 9.0}, {54.0, 9.0}, {54.0, 8.0}, {53.0, 8.0}};
    const Points line{{50.0, 8.0}, {50.2, 8.1}, {50.1, 8.2}, {50.4, 8.3}, {50.3, 8.4}};
    QTest::newRow("line as line") << LINE << 4 << line;
    QTest::newRow("line as polygon") << LINE << 8 << line;
    QTest::newRow("line as hop") << LINE << 2 << line;
    QTest::newRow("line as point: the middle point by index") << LINE << 1 << Points{{50.1, 8.2}};
    QTest::newRow("ring as polygon") << RING << 8 << ring;
    QTest::newRow("ring as line") << RING << 4 << ring;
    QTest::newRow("a polygon track configured as point is drawn as one marker at its centre")
        << RING << 1 << Points{{53.5, 8.5}};
    QTest::newRow("point as point") << POINT << 1 << Points{{53.5, 8.5}};
    QTest::newRow("point as line") << POINT << 4 << Points{{53.5, 8.5}};
    QTest::newRow("no points as line") << QString() << 4 << Points();
    QTest::newRow("no points as point: one invalid position") << QString() << 1 << Points{KelGeoPosition()};
}

void tst_KelGPXConfiguredTrack::drawingPoints()
{
    QFETCH(QString, coordinates);
    QFETCH(int, shape);
    QFETCH(QList<KelGeoPosition>, points);
    const KelGPXConfiguredTrack made(track(coordinates), configuration(KelGPXTrackShapeEnum(shape)));

    const KelGeoPositionList found = made.drawingPoints();
    QCOMPARE(QList<KelGeoPosition>(found.begin(), found.end()), points);
}

void tst_KelGPXConfiguredTrack::differentAspects_data()
{
    QTest::addColumn<KelGPXConfiguredTrack>("changed");
    QTest::addColumn<int>("aspects");

    const KelGPXConfiguredTrack plain = configured(QStringLiteral("walk"));
    KelGPXConfiguredTrack changed = plain;
    QTest::newRow("nothing") << changed << 0;
    changed.setLineWidth(11.0);
    QTest::newRow("line width") << changed << 1;
    changed.setLineColor(Qt::blue);
    QTest::newRow("line width and colour") << changed << 3;
    changed.setTrack(track(RING));
    QTest::newRow("everything") << changed << 7;
    changed = plain;
    changed.setLineColor(Qt::blue);
    QTest::newRow("line colour") << changed << 2;
    changed = plain;
    changed.setTrack(track(LINE, QStringLiteral("another name")));
    QTest::newRow("track, if only its name") << changed << 4;

    changed = plain;
    changed.setFillColor(Qt::blue);
    QTest::newRow("only the fill colour is no aspect") << changed << 0;
    changed = plain;
    changed.setPenStyle(Qt::DotLine);
    QTest::newRow("only the pen style is no aspect") << changed << 0;
    changed = plain;
    changed.setSmoothingStrength(3);
    changed.setSmoothingSteps(4);
    QTest::newRow("only the smoothing is no aspect") << changed << 0;
    changed = plain;
    KelGPXTrackConfiguration other = plain.configuration();
    other.setHaloWidth(30.0);
    other.setTrackShape(KelGPXTrackShape(TrackShapePolygon));
    other.setMarkerShape(KelGPXMarkerShape(MarkerX));
    other.setCurrentDisplayOptions(KelGPXTrackDisplayOptions(DisplayFill));
    changed.setConfiguration(other);
    QTest::newRow("only halo, shape, marker and options are no aspects") << changed << 0;
}

void tst_KelGPXConfiguredTrack::differentAspects()
{
    QFETCH(KelGPXConfiguredTrack, changed);
    QFETCH(int, aspects);
    const KelGPXConfiguredTrack plain = configured(QStringLiteral("walk"));
    QCOMPARE(int(plain.differentAspects(changed)), aspects);
    QCOMPARE(int(changed.differentAspects(plain)), aspects);
}

void tst_KelGPXConfiguredTrack::equality()
{
    const KelGPXConfiguredTrack plain = configured(QStringLiteral("walk"));
    QVERIFY(plain == configured(QStringLiteral("walk")));
    QVERIFY(!(plain != configured(QStringLiteral("walk"))));

    KelGPXConfiguredTrack otherFill = plain;
    otherFill.setFillColor(Qt::blue);
    QVERIFY(plain != otherFill);
    QVERIFY(plain != configured(QStringLiteral("other walk")));
}

void tst_KelGPXConfiguredTrack::forwardsToTheConfiguration()
{
    const KelGPXConfiguredTrack made(track(RING), richConfiguration());

    QCOMPARE(made.lineColor(), QColor(10, 20, 30, 40));
    QCOMPARE(made.lineWidth().value(), 7.0);
    QCOMPARE(made.fillColor(), QColor(50, 60, 70, 80));
    QCOMPARE(made.haloWidth().value(), 9.0);
    QVERIFY(made.penStyle() == KelPenStyle(Qt::DashDotLine));
    QCOMPARE(made.smoothingStrength(), 30);
    QCOMPARE(made.smoothingSteps(), 5);
    QVERIFY(made.hasDrawOption(KelGPXTrackDisplayOptions(DisplayFill)));
    QVERIFY(!made.hasDrawOption(KelGPXTrackDisplayOptions(DisplayStroke)));
}

void tst_KelGPXConfiguredTrack::settersTellWhetherTheValueChanged()
{
    KelGPXConfiguredTrack made = configured(QStringLiteral("walk"));
    QVERIFY(made.setLineColor(Qt::green));
    QVERIFY(!made.setLineColor(Qt::green));
    QCOMPARE(made.configuration().lineColor(), QColor(Qt::green));
    QVERIFY(made.setFillColor(Qt::red));
    QVERIFY(!made.setFillColor(Qt::red));
    QCOMPARE(made.configuration().fillColor(), QColor(Qt::red));
    QVERIFY(made.setLineWidth(4.0));
    QVERIFY(!made.setLineWidth(4.0));
    QCOMPARE(made.configuration().lineWidth().value(), 4.0);
    QVERIFY(made.setPenStyle(Qt::DashLine));
    QVERIFY(!made.setPenStyle(Qt::DashLine));
    QVERIFY(made.configuration().penStyle() == KelPenStyle(Qt::DashLine));
    QVERIFY(made.setSmoothingStrength(60));
    QVERIFY(!made.setSmoothingStrength(60));
    QCOMPARE(made.configuration().smoothingStrength(), 60);
    QVERIFY(made.setSmoothingSteps(6));
    QVERIFY(!made.setSmoothingSteps(6));
    QCOMPARE(made.configuration().smoothingSteps(), 6);
}

void tst_KelGPXConfiguredTrack::forwardsToTheTrack()
{
    const QDateTime noon = QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC);
    const KelGPXTrackPoint a(KelGeoPosition(50.0, 8.0), 0, noon, QString());
    const KelGPXTrackPoint b(KelGeoPosition(51.0, 9.0), 0, QDateTime(), QString());
    const KelGPXTrack own(QStringLiteral("name"), QStringLiteral("description"),
                          {KelGPXTrackSegment(QList<KelGPXTrackPoint>{a, b}), KelGPXTrackSegment(a)},
                          KelGPXTrackShape(TrackShapeHop));
    const KelGPXConfiguredTrack made(own, configuration(TrackShapeAuto));

    QVERIFY(made.track() == own);
    QCOMPARE(made.name(), QStringLiteral("name"));
    QCOMPARE(made.description(), QStringLiteral("description"));
    QCOMPARE(made.allPoints().size(), 3);
    QCOMPARE(made.chunkedPoints().size(), own.chunkedPoints().size());
    QCOMPARE(made.allTimeStamps(), QList<QDateTime>({noon, QDateTime(), noon}));
    QCOMPARE(made.firstPoint(), KelGeoPosition(50.0, 8.0));
    QCOMPARE(made.lastPoint(), KelGeoPosition(50.0, 8.0));
    QVERIFY(!made.isSinglePoint());
    QCOMPARE(made.naturalShape().toInt(), 8); // ends where it began
}

void tst_KelGPXConfiguredTrack::wouldChangeHaloToVisibleAgainst_data()
{
    QTest::addColumn<double>("own");
    QTest::addColumn<double>("other");
    QTest::addColumn<bool>("becomesVisible");

    QTest::newRow("halo against none") << 5.0 << 0.0 << true;
    QTest::newRow("none against halo") << 0.0 << 5.0 << false;
    QTest::newRow("none against none") << 0.0 << 0.0 << false;
    QTest::newRow("halo against halo") << 5.0 << 6.0 << false;
}

void tst_KelGPXConfiguredTrack::wouldChangeHaloToVisibleAgainst()
{
    QFETCH(double, own);
    QFETCH(double, other);
    const auto withHalo = [](double width) {
        KelGPXTrackConfiguration made = configuration(TrackShapeAuto);
        made.setHaloWidth(width);
        return KelGPXConfiguredTrack(track(LINE), made);
    };
    QTEST(withHalo(own).wouldChangeHaloToVisibleAgainst(withHalo(other)), "becomesVisible");
}

void tst_KelGPXConfiguredTrack::isATrackElement()
{
    const KelGPXConfiguredTrack made = configured(QStringLiteral("ring"), RING);
    const KelGPXTrackElement &element = made;
    QCOMPARE(element.boundingBox().center(), KelGeoPosition(53.5, 8.5));
    QCOMPARE(element.allPoints().size(), 5);
}

QTEST_GUILESS_MAIN(tst_KelGPXConfiguredTrack)
#include "tst_KelGPXConfiguredTrack.moc"
