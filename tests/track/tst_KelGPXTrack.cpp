// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrack.h>
#include <KelGPXTrackFile.h>
#include <KelGPXTrackFileRegistry.h>
#include <KelGPXTrackImpl.h>
#include <KelGeoPositionRect.h>
#include <KelXMLGate.h>

#include <KelTestSupport.h>

#include <QDir>
#include <QDomDocument>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <thread>
#include <utility>

#include <sys/stat.h>

class tst_KelGPXTrack : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultTrack();
    void fourArgumentConstructor();
    void fourArgumentConstructorSettlesShapeAuto();
    void fourArgumentConstructorKeepsEmptySegments();
    void fromPoint();
    void fromPointAtInvalidPosition();
    void decodeKml_data();
    void decodeKml();
    void settersDetach();
    void implAddSegmentDropsEmptySegments();
    void copiesShareDataUntilWritten();
    void movedFromTrackMayBeAssignedTo();
    void autoDetectShape_data();
    void autoDetectShape();
    void naturalShapeIgnoresTheSetShape();
    void hasShapeComparesPlainly();
    void countPoints();
    void isEnclave_data();
    void isEnclave();
    void equality_data();
    void equality();
    void order_data();
    void order();
    void elementOperations();
    void elementOperationsWithoutSegments();
    void firstAndLastPointOfEmptySegments();
    void chunksDoNotSpanSegments();

    void fromXml_data();
    void fromXml();
    void fromXmlMerges();
    void fromXmlOfShapes_data();
    void fromXmlOfShapes();
    void routePointsAreNotRead();
    void routePointsWithExtensionsBecomeSegments();
    void enclavesAreReadWhateverTheirName();
    void enclavesOfATreeFromElsewhereEndSomewhere();
    void enclavesThatWereReadAreWritten_data();
    void enclavesThatWereReadAreWritten();
    void anyNumberOfEnclavesInEachOtherIsBorne();
    void whatIsWrittenIsNoDeeperThanWhatIsRead_data();
    void whatIsWrittenIsNoDeeperThanWhatIsRead();
    void enclavesLeftOutAreLoggedOnce();
    void sharedEnclavesAreNotCopiedWhenTheyEnd();

    void include();
    void includeIsMergedWhereItStands();
    void includeIsIgnoredWithoutDirectory();
    void includeIsOneLevelDeep();
    void includeOfEnclavesIsIgnored();
    void includeTakesTheFirstTrack();
    void includeOfAMissingFileIsRegistered();
    void includeOfAMalformedFileAddsNothing_data();
    void includeOfAMalformedFileAddsNothing();
    void includeOfAPipeAddsNothing();
    void includeWithoutTrackKeepsShapeAutoUntilTheEnd();
    void theLastIncludeIsRegistered();
    void anEmptyIncludeRegistersNothing_data();
    void anEmptyIncludeRegistersNothing();
    void anEmptyIncludeKeepsWhatIsRegistered();
    void includeIsRegisteredAfterMerging();

    void buildTrackElement();
    void buildXmlBody();
    void buildXmlBodyOfAnEmptyTrack();
    void buildXmlBodyWritesNoDescription();
    void buildXmlBodyWritesEnclavesInline();
    void toXmlWithoutDirectory();
    void toXmlIntoAMissingDirectory();
    void toXmlIntoADirectory();
    void saveAsGpxFile();
    void saveAsGpxFileRoundTrip();
    void saveAsGpxFileFailsSilently();
};

namespace
{

static_assert(std::is_nothrow_move_constructible_v<KelGPXTrack>);
static_assert(std::is_base_of_v<KelGPXTrackElement, KelGPXTrackImpl>);

KelGPXTrackPoint point(double latitude, double longitude, const QString &description = {})
{
    return KelGPXTrackPoint(KelGeoPosition(latitude, longitude), 0, QDateTime(), description);
}

/// "lat,lon lat,lon ..." as a segment.
KelGPXTrackSegment segment(const QString &positions)
{
    QList<KelGPXTrackPoint> points;
    const QStringList texts = positions.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &text : texts)
        points.append(point(text.section(QLatin1Char(','), 0, 0).toDouble(),
                            text.section(QLatin1Char(','), 1, 1).toDouble()));
    return KelGPXTrackSegment(points);
}

KelGPXTrack track(const QStringList &segments, KelGPXTrackShapeEnum shape = TrackShapeLineString)
{
    QList<KelGPXTrackSegment> list;
    for (const QString &text : segments)
        list.append(segment(text));
    return KelGPXTrack(QStringLiteral("name"), QStringLiteral("description"), list, shape);
}

int value(const KelGPXTrackShape &shape)
{
    return shape == TrackShapeUnknown ? 0
        : shape == TrackShapePoint    ? 1
        : shape == TrackShapeHop      ? 2
        : shape == TrackShapeLineString ? 4
        : shape == TrackShapePolygon  ? 8
        : shape == TrackShapeAuto     ? 256
                                      : -1;
}

/// The segments as "lon,lat lon,lat | ...".
QString describe(const KelGPXTrack &track)
{
    QStringList texts;
    for (const KelGPXTrackSegment &segment : track.segments())
        texts.append(segment.toKml().replace(QLatin1Char('\n'), QLatin1Char(' ')));
    return texts.join(QStringLiteral(" | "));
}

KelGPXTrack read(const QString &xml, const QDir &dir = QDir(QString()))
{
    const QDomDocument document = KelTestSupport::document(xml);
    return KelGPXTrack(document.documentElement(), dir);
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

/// A directory with one file.
struct Store
{
    explicit Store(const QByteArray &content = {}, const QString &name = QStringLiteral("a.gps"))
    {
        if (!content.isNull())
            write(path(name), content);
    }

    QString path(const QString &name) const { return temporary.filePath(name); }
    QDir dir() const { return QDir(temporary.path()); }
    QString registered(const KelGPXTrack &track) const
    {
        return KelGPXTrackFileRegistry::instance().fileName(KelGPXTrackFileRegistryKey(track, dir()));
    }

    QTemporaryDir temporary;
};

QStringList childNames(const QDomElement &element)
{
    QStringList names;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        names.append(child.tagName());
    return names;
}

} // namespace

void tst_KelGPXTrack::defaultTrack()
{
    const KelGPXTrack t;
    QVERIFY(t.name().isEmpty());
    QVERIFY(t.description().isEmpty());
    QCOMPARE(value(t.shape()), 4); // deliberate: not auto
    QVERIFY(t.segments().isEmpty());
    QVERIFY(t.enclaves().isEmpty());
    QVERIFY(!t.isValid());
    QCOMPARE(t.countPoints(), 0);
}

void tst_KelGPXTrack::fourArgumentConstructor()
{
    const KelGPXTrack t("Walk", "To the lock", {segment("1,2 3,4")}, KelGPXTrackShape(TrackShapeHop));
    QCOMPARE(t.name(), "Walk");
    QCOMPARE(t.description(), "To the lock");
    QCOMPARE(value(t.shape()), 2);
    QCOMPARE(describe(t), "2.,1. 4.,3.");
    QVERIFY(t.isValid());
    QVERIFY(t.enclaves().isEmpty());
}

void tst_KelGPXTrack::fourArgumentConstructorSettlesShapeAuto()
{
    QCOMPARE(value(track({"1,2 3,4"}, TrackShapeAuto).shape()), 4);
    QCOMPARE(value(track({"1,2 3,4 1,2"}, TrackShapeAuto).shape()), 8);
    QCOMPARE(value(track({"1,2"}, TrackShapeAuto).shape()), 1);
    QCOMPARE(value(track({}, TrackShapeAuto).shape()), 0);
}

void tst_KelGPXTrack::fourArgumentConstructorKeepsEmptySegments()
{
    const KelGPXTrack t = track({"", "1,2 3,4", ""});
    QCOMPARE(t.segments().size(), 3);
    QVERIFY(t.isValid());
    QVERIFY(track({""}).isValid());
    QCOMPARE(track({""}).countPoints(), 0);
}

void tst_KelGPXTrack::fromPoint()
{
    const KelGPXTrack t(point(53.0, 8.0, QStringLiteral("Lock")));
    QCOMPARE(t.name(), "Lock");
    QVERIFY(t.description().isEmpty());
    QCOMPARE(value(t.shape()), 1);
    QCOMPARE(t.segments().size(), 1);
    QCOMPARE(describe(t), "8.,53.");
    QVERIFY(t.isValid());
}

void tst_KelGPXTrack::fromPointAtInvalidPosition()
{
    const KelGPXTrack nowhere{KelGPXTrackPoint()};
    QCOMPARE(value(nowhere.shape()), 1);
    QVERIFY(nowhere.segments().isEmpty());
    QVERIFY(!nowhere.isValid());
    // The position (0, 0) is invalid as well.
    QVERIFY(!KelGPXTrack(point(0.0, 0.0)).isValid());
}

void tst_KelGPXTrack::decodeKml_data()
{
    QTest::addColumn<QString>("coordinates");
    QTest::addColumn<KelGPXTrackShapeEnum>("given");
    QTest::addColumn<QString>("segments");
    QTest::addColumn<int>("shape");

    QTest::newRow("line") << "2,1 4,3" << TrackShapeLineString << "2.,1. 4.,3." << 4;
    QTest::newRow("blanks around") << "\n 2,1\n4,3 \n" << TrackShapeLineString << "2.,1. 4.,3." << 4;
    QTest::newRow("blanks around are none of a number's characters")
        << QStringLiteral("\u00a01234567,1\u00a0") << TrackShapeLineString << "1234567.,1." << 4;
    QTest::newRow("the shape is kept") << "2,1 4,3 2,1" << TrackShapeLineString << "2.,1. 4.,3. 2.,1." << 4;
    QTest::newRow("auto is detected") << "2,1 4,3 2,1" << TrackShapeAuto << "2.,1. 4.,3. 2.,1." << 8;
    QTest::newRow("auto of a point") << "2,1" << TrackShapeAuto << "2.,1." << 1;
    QTest::newRow("no points, no segment") << " " << TrackShapePolygon << "" << 8;
    QTest::newRow("no points, auto") << "" << TrackShapeAuto << "" << 0;
    QTest::newRow("altitudes with a fraction are 0") << "2,1,5.5 4,3,6" << TrackShapeLineString << "2.,1. 4.,3.,6"
                                                    << 4;
}

void tst_KelGPXTrack::decodeKml()
{
    QFETCH(QString, coordinates);
    QFETCH(KelGPXTrackShapeEnum, given);
    const KelGPXTrack t = KelGPXTrack::decodeKml("Walk", "To the lock", coordinates, given);
    QCOMPARE(t.name(), "Walk");
    QCOMPARE(t.description(), "To the lock");
    QTEST(describe(t), "segments");
    QTEST(value(t.shape()), "shape");
    QCOMPARE(t.isValid(), !describe(t).isEmpty());
}

void tst_KelGPXTrack::settersDetach()
{
    const KelGPXTrack original = track({"1,2 3,4"});
    KelGPXTrack t = original;
    t.setName("other");
    QCOMPARE(t.name(), "other");
    t.setShape(TrackShapeAuto);
    QCOMPARE(value(t.shape()), 256); // stored as it is
    t.addEnclave(original);
    t.addEnclave(KelGPXTrack());
    QCOMPARE(t.enclaves().size(), 2);
    QVERIFY(t.enclaves().first() == original);
    t.setEnclaves({KelGPXTrack()});
    QCOMPARE(t.enclaves().size(), 1);
    QVERIFY(!t.enclaves().first().isValid());

    QCOMPARE(original.name(), "name");
    QCOMPARE(value(original.shape()), 4);
    QVERIFY(original.enclaves().isEmpty());
}

void tst_KelGPXTrack::implAddSegmentDropsEmptySegments()
{
    KelGPXTrackImpl impl;
    impl.addSegment(KelGPXTrackSegment());
    QVERIFY(impl.segments().isEmpty());
    impl.addSegment(segment("1,2"));
    QCOMPARE(impl.segments().size(), 1);
    impl.setSegments({KelGPXTrackSegment(), segment("1,2")});
    QCOMPARE(impl.segments().size(), 2);
    impl.setDescription("text");
    QCOMPARE(impl.description(), "text");
}

void tst_KelGPXTrack::copiesShareDataUntilWritten()
{
    // A position that is not equal to itself shows that the fields of shared data are not compared.
    KelGPXTrack t("n", "d", {KelGPXTrackSegment(QList<KelGPXTrackPoint>{point(qQNaN(), qQNaN())})},
                  KelGPXTrackShape(TrackShapePoint));
    KelGPXTrack copy = t;
    QVERIFY(copy == t);
    // After a write the data is another, though the segments are still compared point by point with shared points.
    copy.setName("n");
    QVERIFY(copy == t);
    copy.setName("m");
    QVERIFY(copy != t);
    const KelGPXTrack separate("n", "d", {KelGPXTrackSegment(QList<KelGPXTrackPoint>{point(qQNaN(), qQNaN())})},
                               KelGPXTrackShape(TrackShapePoint));
    QVERIFY(separate != t);
}

void tst_KelGPXTrack::movedFromTrackMayBeAssignedTo()
{
    KelGPXTrack t = track({"1,2"});
    KelGPXTrack moved(std::move(t));
    QCOMPARE(describe(moved), "2.,1.");
    t = moved;
    QCOMPARE(describe(t), "2.,1.");
    moved = KelGPXTrack();
    QVERIFY(!moved.isValid());
}

void tst_KelGPXTrack::autoDetectShape_data()
{
    QTest::addColumn<QStringList>("segments");
    QTest::addColumn<int>("shape");

    QTest::newRow("no segment") << QStringList() << 0;
    QTest::newRow("one point") << QStringList{"1,2"} << 1;
    QTest::newRow("two points") << QStringList{"1,2 3,4"} << 4;
    QTest::newRow("closed") << QStringList{"1,2 3,4 5,6 1,2"} << 8;
    QTest::newRow("there and back is closed, too") << QStringList{"1,2 1,2"} << 8;
    QTest::newRow("closed within the tolerance") << QStringList{"1,2 3,4 5,6 1.0000005,2"} << 8;
    QTest::newRow("nearly closed") << QStringList{"1,2 3,4 5,6 1.000002,2"} << 4;
    QTest::newRow("two segments, open") << QStringList{"1,2 3,4", "5,6 7,8"} << 4;
    QTest::newRow("two segments, closed over both") << QStringList{"1,2 3,4", "5,6 1,2"} << 8;
    QTest::newRow("each segment closed, but not both") << QStringList{"1,2 3,4 1,2", "5,6 7,8 5,6"} << 4;
    QTest::newRow("two segments of one point") << QStringList{"1,2", "3,4"} << 4;
    QTest::newRow("two segments of the same point") << QStringList{"1,2", "1,2"} << 8;
    QTest::newRow("one empty segment: both ends are default positions") << QStringList{""} << 8;
    QTest::newRow("an empty segment at the end") << QStringList{"1,2 3,4", ""} << 4;
}

void tst_KelGPXTrack::autoDetectShape()
{
    QFETCH(QStringList, segments);
    QTEST(value(KelGPXTrack::autoDetectShape(track(segments).segments())), "shape");
}

void tst_KelGPXTrack::naturalShapeIgnoresTheSetShape()
{
    QCOMPARE(value(track({"1,2 3,4 1,2"}, TrackShapeLineString).naturalShape()), 8);
    QCOMPARE(value(track({"1,2"}, TrackShapePolygon).naturalShape()), 1);
    QCOMPARE(value(KelGPXTrack().naturalShape()), 0);
}

void tst_KelGPXTrack::hasShapeComparesPlainly()
{
    QVERIFY(track({"1,2 3,4"}).hasShape(TrackShapeLineString));
    QVERIFY(!track({"1,2 3,4"}).hasShape(TrackShapeAuto));
    KelGPXTrack t = track({"1,2 3,4"});
    t.setShape(TrackShapeAuto);
    QVERIFY(t.hasShape(TrackShapeAuto));
    QVERIFY(!t.hasShape(TrackShapeLineString));
}

void tst_KelGPXTrack::countPoints()
{
    QCOMPARE(track({"1,2 3,4", "", "5,6"}).countPoints(), 3);
    QCOMPARE(track({}).countPoints(), 0);
}

void tst_KelGPXTrack::isEnclave_data()
{
    QTest::addColumn<KelGPXTrack>("outer");
    QTest::addColumn<KelGPXTrack>("inner");
    QTest::addColumn<bool>("enclave");

    const QString bigSquare("50,0 50,10 60,10 60,0 50,0");
    const QString smallSquare("53,3 53,6 56,6 56,3 53,3");
    const KelGPXTrack outer = track({bigSquare}, TrackShapePolygon);
    const KelGPXTrack inner = track({smallSquare}, TrackShapePolygon);
    QTest::newRow("inside") << outer << inner << true;
    QTest::newRow("outside in") << inner << outer << false;
    QTest::newRow("inside, but the outer one is no polygon") << track({bigSquare}) << inner << false;
    QTest::newRow("inside, but the inner one is no polygon") << outer << track({smallSquare}) << false;
    QTest::newRow("neither is a polygon") << track({bigSquare}) << track({smallSquare}) << false;
    QTest::newRow("overlapping") << outer << track({"53,3 53,16 56,16 56,3 53,3"}, TrackShapePolygon) << false;
    QTest::newRow("beside") << outer << track({"53,13 53,16 56,16 56,13 53,13"}, TrackShapePolygon) << false;
}

void tst_KelGPXTrack::isEnclave()
{
    QFETCH(KelGPXTrack, outer);
    QFETCH(KelGPXTrack, inner);
    QTEST(outer.isEnclave(inner), "enclave");
}

void tst_KelGPXTrack::equality_data()
{
    QTest::addColumn<KelGPXTrack>("other");
    QTest::addColumn<bool>("equal");

    const auto make = [](const QString &name, const QString &description, const QStringList &segments,
                         KelGPXTrackShapeEnum shape, const QList<KelGPXTrack> &enclaves) {
        QList<KelGPXTrackSegment> list;
        for (const QString &text : segments)
            list.append(segment(text));
        KelGPXTrack t(name, description, list, shape);
        t.setEnclaves(enclaves);
        return t;
    };
    const QStringList segments{"1,2 3,4"};
    const QList<KelGPXTrack> enclaves{track({"5,6"})};
    QTest::newRow("built separately") << make("n", "d", segments, TrackShapePolygon, enclaves) << true;
    QTest::newRow("other name") << make("N", "d", segments, TrackShapePolygon, enclaves) << false;
    QTest::newRow("other description") << make("n", "D", segments, TrackShapePolygon, enclaves) << false;
    QTest::newRow("other shape") << make("n", "d", segments, TrackShapeLineString, enclaves) << false;
    QTest::newRow("other point") << make("n", "d", {"1,2 3,5"}, TrackShapePolygon, enclaves) << false;
    QTest::newRow("a segment more") << make("n", "d", {"1,2 3,4", "1,2"}, TrackShapePolygon, enclaves) << false;
    QTest::newRow("split otherwise") << make("n", "d", {"1,2", "3,4"}, TrackShapePolygon, enclaves) << false;
    QTest::newRow("no enclave") << make("n", "d", segments, TrackShapePolygon, {}) << false;
    QTest::newRow("other enclave") << make("n", "d", segments, TrackShapePolygon, {track({"5,7"})}) << false;
}

void tst_KelGPXTrack::equality()
{
    QFETCH(KelGPXTrack, other);
    QFETCH(bool, equal);
    KelGPXTrack t("n", "d", {segment("1,2 3,4")}, KelGPXTrackShape(TrackShapePolygon));
    t.addEnclave(track({"5,6"}));
    QCOMPARE(t == other, equal);
    QCOMPARE(other == t, equal);
    QCOMPARE(t != other, !equal);
}

void tst_KelGPXTrack::order_data()
{
    QTest::addColumn<KelGPXTrack>("a");
    QTest::addColumn<KelGPXTrack>("b");
    QTest::addColumn<bool>("less");
    QTest::addColumn<bool>("greater");

    QTest::newRow("fewer points") << track({"9,9"}) << track({"1,1 2,2"}) << true << false;
    QTest::newRow("more points") << track({"1,1 2,2"}) << track({"9,9"}) << false << true;
    QTest::newRow("same count: the first position decides, by latitude")
        << track({"1,9 9,9"}) << track({"2,1 1,1"}) << true << false;
    QTest::newRow("and then by longitude") << track({"1,3 9,9"}) << track({"1,2 9,9"}) << false << true;
    QTest::newRow("same first position") << track({"1,2 3,4"}) << track({"1,2 5,6"}) << false << false;
    QTest::newRow("points of all segments count") << track({"5,5", "6,6"}) << track({"1,1 2,2"}) << false << true;
    QTest::newRow("the first position may follow an empty segment")
        << track({"", "1,1"}) << track({"2,2", ""}) << true << false;
    QTest::newRow("both without points") << track({}) << track({""}) << false << false;
    QTest::newRow("none against one") << track({}) << track({"1,1"}) << true << false;
}

void tst_KelGPXTrack::order()
{
    QFETCH(KelGPXTrack, a);
    QFETCH(KelGPXTrack, b);
    QFETCH(bool, less);
    QFETCH(bool, greater);
    QCOMPARE(a < b, less);
    QCOMPARE(a > b, greater);
    QCOMPARE(b < a, greater);
    QCOMPARE(b > a, less);
}

void tst_KelGPXTrack::elementOperations()
{
    const QDateTime time = QDateTime::fromSecsSinceEpoch(5, Qt::UTC);
    const KelGPXTrackPoint timed(KelGeoPosition(5.0, 6.0), 0, time, QString());
    const KelGPXTrack t("n", "d", {segment("1,2 3,4"), KelGPXTrackSegment(timed)},
                        KelGPXTrackShape(TrackShapeLineString));
    QCOMPARE(t.allPoints().size(), 3);
    QVERIFY(t.allPoints().at(0) == KelGeoPosition(1.0, 2.0));
    QVERIFY(t.allPoints().at(1) == KelGeoPosition(3.0, 4.0));
    QVERIFY(t.allPoints().at(2) == KelGeoPosition(5.0, 6.0));
    QVERIFY(!t.isSinglePoint());
    QVERIFY(t.firstPoint() == KelGeoPosition(1.0, 2.0));
    QVERIFY(t.lastPoint() == KelGeoPosition(5.0, 6.0));
    QCOMPARE(t.allTimeStamps(), (QList<QDateTime>{QDateTime(), QDateTime(), time}));
    QCOMPARE(t.timeFrame().max(), time);
    QCOMPARE(t.boundingBox().north().decimalDegrees(), 5.0);
    QCOMPARE(t.boundingBox().west().decimalDegrees(), 2.0);

    QVERIFY(track({"1,2"}).isSinglePoint());
    QVERIFY(!track({"1,2", ""}).isSinglePoint());
    QVERIFY(!track({"1,2", "1,2"}).isSinglePoint());
    QVERIFY(!track({""}).isSinglePoint());
}

void tst_KelGPXTrack::elementOperationsWithoutSegments()
{
    const KelGPXTrack t;
    QVERIFY(t.allPoints().isEmpty());
    QVERIFY(t.chunkedPoints().isEmpty());
    QVERIFY(!t.isSinglePoint());
    QVERIFY(t.firstPoint() == KelGeoPosition());
    QVERIFY(t.lastPoint() == KelGeoPosition());
    QVERIFY(t.allTimeStamps().isEmpty());
    QVERIFY(!t.boundingBox().isValid());
}

void tst_KelGPXTrack::firstAndLastPointOfEmptySegments()
{
    const KelGPXTrack t = track({"", "1,2 3,4", ""});
    QVERIFY(t.firstPoint() == KelGeoPosition());
    QVERIFY(t.lastPoint() == KelGeoPosition());
}

void tst_KelGPXTrack::chunksDoNotSpanSegments()
{
    const KelGPXTrack t = track({"1,1 2,2 3,3", "4,4 5,5"});
    // In the main thread: as many chunks as there are, each within one segment, together every point once.
    QList<double> latitudes;
    for (const KelGeoPositionList &chunk : t.chunkedPoints()) {
        bool inFirst = false;
        bool inSecond = false;
        for (const KelGeoPosition &position : chunk) {
            const double latitude = position.latitude().decimalDegrees();
            latitudes.append(latitude);
            (latitude < 3.5 ? inFirst : inSecond) = true;
        }
        QVERIFY(!(inFirst && inSecond));
    }
    QCOMPARE(latitudes, (QList<double>{1.0, 2.0, 3.0, 4.0, 5.0}));

    QList<KelGeoPositionList> inWorker;
    std::thread([&] { inWorker = t.chunkedPoints(); }).join();
    QCOMPARE(inWorker.size(), 2);
    QCOMPARE(inWorker.at(0).size(), 3);
    QCOMPARE(inWorker.at(1).size(), 2);
}

void tst_KelGPXTrack::fromXml_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("description");
    QTest::addColumn<int>("shape");
    QTest::addColumn<QString>("segments");

    const auto row = [](const char *name, const char *xml, const char *trackName, const char *description, int shape,
                        const char *segments) {
        QTest::newRow(name) << QString::fromUtf8(xml) << QString::fromUtf8(trackName) << QString::fromUtf8(description)
                            << shape << QString::fromUtf8(segments);
    };
    row("empty", "<trk/>", "", "", 4, "");
    row("everything",
        "<trk><name>Walk</name><desc>To the lock</desc><shape>polygon</shape>"
        "<trkseg><trkpt lat='1' lon='2'/></trkseg></trk>",
        "Walk", "To the lock", 8, "2.,1.");
    row("segments in order, empty ones dropped",
        "<trk><trkseg><trkpt lat='1' lon='2'/></trkseg><trkseg/><trkseg><compressedPoints> 0,0 </compressedPoints>"
        "</trkseg><trkseg><compressedPoints>4,3 6,5</compressedPoints></trkseg></trk>",
        "", "", 4, "2.,1. | 4.,3. 6.,5.");
    row("the last name and description count",
        "<trk><name>a</name><desc>b</desc><name>c</name><desc/></trk>", "c", "", 4, "");
    row("text as it stands", "<trk><name> a\n<b>b</b> </name></trk>", " a\nb", "", 4, "");
    row("unknown children are skipped",
        "<trk><cmt>x</cmt><link href='y'><name>x</name></link><Name>x</Name><trkpt lat='1' lon='2'/></trk>", "", "", 4,
        "");
    row("a route is read alike",
        "<rte><name>Ride</name><rtept lat='9' lon='9'><extensions><gpxx:RoutePointExtension>"
        "<gpxx:rpt lat='1' lon='2'/></gpxx:RoutePointExtension></extensions></rtept></rte>",
        "Ride", "", 4, "2.,1.");
    row("track and route parts may be mixed",
        "<x><rtept><trkpt lat='3' lon='4'/></rtept><trkseg><trkpt lat='1' lon='2'/></trkseg></x>", "", "", 4,
        "4.,3. | 2.,1.");
}

void tst_KelGPXTrack::fromXml()
{
    QFETCH(QString, xml);
    const KelGPXTrack t = read(xml);
    QTEST(t.name(), "name");
    QTEST(t.description(), "description");
    QTEST(value(t.shape()), "shape");
    QTEST(describe(t), "segments");
    QVERIFY(t.enclaves().isEmpty());
    QCOMPARE(t.isValid(), t.countPoints() > 0);
}

void tst_KelGPXTrack::fromXmlMerges()
{
    KelGPXTrack t = track({"1,2"}, TrackShapePolygon);
    const KelGPXTrack before = t;
    const QDomDocument first =
        KelTestSupport::document("<trk><name>n</name><trkseg><trkpt lat='3' lon='4'/></trkseg></trk>");
    t.fromXml(first.documentElement(), QDir(QString()));
    QCOMPARE(t.name(), "n");
    QCOMPARE(t.description(), "description");
    QCOMPARE(value(t.shape()), 8);
    QCOMPARE(describe(t), "2.,1. | 4.,3.");
    const QDomDocument second =
        KelTestSupport::document("<trk><shape>auto</shape><enclaves><trk/></enclaves><desc>d</desc></trk>");
    t.fromXml(second.documentElement(), QDir(QString()));
    QCOMPARE(t.description(), "d");
    QCOMPARE(value(t.shape()), 4);
    QCOMPARE(t.enclaves().size(), 1);
    t.fromXml(QDomElement(), QDir(QString()));
    QCOMPARE(describe(t), "2.,1. | 4.,3.");
    QCOMPARE(describe(before), "2.,1."); // the copy kept its data
}

void tst_KelGPXTrack::fromXmlOfShapes_data()
{
    QTest::addColumn<QString>("children");
    QTest::addColumn<int>("shape");

    const QString onePoint("<trkseg><trkpt lat='1' lon='2'/></trkseg>");
    const QString closed("<trkseg><compressedPoints>1,1 1,2 1,1</compressedPoints></trkseg>");
    const QString open("<trkseg><compressedPoints>1,1 1,2 2,1</compressedPoints></trkseg>");
    QTest::newRow("no shape is linestring, also of a point") << onePoint << 4;
    QTest::newRow("no shape is linestring, also when closed") << closed << 4;
    QTest::newRow("auto, one point") << "<shape>auto</shape>" + onePoint << 1;
    QTest::newRow("auto, closed") << "<shape>auto</shape>" + closed << 8;
    QTest::newRow("auto, open") << "<shape>auto</shape>" + open << 4;
    QTest::newRow("auto, nothing") << "<shape>auto</shape>" << 0;
    QTest::newRow("auto is settled at the end") << closed + "<shape>auto</shape>" + onePoint << 4;
    QTest::newRow("point") << "<shape>point</shape>" + closed << 1;
    QTest::newRow("hop") << "<shape>hop</shape>" + closed << 2;
    QTest::newRow("case and blanks do not matter") << "<shape> Polygon\n</shape>" + open << 8;
    QTest::newRow("unknown word") << "<shape>blob</shape>" + open << 0;
    QTest::newRow("empty") << "<shape/>" + open << 0;
    QTest::newRow("the last one counts") << "<shape>auto</shape>" + closed + "<shape>hop</shape>" << 2;
}

void tst_KelGPXTrack::fromXmlOfShapes()
{
    QFETCH(QString, children);
    QTEST(value(read("<trk>" + children + "</trk>").shape()), "shape");
}

void tst_KelGPXTrack::routePointsAreNotRead()
{
    const KelGPXTrack t = read("<rte><rtept lat='1' lon='2'><ele>5</ele></rtept><rtept lat='3' lon='4'/></rte>");
    QVERIFY(t.segments().isEmpty());
    QVERIFY(!t.isValid());
}

void tst_KelGPXTrack::routePointsWithExtensionsBecomeSegments()
{
    const KelGPXTrack t = read("<rte><rtept lat='9' lon='9'><extensions><gpxx:RoutePointExtension>"
                               "<gpxx:rpt lat='1' lon='2'/><gpxx:rpt lat='3' lon='4'/><gpxx:rpt lat='5' lon='6'/>"
                               "</gpxx:RoutePointExtension></extensions></rtept>"
                               "<rtept lat='9' lon='9'><extensions><gpxx:RoutePointExtension>"
                               "<gpxx:rpt lat='7' lon='8'/><gpxx:rpt lat='9' lon='10'/><gpxx:rpt lat='11' lon='12'/>"
                               "</gpxx:RoutePointExtension></extensions></rtept></rte>");
    QCOMPARE(describe(t), "2.,1. 4.,3. 6.,5. | 8.,7. 10.,9. 12.,11.");
}

void tst_KelGPXTrack::enclavesAreReadWhateverTheirName()
{
    const KelGPXTrack t = read("<trk><enclaves><trk><name>a</name><shape>auto</shape><trkseg><trkpt lat='1' lon='2'/>"
                               "</trkseg></trk> text <lake><name>b</name></lake></enclaves>"
                               "<enclaves><trk><name>c</name><enclaves><trk><name>d</name></trk></enclaves></trk>"
                               "</enclaves></trk>");
    QCOMPARE(t.enclaves().size(), 3);
    QCOMPARE(t.enclaves().at(0).name(), "a");
    QCOMPARE(value(t.enclaves().at(0).shape()), 1);
    QCOMPARE(describe(t.enclaves().at(0)), "2.,1.");
    QCOMPARE(t.enclaves().at(1).name(), "b");
    QVERIFY(!t.enclaves().at(1).isValid()); // kept without any test
    QCOMPARE(t.enclaves().at(2).name(), "c");
    QCOMPARE(t.enclaves().at(2).enclaves().first().name(), "d");
    QVERIFY(t.segments().isEmpty());
}

namespace
{

/// Levels of enclaves in each other.
int enclaveDepth(KelGPXTrack t)
{
    int depth = 0;
    for (; !t.enclaves().isEmpty(); t = KelGPXTrack(t.enclaves().first()))
        ++depth;
    return depth;
}

KelGPXTrack nested(int levels)
{
    // Descriptions are not written.
    const KelGPXTrack plain(QStringLiteral("name"), QString(), {segment("1,2")}, KelGPXTrackShape(TrackShapePolygon));
    KelGPXTrack t = plain;
    for (int i = 0; i < levels; ++i) {
        KelGPXTrack around = plain;
        around.addEnclave(t);
        t = around;
    }
    return t;
}

/// What no file holds, but a tree of somebody's may.
QDomDocument treeOfEnclaves(int levels)
{
    QDomDocument document;
    QDomNode parent = document.appendChild(document.createElement("trk"));
    for (int i = 0; i < levels; ++i) {
        parent = parent.appendChild(document.createElement("enclaves"));
        parent = parent.appendChild(document.createElement("trk"));
    }
    return document;
}

} // namespace

void tst_KelGPXTrack::enclavesOfATreeFromElsewhereEndSomewhere()
{
    const QDomDocument document = treeOfEnclaves(1000);
    QCOMPARE(enclaveDepth(KelGPXTrack(document.documentElement(), QDir(QString()))), 128);
}

void tst_KelGPXTrack::enclavesThatWereReadAreWritten_data()
{
    QTest::addColumn<int>("levels");
    QTest::addColumn<int>("written");
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("many") << 120 << 120;
    QTest::newRow("as deep as a file goes") << 126 << 126;
    QTest::newRow("deeper") << 127 << 126;
    QTest::newRow("much deeper") << 1000 << 126;
}

/// What a file may hold comes out of it and goes into another one whole; what does not fit is not lost without a word.
void tst_KelGPXTrack::enclavesThatWereReadAreWritten()
{
    QFETCH(int, levels);
    QFETCH(int, written);
    QTemporaryDir dir;
    const KelGPXTrack t = nested(levels);
    if (levels > written) {
        for (int i = 0; i < 2; ++i)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^enclaves of the track .* too deep to be written$"));
    }
    const QFileInfo file(dir.filePath("a.gpx"));
    t.saveAsGpxFile(file);
    const QList<KelGPXTrack> read = KelGPXTrackFile(file).tracks();
    QCOMPARE(read.size(), 1);
    QCOMPARE(enclaveDepth(read.first()), written);
    QCOMPARE(read.first() == t, levels == written);

    QDomDocument document = KelTestSupport::document("<store/>");
    QDomElement root = document.documentElement();
    t.toXml(root, QDir(dir.path()));
    QCOMPARE(enclaveDepth(KelGPXTrack(root.firstChildElement(), QDir(dir.path()))), written);
}

void tst_KelGPXTrack::whatIsWrittenIsNoDeeperThanWhatIsRead_data()
{
    QTest::addColumn<int>("above");   // elements around the "trk"
    QTest::addColumn<int>("written"); // levels of enclaves
    QTest::addColumn<int>("deepest"); // element

    // Two below each enclave, two more for the points of the innermost.
    QTest::newRow("one above") << 1 << 126 << 256;
    QTest::newRow("two above") << 2 << 125 << 255;
    QTest::newRow("three above") << 3 << 125 << 256;
    QTest::newRow("thirteen above") << 13 << KelGPXTrack::MAXIMUM_ENCLAVE_DEPTH << 256;
    QTest::newRow("fourteen above") << 14 << 119 << 255;
    QTest::newRow("a hundred above") << 100 << 76 << 255;
    QTest::newRow("room for the points only") << 253 << 0 << 256;
    QTest::newRow("not even for them") << 254 << 0 << 257;
}

void tst_KelGPXTrack::whatIsWrittenIsNoDeeperThanWhatIsRead()
{
    QFETCH(int, above);
    QFETCH(int, deepest);
    QDomDocument document;
    QDomNode parent = document.appendChild(document.createElement("a"));
    for (int i = 1; i < above; ++i)
        parent = parent.appendChild(document.createElement("a"));
    QDomElement element = parent.toElement();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("too deep to be written$"));
    nested(140).toXml(element, QDir(QString()));

    QTEST(enclaveDepth(KelGPXTrack(element.firstChildElement(), QDir(QString()))), "written");
    int depth = 0;
    for (QDomElement e = document.documentElement(); !e.isNull(); e = e.lastChildElement())
        ++depth;
    QCOMPARE(depth, deepest);
    QCOMPARE(KelXMLGate::admits(document.toString(-1)), deepest <= KelXMLGate::MAXIMUM_DEPTH);
}

void tst_KelGPXTrack::enclavesLeftOutAreLoggedOnce()
{
    KelGPXTrack t;
    t.setName(QStringLiteral("Lakes"));
    for (int i = 0; i < 3; ++i)
        t.addEnclave(nested(140));
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    QTest::ignoreMessage(QtWarningMsg, "enclaves of the track \"Lakes\" lie too deep to be written");
    QDomElement root = KelTestSupport::document("<store/>").documentElement();
    t.toXml(root, QDir(QString()));
}

void tst_KelGPXTrack::sharedEnclavesAreNotCopiedWhenTheyEnd()
{
    // Twice the same in each: forty levels would be 2^40 tracks if they were copied to be ended.
    KelGPXTrack innermost;
    innermost.setName(QStringLiteral("innermost"));
    {
        KelGPXTrack t = innermost;
        for (int i = 0; i < 40; ++i) {
            KelGPXTrack around;
            around.addEnclave(t);
            around.addEnclave(t);
            t = around;
        }
    }
    KelGPXTrack moved;
    {
        KelGPXTrack around;
        around.addEnclave(innermost);
        KelGPXTrack other = around;
        other.setName(QStringLiteral("other"));
        moved = std::move(other);
        QCOMPARE(around.enclaves().size(), 1);
    }
    QCOMPARE(moved.enclaves().first().name(), QStringLiteral("innermost"));
}

void tst_KelGPXTrack::anyNumberOfEnclavesInEachOtherIsBorne()
{
    const auto chain = [](int levels) {
        KelGPXTrack t;
        t.setName(QStringLiteral("innermost"));
        for (int i = 0; i < levels; ++i) {
            KelGPXTrack around;
            around.addEnclave(t);
            t = around;
        }
        return t;
    };
    const int levels = 200000;
    KelGPXTrack one = chain(levels);
    const KelGPXTrack two = chain(levels);
    const KelGPXTrack shorter = chain(levels - 1);
    QVERIFY(one == two);
    QVERIFY(one != shorter);
    const KelGPXTrack kept = one.enclaves().first();
    one = KelGPXTrack(); // all but the outermost live on
    QVERIFY(kept == shorter);

    // What is written can be read again.
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("too deep to be written$"));
    QDomDocument document;
    QDomElement root = document.appendChild(document.createElement(QStringLiteral("gpx"))).toElement();
    two.toXml(root, QDir(QString()));
    const KelGPXTrack read(KelTestSupport::document(document.toString()).documentElement().firstChildElement(),
                           QDir(QString()));
    int depth = 0;
    for (KelGPXTrack t = read; !t.enclaves().isEmpty(); t = t.enclaves().first())
        ++depth;
    QCOMPARE(depth, 126);
}

void tst_KelGPXTrack::include()
{
    const Store store("<includedTrack><trk><name>Walk</name><shape>polygon</shape>"
                      "<trkseg><compressedPoints>2,1 4,3</compressedPoints></trkseg></trk></includedTrack>");
    const KelGPXTrack t = read("<trk><include>a.gps</include></trk>", store.dir());
    QCOMPARE(t.name(), "Walk");
    QCOMPARE(value(t.shape()), 8);
    QCOMPARE(describe(t), "2.,1. 4.,3.");
    QCOMPARE(store.registered(t), "a.gps");
}

void tst_KelGPXTrack::includeIsMergedWhereItStands()
{
    const Store store("<x><trk><name>inner</name><desc>inner</desc><trkseg><trkpt lat='3' lon='4'/></trkseg></trk>"
                      "</x>");
    const KelGPXTrack t = read("<trk><name>outer</name><trkseg><trkpt lat='1' lon='2'/></trkseg>"
                               "<include>a.gps</include><desc>outer</desc>"
                               "<trkseg><trkpt lat='5' lon='6'/></trkseg></trk>",
                               store.dir());
    QCOMPARE(t.name(), "inner");
    QCOMPARE(t.description(), "outer");
    QCOMPARE(describe(t), "2.,1. | 4.,3. | 6.,5.");
}

void tst_KelGPXTrack::includeIsIgnoredWithoutDirectory()
{
    const Store store("<x><trk><name>inner</name></trk></x>");
    const QString xml = QStringLiteral("<trk><name>outer</name><include>%1</include></trk>").arg(store.path("a.gps"));
    QCOMPARE(read(xml).name(), "outer");
    // The working directory is the same directory value and can therefore not be a store.
    QCOMPARE(read(xml, QDir::current()).name(), "outer");
    QCOMPARE(read(xml, store.dir()).name(), "inner");
}

void tst_KelGPXTrack::includeIsOneLevelDeep()
{
    const Store store("<x><trk><trkseg><trkpt lat='1' lon='2'/></trkseg><include>b.gps</include></trk></x>");
    write(store.path("b.gps"), "<x><trk><trkseg><trkpt lat='3' lon='4'/></trkseg></trk></x>");
    const KelGPXTrack t = read("<trk><include>a.gps</include></trk>", store.dir());
    QCOMPARE(describe(t), "2.,1.");
    QCOMPARE(store.registered(t), "a.gps");
}

void tst_KelGPXTrack::includeOfEnclavesIsIgnored()
{
    const Store store("<x><trk><name>inner</name></trk></x>");
    const KelGPXTrack t =
        read("<trk><enclaves><trk><name>e</name><include>a.gps</include></trk></enclaves></trk>", store.dir());
    QCOMPARE(t.enclaves().size(), 1);
    QCOMPARE(t.enclaves().first().name(), "e");
    QCOMPARE(store.registered(t.enclaves().first()), "");
}

void tst_KelGPXTrack::includeTakesTheFirstTrack()
{
    const Store store("<any><rte><name>route</name></rte><trk><name>first</name></trk><trk><name>second</name></trk>"
                      "</any>");
    QCOMPARE(read("<trk><include>a.gps</include></trk>", store.dir()).name(), "first");
}

void tst_KelGPXTrack::includeOfAMissingFileIsRegistered()
{
    const Store store;
    const KelGPXTrack t =
        read("<trk><name>Missing</name><shape>auto</shape><include>gone.gps</include></trk>", store.dir());
    QCOMPARE(t.name(), "Missing");
    QCOMPARE(value(t.shape()), 0);
    QVERIFY(!t.isValid());
    QCOMPARE(store.registered(t), "gone.gps");
}

void tst_KelGPXTrack::includeOfAMalformedFileAddsNothing_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("not XML") << QByteArray("no file of ours");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("cut off within the track")
        << QByteArray("<x><trk><name>inner</name><trkseg><trkpt lat='1' lon='2'/>");
    QTest::newRow("cut off after the track") << QByteArray("<x><trk><name>inner</name></trk>");
    QTest::newRow("garbage at the very end") << QByteArray("<x><trk><name>inner</name></trk></x>garbage");
    QTest::newRow("without track") << QByteArray("<x><name>inner</name></x>");
}

void tst_KelGPXTrack::includeOfAMalformedFileAddsNothing()
{
    QFETCH(QByteArray, content);
    const Store store(content);
    const KelGPXTrack t = read("<trk><name>outer</name><include>a.gps</include></trk>", store.dir());
    QCOMPARE(t.name(), "outer");
    QVERIFY(t.segments().isEmpty());
    QCOMPARE(store.registered(t), "a.gps");
}

void tst_KelGPXTrack::includeOfAPipeAddsNothing()
{
    // Nobody writes into it: a reader that opens it waits for ever.
    const Store store;
    QCOMPARE(::mkfifo(QFile::encodeName(store.path("pipe.gps")).constData(), 0600), 0);
    const KelGPXTrack t = read("<trk><name>outer</name><include>pipe.gps</include></trk>", store.dir());
    QCOMPARE(t.name(), "outer");
    QVERIFY(t.segments().isEmpty());
    QCOMPARE(store.registered(t), "pipe.gps");
}

void tst_KelGPXTrack::includeWithoutTrackKeepsShapeAutoUntilTheEnd()
{
    // Were a missing "trk" merged, auto would be settled before the points are read.
    const Store store("<x/>");
    const KelGPXTrack t = read("<trk><shape>auto</shape><include>a.gps</include>"
                               "<trkseg><trkpt lat='1' lon='2'/></trkseg></trk>",
                               store.dir());
    QCOMPARE(value(t.shape()), 1);
}

void tst_KelGPXTrack::theLastIncludeIsRegistered()
{
    const Store store("<x><trk><trkseg><trkpt lat='1' lon='2'/></trkseg></trk></x>");
    write(store.path("b.gps"), "<x><trk><trkseg><trkpt lat='3' lon='4'/></trkseg></trk></x>");
    const KelGPXTrack t = read("<trk><include>a.gps</include><include>b.gps</include></trk>", store.dir());
    QCOMPARE(describe(t), "2.,1. | 4.,3.");
    QCOMPARE(store.registered(t), "b.gps");
}

void tst_KelGPXTrack::anEmptyIncludeRegistersNothing_data()
{
    QTest::addColumn<QString>("xml");
    QTest::newRow("empty") << "<trk><name>n1</name><include/></trk>";
    QTest::newRow("blanks alone are no text") << "<trk><name>n2</name><include> </include></trk>";
    QTest::newRow("the last one is empty") << "<trk><name>n3</name><include>gone.gps</include><include/></trk>";
}

void tst_KelGPXTrack::anEmptyIncludeRegistersNothing()
{
    QFETCH(QString, xml);
    const Store store;
    const KelGPXTrack t = read(xml, store.dir());
    QCOMPARE(store.registered(t), "");
}

void tst_KelGPXTrack::anEmptyIncludeKeepsWhatIsRegistered()
{
    const Store store;
    const KelGPXTrack t = read("<trk><name>n4</name><include>gone.gps</include></trk>", store.dir());
    QVERIFY(read("<trk><name>n4</name><include/></trk>", store.dir()) == t);
    QCOMPARE(store.registered(t), "gone.gps");
}

void tst_KelGPXTrack::includeIsRegisteredAfterMerging()
{
    const Store store("<x><trk><shape>auto</shape><trkseg><trkpt lat='1' lon='2'/></trkseg></trk></x>");
    const KelGPXTrack t = read("<trk><include>a.gps</include><shape>auto</shape><name>later</name></trk>", store.dir());
    QCOMPARE(t.name(), "later");
    QCOMPARE(value(t.shape()), 1);
    // The key is the finished track, in the directory that was passed.
    QCOMPARE(store.registered(t), "a.gps");
    KelGPXTrack unnamed = t;
    unnamed.setName(QString());
    QCOMPARE(store.registered(unnamed), "");
    QCOMPARE(KelGPXTrackFileRegistry::instance().fileName(KelGPXTrackFileRegistryKey(t, QDir(QString()))), "");
}

void tst_KelGPXTrack::buildTrackElement()
{
    QDomDocument document = KelTestSupport::document("<gpx><first/></gpx>");
    QDomElement root = document.documentElement();
    QDomElement trk = track({"1,2"}).buildTrackElement(root);
    QCOMPARE(trk.tagName(), "trk");
    QVERIFY(!trk.hasChildNodes());
    QCOMPARE(trk.attributes().size(), 0);
    QVERIFY(root.lastChildElement() == trk);
}

void tst_KelGPXTrack::buildXmlBody()
{
    QDomDocument document = KelTestSupport::document("<trk/>");
    QDomElement trk = document.documentElement();
    track({"1,2 3,4", "5,6"}, TrackShapePolygon).buildXmlBody(trk);
    QCOMPARE(childNames(trk), (QStringList{"name", "shape", "trkseg", "trkseg"}));
    QCOMPARE(trk.firstChildElement("name").text(), "name");
    QCOMPARE(trk.firstChildElement("shape").text(), "polygon");
    QCOMPARE(trk.firstChildElement("trkseg").text(), "2.,1.\n4.,3.");
    QCOMPARE(trk.lastChildElement("trkseg").text(), "6.,5.");
}

void tst_KelGPXTrack::buildXmlBodyOfAnEmptyTrack()
{
    QDomDocument document = KelTestSupport::document("<trk/>");
    QDomElement trk = document.documentElement();
    KelGPXTrack().buildXmlBody(trk);
    QCOMPARE(childNames(trk), (QStringList{"name", "shape"}));
    QCOMPARE(trk.firstChildElement("name").text(), "");
    QCOMPARE(trk.firstChildElement("shape").text(), "linestring");
}

void tst_KelGPXTrack::buildXmlBodyWritesNoDescription()
{
    QDomDocument document = KelTestSupport::document("<trk/>");
    QDomElement trk = document.documentElement();
    const KelGPXTrack t = track({"1,2"});
    QVERIFY(!t.description().isEmpty());
    t.buildXmlBody(trk);
    QVERIFY(trk.firstChildElement("desc").isNull());
}

void tst_KelGPXTrack::buildXmlBodyWritesEnclavesInline()
{
    KelGPXTrack inner = track({"3,4"}, TrackShapePolygon);
    inner.addEnclave(track({"5,6"}));
    KelGPXTrack outer = track({"1,2"}, TrackShapePolygon);
    outer.setEnclaves({inner, KelGPXTrack()});
    QDomDocument document = KelTestSupport::document("<trk/>");
    QDomElement trk = document.documentElement();
    outer.buildXmlBody(trk);
    QCOMPARE(childNames(trk), (QStringList{"name", "shape", "trkseg", "enclaves"}));
    const QDomElement enclaves = trk.lastChildElement();
    QCOMPARE(childNames(enclaves), (QStringList{"trk", "trk"}));
    QCOMPARE(childNames(enclaves.firstChildElement()), (QStringList{"name", "shape", "trkseg", "enclaves"}));
    QCOMPARE(childNames(enclaves.lastChildElement()), (QStringList{"name", "shape"}));
}

void tst_KelGPXTrack::toXmlWithoutDirectory()
{
    for (const QDir &none : {QDir(QString()), QDir::current()}) {
        QDomDocument document = KelTestSupport::document("<gpx/>");
        QDomElement root = document.documentElement();
        track({"1,2"}).toXml(root, none);
        QCOMPARE(childNames(root), QStringList{"trk"});
        QCOMPARE(childNames(root.firstChildElement()), (QStringList{"name", "shape", "trkseg"}));
    }
}

void tst_KelGPXTrack::toXmlIntoAMissingDirectory()
{
    const Store store;
    const QDir missing(store.path("missing"));
    QDomDocument document = KelTestSupport::document("<gpx/>");
    QDomElement root = document.documentElement();
    track({"1,2"}).toXml(root, missing);
    QCOMPARE(childNames(root.firstChildElement()), (QStringList{"name", "shape", "trkseg"}));
    QVERIFY(!missing.exists());
}

void tst_KelGPXTrack::toXmlIntoADirectory()
{
    const Store store;
    KelGPXTrack t = track({"1,2 3,4"}, TrackShapePolygon);
    t.addEnclave(track({"5,6"}));
    QDomDocument document = KelTestSupport::document("<gpx/>");
    QDomElement root = document.documentElement();
    t.toXml(root, store.dir());
    QCOMPARE(childNames(root), QStringList{"trk"});
    const QDomElement trk = root.firstChildElement();
    QCOMPARE(trk.childNodes().size(), 1);
    QCOMPARE(childNames(trk), QStringList{"include"});
    const QString fileName = trk.firstChildElement().text();
    QCOMPARE(store.dir().entryList(QDir::Files), QStringList{fileName});

    const KelGPXTrack back(trk, store.dir());
    QCOMPARE(back.name(), t.name());
    QVERIFY(back.segments() == t.segments());
    QCOMPARE(back.enclaves().size(), 1);
    QVERIFY(back.description().isEmpty());
}

void tst_KelGPXTrack::saveAsGpxFile()
{
    const Store store;
    KelGPXTrack t = track({"1,2 3,4"});
    t.setName(QStringLiteral("Straße & <Weg>"));
    t.saveAsGpxFile(QFileInfo(store.path("walk.gpx")));
    QFile file(store.path("walk.gpx"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(bytes.contains("Stra\xc3\x9f" "e &amp; &lt;Weg"));
    QDomDocument document;
    QVERIFY(document.setContent(bytes));
    const QDomElement root = document.documentElement();
    QCOMPARE(root.tagName(), "gpx");
    QCOMPARE(childNames(root), QStringList{"trk"});
    QCOMPARE(childNames(root.firstChildElement()), (QStringList{"name", "shape", "trkseg"}));
    QCOMPARE(childNames(root.firstChildElement().lastChildElement()), QStringList{"compressedPoints"});
}

void tst_KelGPXTrack::saveAsGpxFileRoundTrip()
{
    const Store store;
    const auto timed = [](double latitude, double longitude, int elevation, qint64 seconds) {
        return KelGPXTrackPoint(KelGeoPosition(latitude, longitude), elevation,
                                QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC), "point");
    };
    const KelGPXTrackSegment timedPoints({timed(53.14375, 8.21, 4, 17), timed(53.15, 8.2234567, 0, 20)});
    KelGPXTrack t("Walk", "To the lock", {timedPoints, segment("-33.8688,151.2093")},
                  KelGPXTrackShape(TrackShapePolygon));
    t.addEnclave(track({"53.1,8.2 53.2,8.3 53.1,8.2"}, TrackShapePolygon));
    t.saveAsGpxFile(QFileInfo(store.path("walk.gpx")));

    const KelGPXTrackFile file{QFileInfo(store.path("walk.gpx"))};
    QCOMPARE(file.tracks().size(), 1);
    const KelGPXTrack back = file.tracks().first();
    QCOMPARE(back.name(), "Walk");
    QCOMPARE(back.description(), "");
    QCOMPARE(value(back.shape()), 8);
    QCOMPARE(back.segments().size(), 2);
    QCOMPARE(describe(back), "8.21,53.14375,4,17000000 8.2234567,53.15,0,20000000 | 151.2093,-33.8688");
    QCOMPARE(back.segments().first().trackPoints().first().timeStamp(), QDateTime::fromSecsSinceEpoch(17000, Qt::UTC));
    QCOMPARE(back.enclaves().size(), 1);
    QCOMPARE(value(back.enclaves().first().shape()), 8);
    QCOMPARE(describe(back.enclaves().first()), "8.2,53.1 8.3,53.2 8.2,53.1");
}

void tst_KelGPXTrack::saveAsGpxFileFailsSilently()
{
    const Store store;
    track({"1,2"}).saveAsGpxFile(QFileInfo(store.path("missing/walk.gpx")));
    QVERIFY(!QFileInfo::exists(store.path("missing")));
    QVERIFY(store.dir().isEmpty());
}

QTEST_GUILESS_MAIN(tst_KelGPXTrack)
#include "tst_KelGPXTrack.moc"
