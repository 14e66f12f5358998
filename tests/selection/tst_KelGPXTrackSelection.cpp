// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackSelection.h>
#include <KelGPXTrackSelectionComparisonResult.h>
#include <KelGeoLocationSettings.h>
#include <KelTemporarySettings.h>
#include <KelTestSupport.h>
#include <KelTestTracks.h>

#include <QTemporaryDir>
#include <QtTest>

#include <limits>

using namespace KelTestTracks;

class tst_KelGPXTrackSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void newSelectionIsEmpty();
    void selectionOfAList();
    void locationTracksComeFirst();
    void xmlConstructor_data();
    void xmlConstructor();
    void writtenForm();
    void writtenIntoAStore();

    void rows_data();
    void rows();
    void valueOutOfRangeIsADefaultTrack();
    void croppingOpacity();
    void effectiveCroppingOpacityOfAnEmptySelection();
    void adding();
    void addedTrackGetsTheUsersConfiguration();
    void removeAt();
    void tracksAreACopy();

    void setConfigurationOfARow_data();
    void setConfigurationOfARow();
    void setConfigurationKeepsUnknownShapeFromBecomingAutomatic();
    void setConfigurationOfAllRows();
    void moveTrack_data();
    void moveTrack();
    void overrideColorOfTrack_data();
    void overrideColorOfTrack();
    void overrideColorOfTrackOutOfRange();
    void overrideColorKeepsColorsInOtherModels();
    void reduceToTrackNumber_data();
    void reduceToTrackNumber();
    void wouldChangeHaloToVisibleAgainst();
    void compare();
    void compareOfThreeAndFiveRows();
    void equality();

    void elementOperations();
    void isSinglePoint_data();
    void isSinglePoint();
    void lastPointIsTheLastValidOne();

private:
    KelTemporarySettings m_settings;
};

namespace
{

KelGPXTrackSelection selection(const QString &names)
{
    KelGPXTrackSelection made;
    const QStringList parts = names.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &name : parts)
        made.addTrack(configured(name));
    return made;
}

QString names(const KelGPXTrackSelection &selection)
{
    QStringList parts;
    const KelGPXConfiguredTrackList tracks = selection.tracks();
    for (const KelGPXConfiguredTrack &track : tracks)
        parts.append(track.name());
    return parts.join(QLatin1Char(' '));
}

QStringList childNames(const QDomElement &element)
{
    QStringList names;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        names.append(child.tagName());
    return names;
}

} // namespace

void tst_KelGPXTrackSelection::initTestCase()
{
    KelGPXTrackConfiguration users = KelGPXTrackConfiguration::defaultValue();
    users.setLineWidth(3.0);
    KelGeoLocationSettings::instance().setDefaultTrackConfiguration(users);
}

void tst_KelGPXTrackSelection::newSelectionIsEmpty()
{
    const KelGPXTrackSelection fresh;
    QCOMPARE(fresh.count(), 0);
    QVERIFY(fresh.isEmpty());
    QVERIFY(!fresh.isValid());
    QVERIFY(!fresh.containsAnyMarking());
    QCOMPARE(fresh.nominalCroppingOpacity(), 255);
    QCOMPARE(fresh.effectiveCroppingOpacity(), 255);
}

void tst_KelGPXTrackSelection::selectionOfAList()
{
    const KelGPXTrackSelection made(
        KelGPXConfiguredTrackList({configured(QStringLiteral("A")), configured(QStringLiteral("B"))}));
    QCOMPARE(names(made), QStringLiteral("A B"));
    QVERIFY(made.isValid());
    QVERIFY(!made.isEmpty());
    QVERIFY(made.containsAnyMarking());
    QCOMPARE(made.nominalCroppingOpacity(), 255);
}

void tst_KelGPXTrackSelection::locationTracksComeFirst()
{
    const QDomDocument xml = KelTestSupport::document(QStringLiteral(
        "<host><gpxtrack><locationTrack><trk><name>L1</name></trk></locationTrack>"
        "<configuredTrack><trk><name>C1</name></trk></configuredTrack>"
        "<locationTrack><trk><name>L2</name></trk></locationTrack></gpxtrack></host>"));
    const KelGPXTrackSelection read(xml.documentElement(), QDir(QString()), QString());
    QCOMPARE(names(read), QStringLiteral("L1 L2 C1"));

    QDomDocument document;
    QDomElement host = document.createElement(QStringLiteral("host"));
    document.appendChild(host);
    read.toXml(host, QDir(QString()));
    QCOMPARE(childNames(host.firstChildElement(QStringLiteral("gpxtrack"))),
             QStringList({"configuredTrack", "configuredTrack", "configuredTrack"}));
}

void tst_KelGPXTrackSelection::xmlConstructor_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("readNames");
    QTest::addColumn<int>("opacity");

    const QString track = QStringLiteral("<%1><trk><name>%2</name></trk></%1>");
    const QString plain = track.arg(QStringLiteral("configuredTrack"));
    const QString prefixed = track.arg(QStringLiteral("old_configuredTrack"));
    const QString legacy = track.arg(QStringLiteral("old_locationTrack"));
    QTest::newRow("nothing there") << "<host/>" << "" << "" << 255;
    QTest::newRow("opacity only") << "<host croppingOpacity='100'/>" << "" << "" << 100;
    QTest::newRow("negative opacity") << "<host croppingOpacity='-5'/>" << "" << "" << -5;
    QTest::newRow("unreadable opacity") << "<host croppingOpacity='much'/>" << "" << "" << 0;
    QTest::newRow("tracks in document order")
        << "<host><gpxtrack>" + plain.arg("A") + plain.arg("B") + "</gpxtrack></host>" << "" << "A B" << 255;
    QTest::newRow("only the first gpxtrack counts")
        << "<host><gpxtrack>" + plain.arg("A") + "</gpxtrack><gpxtrack>" + plain.arg("B") + "</gpxtrack></host>" << ""
        << "A" << 255;
    QTest::newRow("tracks outside of gpxtrack do not count")
        << "<host>" + plain.arg("A") + "<gpxtrack/></host>" << "" << "" << 255;
    QTest::newRow("every name carries the prefix")
        << "<host old_croppingOpacity='7' croppingOpacity='9'><gpxtrack>" + plain.arg("A") + "</gpxtrack><old_gpxtrack>"
               + plain.arg("B") + prefixed.arg("C") + legacy.arg("D") + "</old_gpxtrack></host>"
        << "old_" << "D C" << 7;
    QTest::newRow("prefixed names without a prefix")
        << "<host old_croppingOpacity='7'><old_gpxtrack>" + prefixed.arg("C") + "</old_gpxtrack></host>" << "" << ""
        << 255;
}

void tst_KelGPXTrackSelection::xmlConstructor()
{
    QFETCH(QString, xml);
    QFETCH(QString, prefix);
    const QDomDocument document = KelTestSupport::document(xml);
    const KelGPXTrackSelection read(document.documentElement(), QDir(QString()), prefix);
    QTEST(names(read), "readNames");
    QTEST(read.nominalCroppingOpacity(), "opacity");
}

void tst_KelGPXTrackSelection::writtenForm()
{
    KelGPXTrackSelection original = selection(QStringLiteral("A B"));
    original.setCroppingOpacity(100);
    QDomDocument document;
    QDomElement host = document.createElement(QStringLiteral("host"));
    document.appendChild(host);
    host.appendChild(document.createElement(QStringLiteral("before")));
    original.toXml(host, QDir(QString()));

    QCOMPARE(host.attribute(QStringLiteral("croppingOpacity")), QStringLiteral("100"));
    QCOMPARE(childNames(host), QStringList({"before", "gpxtrack"}));
    const QDomElement gpx = host.lastChildElement();
    QCOMPARE(childNames(gpx), QStringList({"configuredTrack", "configuredTrack"}));
    QVERIFY(gpx.attributes().isEmpty());
    QCOMPARE(childNames(gpx.firstChildElement()).constFirst(), QStringLiteral("trk"));

    QVERIFY(KelGPXTrackSelection(host, QDir(QString()), QString()) == original);

    QDomElement other = document.createElement(QStringLiteral("other"));
    KelGPXTrackSelection().toXml(other, QDir(QString()));
    QCOMPARE(other.attribute(QStringLiteral("croppingOpacity")), QStringLiteral("255"));
    QCOMPARE(childNames(other), QStringList({"gpxtrack"}));
}

void tst_KelGPXTrackSelection::writtenIntoAStore()
{
    const QTemporaryDir store;
    QVERIFY(store.isValid());
    const KelGPXTrackSelection original = selection(QStringLiteral("A B"));
    QDomDocument document;
    QDomElement host = document.createElement(QStringLiteral("host"));
    document.appendChild(host);
    original.toXml(host, QDir(store.path()));

    QCOMPARE(QDir(store.path()).entryList(QDir::Files).size(), 2);
    QCOMPARE(host.elementsByTagName(QStringLiteral("include")).size(), 2);
    QVERIFY(KelGPXTrackSelection(host, QDir(store.path()), QString()) == original);
}

void tst_KelGPXTrackSelection::rows_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("valid");

    QTest::newRow("before the first") << -1 << false;
    QTest::newRow("first") << 0 << true;
    QTest::newRow("last") << 1 << true;
    QTest::newRow("behind the last") << 2 << false;
}

void tst_KelGPXTrackSelection::rows()
{
    QFETCH(int, row);
    const KelGPXTrackSelection made = selection(QStringLiteral("A B"));
    QTEST(made.isValidRow(row), "valid");
    QTEST(made.checkRange(row), "valid");
}

void tst_KelGPXTrackSelection::valueOutOfRangeIsADefaultTrack()
{
    const KelGPXTrackSelection made = selection(QStringLiteral("A B"));
    QCOMPARE(made.value(1).name(), QStringLiteral("B"));
    QCOMPARE(made.configuration(1).lineWidth().value(), 10.0);
    for (const int row : {-1, 2}) {
        QVERIFY(made.value(row) == KelGPXConfiguredTrack());
        QCOMPARE(made.configuration(row).lineWidth().value(), 3.0);
    }
}

void tst_KelGPXTrackSelection::croppingOpacity()
{
    KelGPXTrackSelection made = selection(QStringLiteral("A"));
    QVERIFY(!made.setCroppingOpacity(255));
    QVERIFY(made.setCroppingOpacity(100));
    QVERIFY(!made.setCroppingOpacity(100));
    QCOMPARE(made.nominalCroppingOpacity(), 100);
    QCOMPARE(made.effectiveCroppingOpacity(), 100);
    QVERIFY(made.setCroppingOpacity(-1));
    QCOMPARE(made.effectiveCroppingOpacity(), -1);
}

void tst_KelGPXTrackSelection::effectiveCroppingOpacityOfAnEmptySelection()
{
    KelGPXTrackSelection made;
    QVERIFY(made.setCroppingOpacity(100));
    QCOMPARE(made.nominalCroppingOpacity(), 100);
    QCOMPARE(made.effectiveCroppingOpacity(), 255);
}

void tst_KelGPXTrackSelection::adding()
{
    KelGPXTrackSelection made = selection(QStringLiteral("A"));
    made.setCroppingOpacity(10);
    KelGPXTrackSelection other = selection(QStringLiteral("B C"));
    other.setCroppingOpacity(20);

    made.addSelection(other);
    QCOMPARE(names(made), QStringLiteral("A B C"));
    QCOMPARE(made.nominalCroppingOpacity(), 10);

    made.addTracks(KelGPXConfiguredTrackList({configured(QStringLiteral("D")), configured(QStringLiteral("E"))}));
    made.addTrack(configured(QStringLiteral("F")));
    QCOMPARE(names(made), QStringLiteral("A B C D E F"));

    KelGPXTrackSelection doubled = selection(QStringLiteral("A B"));
    doubled.addSelection(doubled);
    QCOMPARE(names(doubled), QStringLiteral("A B A B"));
}

void tst_KelGPXTrackSelection::addedTrackGetsTheUsersConfiguration()
{
    KelGPXTrackSelection made;
    made.addTrack(track(RING, QStringLiteral("ring")));
    QCOMPARE(made.count(), 1);
    QCOMPARE(made.value(0).name(), QStringLiteral("ring"));
    QCOMPARE(made.configuration(0).lineWidth().value(), 3.0);
    QCOMPARE(made.configuration(0).trackShape().toInt(), 8);
}

void tst_KelGPXTrackSelection::removeAt()
{
    KelGPXTrackSelection made = selection(QStringLiteral("A B C"));
    made.removeAt(1);
    QCOMPARE(names(made), QStringLiteral("A C"));
    made.removeAt(-1);
    made.removeAt(2);
    QCOMPARE(names(made), QStringLiteral("A C"));
}

void tst_KelGPXTrackSelection::tracksAreACopy()
{
    KelGPXTrackSelection made = selection(QStringLiteral("A"));
    KelGPXConfiguredTrackList copy = made.tracks();
    copy.append(configured(QStringLiteral("B")));
    QCOMPARE(made.count(), 1);
    made.setTracks(copy);
    QCOMPARE(names(made), QStringLiteral("A B"));
}

void tst_KelGPXTrackSelection::setConfigurationOfARow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("shape");
    QTest::addColumn<bool>("done");

    QTest::newRow("another configuration") << 1 << 8 << true;
    QTest::newRow("the same configuration") << 1 << 4 << false;
    QTest::newRow("before the first row") << -1 << 8 << false;
    QTest::newRow("behind the last row") << 2 << 8 << false;
}

void tst_KelGPXTrackSelection::setConfigurationOfARow()
{
    QFETCH(int, row);
    QFETCH(int, shape);
    QFETCH(bool, done);
    KelGPXTrackSelection made = selection(QStringLiteral("A B"));
    QCOMPARE(made.setConfiguration(row, configuration(KelGPXTrackShapeEnum(shape))), done);
    QCOMPARE(made.configuration(1).trackShape().toInt(), done ? shape : 4);
    QCOMPARE(made.configuration(0).trackShape().toInt(), 4);
}

void tst_KelGPXTrackSelection::setConfigurationKeepsUnknownShapeFromBecomingAutomatic()
{
    KelGPXTrackSelection made = selection(QStringLiteral("A"));
    QCOMPARE(made.setConfiguration(0, configuration(TrackShapeUnknown)), true);
    QCOMPARE(made.configuration(0).trackShape().toInt(), 4); // the row's own, kept
}

void tst_KelGPXTrackSelection::setConfigurationOfAllRows()
{
    KelGPXTrackSelection made = selection(QStringLiteral("A B"));
    made.addTrack(KelGPXConfiguredTrack(track(POINT), configuration(TrackShapeAuto)));
    QCOMPARE(made.setConfiguration(configuration(TrackShapePolygon, MarkerUnknown)), true);
    QCOMPARE(made.configuration(0).trackShape().toInt(), 8);
    QCOMPARE(made.configuration(1).trackShape().toInt(), 8);
    QCOMPARE(made.configuration(2).trackShape().toInt(), 1);
    QCOMPARE(made.configuration(2).markerShape().toInt(), 1);

    KelGPXTrackSelection same = selection(QStringLiteral("A B"));
    QCOMPARE(same.setConfiguration(configuration(TrackShapeLineString)), false);
    QVERIFY(same.setConfiguration(1, configuration(TrackShapePolygon)));
    QCOMPARE(same.setConfiguration(configuration(TrackShapeLineString)), true); // one row is enough
    QCOMPARE(KelGPXTrackSelection().setConfiguration(configuration(TrackShapePolygon)), false);
}

void tst_KelGPXTrackSelection::moveTrack_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QString>("order");

    QTest::newRow("first to the end") << 0 << 2 << "B C A";
    QTest::newRow("last to the front") << 2 << 0 << "C A B";
    QTest::newRow("to itself") << 1 << 1 << "A B C";
    QTest::newRow("from before the first") << -1 << 1 << "A B C";
    QTest::newRow("from behind the last") << 3 << 1 << "A B C";
    QTest::newRow("to before the first") << 1 << -1 << "A B C";
    QTest::newRow("to behind the last") << 1 << 3 << "A B C";
}

void tst_KelGPXTrackSelection::moveTrack()
{
    QFETCH(int, from);
    QFETCH(int, to);
    KelGPXTrackSelection made = selection(QStringLiteral("A B C"));
    made.moveTrack(from, to);
    QTEST(names(made), "order");
}

void tst_KelGPXTrackSelection::overrideColorOfTrack_data()
{
    QTest::addColumn<int>("factor");
    QTest::addColumn<QColor>("line");
    QTest::addColumn<QColor>("fill");

    // From (255, 145, 1), alpha 200, and (0, 3, 128), alpha 50.
    QTest::newRow("128 leaves the colours") << 128 << QColor(255, 145, 1, 200) << QColor(0, 3, 128, 50);
    QTest::newRow("64 halves, rounding down") << 64 << QColor(127, 72, 0, 200) << QColor(0, 1, 64, 50);
    QTest::newRow("256 doubles up to the limit") << 256 << QColor(255, 255, 2, 200) << QColor(0, 6, 255, 50);
    QTest::newRow("127") << 127 << QColor(253, 143, 0, 200) << QColor(0, 2, 127, 50);
    QTest::newRow("129") << 129 << QColor(255, 146, 1, 200) << QColor(0, 3, 129, 50);
    QTest::newRow("0 is black") << 0 << QColor(0, 0, 0, 200) << QColor(0, 0, 0, 50);
    QTest::newRow("negative is black") << -1 << QColor(0, 0, 0, 200) << QColor(0, 0, 0, 50);
    QTest::newRow("very negative is black") << std::numeric_limits<int>::min() << QColor(0, 0, 0, 200)
                                            << QColor(0, 0, 0, 50);
    QTest::newRow("so large that the product leaves 32 bits")
        << std::numeric_limits<int>::max() << QColor(255, 255, 255, 200) << QColor(0, 255, 255, 50);
    QTest::newRow("product 32767 of the smallest channel") << 32767 << QColor(255, 255, 255, 200)
                                                           << QColor(0, 255, 255, 50);
    QTest::newRow("product 32639 of the smallest channel") << 32639 << QColor(255, 255, 254, 200)
                                                           << QColor(0, 255, 255, 50);
}

void tst_KelGPXTrackSelection::overrideColorOfTrack()
{
    QFETCH(int, factor);
    KelGPXTrackSelection made;
    for (int i = 0; i < 2; ++i) {
        KelGPXConfiguredTrack row = configured(QStringLiteral("row"));
        row.setLineColor(QColor(255, 145, 1, 200));
        row.setFillColor(QColor(0, 3, 128, 50));
        made.addTrack(row);
    }
    made.overrideColorOfTrack(1, factor);
    QTEST(made.value(1).lineColor(), "line");
    QTEST(made.value(1).fillColor(), "fill");
    QCOMPARE(made.value(0).lineColor(), QColor(255, 145, 1, 200));
    QCOMPARE(made.value(0).fillColor(), QColor(0, 3, 128, 50));
}

void tst_KelGPXTrackSelection::overrideColorOfTrackOutOfRange()
{
    KelGPXTrackSelection made = selection(QStringLiteral("A"));
    made.overrideColorOfTrack(-1, 0);
    made.overrideColorOfTrack(1, 0);
    QVERIFY(made == selection(QStringLiteral("A")));
    KelGPXTrackSelection empty;
    empty.overrideColorOfTrack(0, 0);
    QVERIFY(empty.isEmpty());
}

void tst_KelGPXTrackSelection::overrideColorKeepsColorsInOtherModels()
{
    KelGPXTrackSelection made;
    KelGPXConfiguredTrack row = configured(QStringLiteral("row"));
    row.setLineColor(QColor(200, 100, 50, 77).toHsv());
    made.addTrack(row);
    const QColor before = made.value(0).lineColor();
    made.overrideColorOfTrack(0, 128);
    const QColor after = made.value(0).lineColor();
    QCOMPARE(after.red(), before.red());
    QCOMPARE(after.green(), before.green());
    QCOMPARE(after.blue(), before.blue());
    QCOMPARE(after.alpha(), 77);
}

void tst_KelGPXTrackSelection::reduceToTrackNumber_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("left");

    QTest::newRow("first") << 0 << "A";
    QTest::newRow("last") << 2 << "C";
    QTest::newRow("-1 keeps the whole selection") << -1 << "A B C";
    QTest::newRow("behind the last keeps the whole selection") << 3 << "A B C";
}

void tst_KelGPXTrackSelection::reduceToTrackNumber()
{
    QFETCH(int, row);
    KelGPXTrackSelection made = selection(QStringLiteral("A B C"));
    made.setCroppingOpacity(42);
    const KelGPXTrackSelection reduced = made.reduceToTrackNumber(row);
    QTEST(names(reduced), "left");
    QCOMPARE(reduced.nominalCroppingOpacity(), 42);
    QCOMPARE(made.count(), 3);
}

void tst_KelGPXTrackSelection::wouldChangeHaloToVisibleAgainst()
{
    KelGPXTrackConfiguration halo = configuration(TrackShapeLineString);
    halo.setHaloWidth(5.0);
    KelGPXTrackSelection visible = selection(QStringLiteral("A B"));
    QVERIFY(visible.setConfiguration(1, halo));
    QVERIFY(visible.wouldChangeHaloToVisibleAgainst(selection(QStringLiteral("A B"))));
    QVERIFY(!selection(QStringLiteral("A B")).wouldChangeHaloToVisibleAgainst(visible));
    QVERIFY(!visible.wouldChangeHaloToVisibleAgainst(selection(QStringLiteral("A"))));
    QVERIFY(!visible.wouldChangeHaloToVisibleAgainst(KelGPXTrackSelection()));
}

void tst_KelGPXTrackSelection::compare()
{
    KelGPXTrackSelection changed = selection(QStringLiteral("A B C"));
    KelGPXTrackConfiguration blue = configuration(TrackShapeLineString);
    blue.setLineColor(Qt::blue);
    QVERIFY(changed.setConfiguration(2, blue));
    changed.setCroppingOpacity(7); // not compared

    const KelGPXTrackSelectionComparisonResult result = selection(QStringLiteral("A X C")).compare(changed);
    QCOMPARE(result.changingTracks(), QList<int>({1, 2}));
    QCOMPARE(result.changingAspects(), AspectTrack | AspectLineColor);
    QCOMPARE(result.trackCountChanges(), false);

    KelGPXTrackSelection dimmed = selection(QStringLiteral("A"));
    dimmed.setCroppingOpacity(7);
    QCOMPARE(dimmed.compare(selection(QStringLiteral("A"))).changingTracks(), QList<int>());
    QCOMPARE(dimmed.compare(selection(QStringLiteral("A"))).trackCountChanges(), false);
}

void tst_KelGPXTrackSelection::compareOfThreeAndFiveRows()
{
    const KelGPXTrackSelection three = selection(QStringLiteral("A B C"));
    const KelGPXTrackSelection five = selection(QStringLiteral("A B X D E"));
    for (const KelGPXTrackSelectionComparisonResult &result : {three.compare(five), five.compare(three)}) {
        QCOMPARE(result.changingTracks(), QList<int>({2}));
        QCOMPARE(result.changingAspects(), KelGPXTrackAspect(AspectTrack));
        QCOMPARE(result.trackCountChanges(), true);
    }
}

void tst_KelGPXTrackSelection::equality()
{
    const KelGPXTrackSelection plain = selection(QStringLiteral("A B"));
    QVERIFY(plain == selection(QStringLiteral("A B")));
    QVERIFY(!(plain != selection(QStringLiteral("A B"))));
    QVERIFY(plain != selection(QStringLiteral("B A")));
    QVERIFY(plain != selection(QStringLiteral("A")));
    QVERIFY(plain != selection(QStringLiteral("A B C")));
    KelGPXTrackSelection dimmed = plain;
    dimmed.setCroppingOpacity(7);
    QVERIFY(plain != dimmed);
    KelGPXTrackSelection configured = plain;
    QVERIFY(configured.setConfiguration(1, configuration(TrackShapePolygon)));
    QVERIFY(plain != configured);
}

void tst_KelGPXTrackSelection::elementOperations()
{
    KelGPXTrackSelection made;
    made.addTrack(track(QStringLiteral("8,50,1,1000 9,51")));
    made.addTrack(track(QStringLiteral("10,52 11,53 12,54")));
    const KelGPXTrackElement &element = made;

    QList<KelGeoPosition> points;
    const KelGeoPositionList all = element.allPoints();
    for (const KelGeoPosition &point : all)
        points.append(point);
    QCOMPARE(points, QList<KelGeoPosition>({{50.0, 8.0}, {51.0, 9.0}, {52.0, 10.0}, {53.0, 11.0}, {54.0, 12.0}}));
    QCOMPARE(element.chunkedPoints().size(),
             made.value(0).chunkedPoints().size() + made.value(1).chunkedPoints().size());
    QCOMPARE(element.firstPoint(), KelGeoPosition(50.0, 8.0));
    QCOMPARE(element.lastPoint(), KelGeoPosition(54.0, 12.0));
    QCOMPARE(element.allTimeStamps(), QList<QDateTime>({QDateTime::fromSecsSinceEpoch(1000, Qt::UTC), QDateTime(),
                                                        QDateTime(), QDateTime(), QDateTime()}));
    QVERIFY(!element.isSinglePoint());

    const KelGPXTrackSelection empty;
    QVERIFY(empty.allPoints().isEmpty());
    QVERIFY(empty.chunkedPoints().isEmpty());
    QVERIFY(empty.allTimeStamps().isEmpty());
    QVERIFY(!empty.firstPoint().isValid());
    QVERIFY(!empty.lastPoint().isValid());
}

void tst_KelGPXTrackSelection::isSinglePoint_data()
{
    QTest::addColumn<QStringList>("tracks");
    QTest::addColumn<bool>("single");

    QTest::newRow("no row") << QStringList() << false;
    QTest::newRow("one row of one point") << QStringList{POINT} << true;
    QTest::newRow("one row of several points") << QStringList{LINE} << false;
    QTest::newRow("two rows of one point") << QStringList{POINT, POINT} << false;
    QTest::newRow("a point and a row without points") << QStringList{POINT, QString()} << false;
}

void tst_KelGPXTrackSelection::isSinglePoint()
{
    QFETCH(QStringList, tracks);
    KelGPXTrackSelection made;
    for (const QString &coordinates : tracks)
        made.addTrack(track(coordinates));
    QTEST(made.isSinglePoint(), "single");
}

void tst_KelGPXTrackSelection::lastPointIsTheLastValidOne()
{
    KelGPXTrackSelection made;
    made.addTrack(track(LINE));
    const QList<KelGPXTrackPoint> endsInvalid{
        KelGPXTrackPoint(KelGeoPosition(51.0, 9.0), 0, QDateTime(), QString()),
        KelGPXTrackPoint(KelGeoPosition(0.0, 0.0), 0, QDateTime(), QString())};
    made.addTrack(KelGPXTrack(QString(), QString(), {KelGPXTrackSegment(endsInvalid)},
                              KelGPXTrackShape(TrackShapeLineString)));
    made.addTrack(track(QString()));
    QCOMPARE(made.lastPoint(), KelGeoPosition(50.3, 8.4));
    // The first point, in contrast, is the first row's, valid or not.
    made.moveTrack(2, 0);
    QVERIFY(!made.firstPoint().isValid());
}

QTEST_GUILESS_MAIN(tst_KelGPXTrackSelection)
#include "tst_KelGPXTrackSelection.moc"
