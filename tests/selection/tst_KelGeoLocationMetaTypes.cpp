// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelDistanceUnit.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXFullShape.h>
#include <KelGPXTrackSelection.h>
#include <KelGeoLocationMetaTypes.h>
#include <KelGeoPositionList.h>
#include <KelGeoPositionRect.h>
#include <KelIntRange.h>
#include <KelLatitudeList.h>
#include <KelLongitudeList.h>
#include <KelRational.h>

#include <KelTemporarySettings.h>

#include <QSet>
#include <QVariant>
#include <QtTest>

#include <functional>

/// The values in QVariant, debug streams and hash containers, as Qt's own values are used.
class tst_KelGeoLocationMetaTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KelGeoLocationMetaTypes::registerAll(); }

    void typesAreKnownByName_data();
    void typesAreKnownByName();
    void registeringAgainIsQuiet();
    void variantsKeepTheValue_data();
    void variantsKeepTheValue();
    void variantsConvert_data();
    void variantsConvert();
    void queuedConnectionsCarryValues();

    void debugText_data();
    void debugText();
    void debugStreamKeepsItsSettings();

    void equalValuesHaveEqualHashes_data();
    void equalValuesHaveEqualHashes();
    void valuesServeAsKeys();
    void anglesHaveNoHash();

Q_SIGNALS:
    void trackArrived(const KelGPXTrack &track);

private:
    KelTemporarySettings m_settings;
};

namespace
{

const QDateTime NOON(QDate(2024, 5, 1), QTime(12, 0), Qt::UTC);

KelGPXTrackPoint point(double latitude, double longitude)
{
    return KelGPXTrackPoint(KelGeoPosition(latitude, longitude), 12, NOON, QStringLiteral("gate"));
}

KelGPXTrack walk(double latitude = 53.0)
{
    return KelGPXTrack(QStringLiteral("Walk"), QStringLiteral("in the park"),
                       {KelGPXTrackSegment({point(latitude, 8.0), point(54.0, 9.0)})}, TrackShapeLineString);
}

KelGPXTrackConfiguration style(double width = 3.0)
{
    KelGPXTrackConfiguration configuration;
    configuration.setLineWidth(width);
    configuration.setLineColor(Qt::red);
    return configuration;
}

KelGPXTrackSelection selection(double latitude = 53.0)
{
    return KelGPXTrackSelection(KelGPXConfiguredTrackList(KelGPXConfiguredTrack(walk(latitude), style())));
}

/// How one type behaves in a variant: equal to another variant of an equal value, and not to one of another value.
struct VariantOutcome
{
    bool typeIsKept = false;
    bool valueIsKept = false;
    bool equalsItself = false;
    bool differsFromOther = false;
};

template<class T>
std::function<VariantOutcome()> inVariants(const T &value, const T &other)
{
    return [value, other] {
        const QVariant variant = QVariant::fromValue(value);
        VariantOutcome outcome;
        outcome.typeIsKept = variant.metaType() == QMetaType::fromType<T>();
        outcome.valueIsKept = variant.value<T>() == value;
        outcome.equalsItself = variant == QVariant::fromValue(value);
        outcome.differsFromOther = variant != QVariant::fromValue(other);
        return outcome;
    };
}

template<class T>
QString debugged(const T &value)
{
    QString text;
    QDebug(&text).nospace() << value;
    return text;
}

template<class T>
std::function<bool(size_t)> sameHash(const T &a, const T &b)
{
    return [a, b](size_t seed) { return a == b && qHash(a, seed) == qHash(b, seed); };
}

template<class T>
concept Hashable = requires(const T &value)
{
    qHash(value, size_t(0));
};

} // namespace

Q_DECLARE_METATYPE(std::function<VariantOutcome()>)
Q_DECLARE_METATYPE(std::function<bool(size_t)>)

// --------------------------------------------------------------------------------------------------------- variants

void tst_KelGeoLocationMetaTypes::typesAreKnownByName_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name :
         {"KelDistance", "KelIntRange", "KelPenStyle", "KelGeoArc", "KelLatitude", "KelLongitude", "KelGeoPosition",
          "KelLatitudeRange", "KelLongitudeRange", "KelGeoPositionRect", "KelGeoPositionList", "KelLatitudeList",
          "KelLongitudeList", "KelGPXMarkerShape", "KelGPXTrackDisplayOptions", "KelGPXTrackShape", "KelGPXFullShape",
          "KelGPXTrackPoint", "KelGPXTrackSegment", "KelGPXTrack", "KelGPXTrackConfiguration", "KelGPXConfiguredTrack",
          "KelGPXConfiguredTrackList", "KelGPXTrackSelection"})
        QTest::newRow(name) << QByteArray(name);
}

void tst_KelGeoLocationMetaTypes::typesAreKnownByName()
{
    QFETCH(QByteArray, name);
    const QMetaType type = QMetaType::fromName(name);
    QVERIFY(type.isValid());
    // A value that is made without knowing its type.
    const QVariant variant(type);
    QVERIFY(variant.isValid());
    QCOMPARE(QByteArray(variant.typeName()), name);
}

void tst_KelGeoLocationMetaTypes::registeringAgainIsQuiet()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    KelGeoLocationMetaTypes::registerAll();
    QVERIFY(QMetaType::fromName("KelGPXTrack").isValid());
}

void tst_KelGeoLocationMetaTypes::variantsKeepTheValue_data()
{
    QTest::addColumn<std::function<VariantOutcome()>>("check");
    QTest::newRow("distance") << inVariants(KelDistance(2.5), KelDistance(2.0));
    QTest::newRow("range of integers") << inVariants(KelIntRange(1, 4), KelIntRange(1, 5));
    QTest::newRow("pen style") << inVariants(KelPenStyle(Qt::DashLine), KelPenStyle(Qt::DotLine));
    QTest::newRow("angle") << inVariants(KelGeoArc(8.5), KelGeoArc(8.6));
    QTest::newRow("latitude") << inVariants(KelLatitude(53.5), KelLatitude(-53.5));
    QTest::newRow("longitude") << inVariants(KelLongitude(8.5), KelLongitude(-8.5));
    QTest::newRow("position") << inVariants(KelGeoPosition(53.5, 8.5), KelGeoPosition(8.5, 53.5));
    QTest::newRow("latitude range") << inVariants(KelLatitudeRange(1.0, 2.0), KelLatitudeRange(1.0, 3.0));
    QTest::newRow("longitude range") << inVariants(KelLongitudeRange(170.0, -170.0), KelLongitudeRange(-170.0, 170.0));
    QTest::newRow("rectangle") << inVariants(KelGeoPositionRect::europeanUnion(), KelGeoPositionRect());
    QTest::newRow("list of positions") << inVariants(KelGeoPositionList{{1.0, 2.0}}, KelGeoPositionList{{1.0, 3.0}});
    QTest::newRow("marker") << inVariants(KelGPXMarkerShape(MarkerStar6), KelGPXMarkerShape(MarkerDisk));
    QTest::newRow("display options") << inVariants(KelGPXTrackDisplayOptions(DisplayFill),
                                                   KelGPXTrackDisplayOptions(DisplayStroke));
    QTest::newRow("track shape") << inVariants(KelGPXTrackShape(TrackShapePolygon), KelGPXTrackShape(TrackShapePoint));
    QTest::newRow("point") << inVariants(point(1.0, 2.0), point(1.0, 3.0));
    QTest::newRow("segment") << inVariants(KelGPXTrackSegment(point(1.0, 2.0)), KelGPXTrackSegment());
    QTest::newRow("track") << inVariants(walk(), walk(52.0));
    QTest::newRow("configuration") << inVariants(style(), style(4.0));
    QTest::newRow("configured track") << inVariants(KelGPXConfiguredTrack(walk(), style()),
                                                    KelGPXConfiguredTrack(walk(), style(4.0)));
    QTest::newRow("selection") << inVariants(selection(), selection(52.0));
}

void tst_KelGeoLocationMetaTypes::variantsKeepTheValue()
{
    QFETCH(std::function<VariantOutcome()>, check);
    const VariantOutcome outcome = check();
    QVERIFY(outcome.typeIsKept);
    QVERIFY(outcome.valueIsKept);
    QVERIFY(outcome.equalsItself);
    QVERIFY(outcome.differsFromOther);
}

void tst_KelGeoLocationMetaTypes::variantsConvert_data()
{
    QTest::addColumn<QVariant>("from");
    QTest::addColumn<QVariant>("to");
    const auto row = [](const char *name, const auto &from, const auto &to) {
        QTest::newRow(name) << QVariant::fromValue(from) << QVariant::fromValue(to);
    };
    row("angle to number", KelGeoArc(8.25), 8.25);
    row("latitude to number", KelLatitude(-8.25), -8.25);
    row("latitude to text", KelLatitude(-8.25), QStringLiteral("S8.25000000"));
    row("longitude to text", KelLongitude(8.25), QStringLiteral("E8.25000000"));
    row("position to text", KelGeoPosition(1.0, 2.0), QStringLiteral("N1.00000000; E2.00000000"));
    row("marker to keys", KelGPXMarkerShape(MarkerStar6), QStringLiteral("star6"));
    row("keys to marker", QStringLiteral("disk, star6"), KelGPXMarkerShape(MarkerDisk | MarkerStar6));
    row("keys to track shape", QStringLiteral("polygon"), KelGPXTrackShape(TrackShapePolygon));
    row("pen style to key", KelPenStyle(Qt::DashLine), QStringLiteral("DashLine"));
    row("key to pen style", QStringLiteral("DotLine"), KelPenStyle(Qt::DotLine));
}

void tst_KelGeoLocationMetaTypes::variantsConvert()
{
    QFETCH(QVariant, from);
    QFETCH(QVariant, to);
    QVERIFY(from.canConvert(to.metaType()));
    QVERIFY(from.convert(to.metaType()));
    QVERIFY(from == to);
}

void tst_KelGeoLocationMetaTypes::queuedConnectionsCarryValues()
{
    KelGPXTrack arrived;
    connect(
        this, &tst_KelGeoLocationMetaTypes::trackArrived, this, [&](const KelGPXTrack &track) { arrived = track; },
        Qt::QueuedConnection);
    Q_EMIT trackArrived(walk());
    QVERIFY(!arrived.isValid());
    QCoreApplication::processEvents();
    QVERIFY(arrived == walk());
}

// ---------------------------------------------------------------------------------------------------- debug streams

void tst_KelGeoLocationMetaTypes::debugText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("pen style") << debugged(KelPenStyle(Qt::DashLine)) << "DashLine";
    QTest::newRow("distance") << debugged(KelDistance(2.5)) << "2.5";
    QTest::newRow("unit") << debugged(KelDistanceUnit(KelDistanceUnitEnum::Metre)) << "m";
    QTest::newRow("unknown unit") << debugged(KelDistanceUnit()) << "unknown";
    QTest::newRow("rational") << debugged(KelRational(5, 8)) << "5/8";
    QTest::newRow("range of integers") << debugged(KelIntRange(-1, 9)) << "[-1, 9]";
    QTest::newRow("markers") << debugged(KelGPXMarkerShape(MarkerDisk | MarkerStar6)) << "disk, star6";
    QTest::newRow("bit without a key") << debugged(KelGPXMarkerShape(4)) << "4";
    QTest::newRow("full shape") << debugged(KelGPXFullShape(TrackShapePoint, MarkerRect)) << "point/rect";
    QTest::newRow("point") << debugged(point(53.5, -8.25))
                           << "KelGPXTrackPoint(N53.50000000 W8.25000000 12 m 2024-05-01T12:00:00.000Z \"gate\")";
    QTest::newRow("bare point") << debugged(KelGPXTrackPoint(KelGeoPosition(1.0, 2.0), 0, QDateTime(), QString()))
                                << "KelGPXTrackPoint(N1.00000000 E2.00000000)";
    QTest::newRow("segment") << debugged(KelGPXTrackSegment({point(1.0, 2.0), point(2.0, 3.0)}))
                             << "KelGPXTrackSegment(2 points)";
    QTest::newRow("track") << debugged(walk())
                           << "KelGPXTrack(\"Walk\", linestring, 1 segments, 2 points, 0 enclaves)";
    QTest::newRow("track whose name holds percent signs")
        << debugged(KelGPXTrack(QStringLiteral("50%3 of %1"), QString(), {}, TrackShapePoint))
        << "KelGPXTrack(\"50%3 of %1\", point, 0 segments, 0 points, 0 enclaves)";
    QTest::newRow("selection") << debugged(selection()) << "KelGPXTrackSelection(1 tracks, cropping opacity 255)";
    QTest::newRow("list") << debugged(selection().tracks()) << "KelGPXConfiguredTrackList(1 tracks)";
    QTest::newRow("configured track") << debugged(KelGPXConfiguredTrack(walk(), style()))
                                      << "KelGPXConfiguredTrack(" + debugged(walk()) + ", "
            + debugged(KelGPXConfiguredTrack(walk(), style()).configuration()) + ')';
    QTest::newRow("in a variant") << debugged(QVariant::fromValue(walk())).section(QLatin1String(", KelGPX"), 1)
                                  << "Track(\"Walk\", linestring, 1 segments, 2 points, 0 enclaves))";
    QTest::newRow("in a list") << debugged(QList<KelPenStyle>{Qt::DashLine, Qt::DotLine}) << "QList(DashLine, DotLine)";
}

void tst_KelGeoLocationMetaTypes::debugText()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(text, expected);
}

void tst_KelGeoLocationMetaTypes::debugStreamKeepsItsSettings()
{
    QString text;
    {
        QDebug debug(&text);
        debug << KelPenStyle(Qt::DashLine) << QStringLiteral("quoted") << KelGPXMarkerShape(MarkerDisk) << KelIntRange(1, 2)
              << 3;
    }
    QCOMPARE(text.simplified(), "DashLine \"quoted\" disk [1, 2] 3");
}

// ----------------------------------------------------------------------------------------------------------- hashes

void tst_KelGeoLocationMetaTypes::equalValuesHaveEqualHashes_data()
{
    // Within the tolerance of angles, so the positions are equal and not the same.
    const double near = 53.0 + 4e-7;

    QTest::addColumn<std::function<bool(size_t)>>("check");
    QTest::newRow("distance") << sameHash(KelDistance(0.0), KelDistance(-0.0));
    QTest::newRow("unit") << sameHash(KelDistanceUnit(8), KelDistanceUnit(KelDistanceUnitEnum::NauticalMile));
    QTest::newRow("pen style") << sameHash(KelPenStyle(Qt::DotLine), KelPenStyle::fromKey(QStringLiteral("dotline")));
    QTest::newRow("range of integers") << sameHash(KelIntRange(1, 2), KelIntRange(1, 2));
    QTest::newRow("marker") << sameHash(KelGPXMarkerShape(MarkerDisk), KelGPXMarkerShape(QStringLiteral("DISK")));
    QTest::newRow("full shape") << sameHash(KelGPXFullShape(TrackShapePoint, MarkerX),
                                            KelGPXFullShape(TrackShapePoint, MarkerX));
    QTest::newRow("points within the tolerance") << sameHash(point(53.0, 8.0), point(near, 8.0));
    const KelGPXTrackPoint elsewhere(KelGeoPosition(53.0, 8.0), 12, NOON.toOffsetFromUtc(7200), QStringLiteral("gate"));
    QTest::newRow("times in other zones") << sameHash(point(53.0, 8.0), elsewhere);
    QTest::newRow("segments within the tolerance")
        << sameHash(KelGPXTrackSegment(point(53.0, 8.0)), KelGPXTrackSegment(point(near, 8.0)));
    QTest::newRow("empty segments") << sameHash(KelGPXTrackSegment(), KelGPXTrackSegment());
    QTest::newRow("tracks within the tolerance") << sameHash(walk(), walk(near));
    QTest::newRow("configuration") << sameHash(style(), style());
    QTest::newRow("configured tracks") << sameHash(KelGPXConfiguredTrack(walk(), style()),
                                                   KelGPXConfiguredTrack(walk(near), style()));
    QTest::newRow("selections") << sameHash(selection(), selection(near));
}

void tst_KelGeoLocationMetaTypes::equalValuesHaveEqualHashes()
{
    QFETCH(std::function<bool(size_t)>, check);
    QVERIFY(check(0));
    QVERIFY(check(4711));
}

void tst_KelGeoLocationMetaTypes::valuesServeAsKeys()
{
    QSet<KelGPXTrack> tracks{walk(), walk(53.0 + 4e-7), walk(52.0)};
    QCOMPARE(tracks.size(), 2);
    QVERIFY(tracks.contains(walk()));

    QHash<KelGPXTrackConfiguration, int> uses;
    for (double width : {1.0, 2.0, 1.0, 3.0})
        ++uses[style(width)];
    QCOMPARE(uses.size(), 3);
    QCOMPARE(uses.value(style(1.0)), 2);
    // Hashes that were all alike would do, but slowly.
    QVERIFY(qHash(style(1.0), 0) != qHash(style(2.0), 0));
    QVERIFY(qHash(walk(), 0) != qHash(KelGPXTrack(), 0));
}

void tst_KelGeoLocationMetaTypes::anglesHaveNoHash()
{
    // Their equality has a tolerance and is not transitive.
    QVERIFY(!Hashable<KelGeoArc>);
    QVERIFY(!Hashable<KelLatitude>);
    QVERIFY(!Hashable<KelLongitudeRange>);
    QVERIFY(!Hashable<KelGeoPositionRect>);
    QVERIFY(Hashable<KelGPXTrack>);
}

QTEST_MAIN(tst_KelGeoLocationMetaTypes)
#include "tst_KelGeoLocationMetaTypes.moc"
