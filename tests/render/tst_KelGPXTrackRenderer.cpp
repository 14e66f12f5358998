// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// The steps of the renderer, one by one. What is painted is tested in tst_TrackDrawing (as a record of paint calls
// and at chosen pixels) and tst_TrackPictures (as whole pictures).

#include "KelRenderTestSupport.h"

#include <KelGeoPositionRect.h>
#include <KelIntRange.h>
#include <KelLatitudeRange.h>
#include <KelLongitudeRange.h>
#include <KelMapProjection.h>

#include <QPainter>
#include <QSet>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>

using namespace KelRenderTest;
using TrackRenderOption = KelGPXTrackRenderer::TrackRenderOption;

namespace
{

/// What a host does: a map projection behind projectPosition().
class MapRenderer : public KelGPXTrackRenderer
{
public:
    MapRenderer(const KelGPXTrackSelection &selection, const KelGeoPositionRect &area, const QSize &size)
        : KelGPXTrackRenderer(selection, size, 1.0)
        , m_projection(area, size)
    {
    }
    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        return m_projection.projectate(position);
    }

private:
    KelMapProjection m_projection;
};

class FailingRenderer : public LinearRenderer
{
public:
    using LinearRenderer::LinearRenderer;
    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        if (std::abs(position.longitude().decimalDegrees()) != 180.0)
            throw std::runtime_error("no projection");
        return LinearRenderer::projectPosition(position);
    }
};

KelGeoPositionRect area(double south, double north, double west, double east)
{
    return KelGeoPositionRect(KelLatitudeRange(KelLatitude(south), KelLatitude(north)),
                              KelLongitudeRange(KelLongitude(west), KelLongitude(east)));
}

KelGeoPositionList longitudes(const QList<double> &values)
{
    KelGeoPositionList result;
    for (const double longitude : values)
        result.append(degrees(0, longitude));
    return result;
}

/// The inclusive index ranges of consecutive chunks.
QList<KelIntRange> rangesOf(const QList<KelGeoPositionList> &chunks)
{
    QList<KelIntRange> ranges;
    int start = 0;
    for (const KelGeoPositionList &chunk : chunks) {
        ranges.append(KelIntRange(start, start + static_cast<int>(chunk.size()) - 1));
        start += static_cast<int>(chunk.size());
    }
    return ranges;
}

QList<int> indicesOf(const QList<KelGeoPositionList> &chunks)
{
    QList<int> indices;
    for (int i = 0; i < chunks.size(); ++i)
        indices.append(i);
    return indices;
}

/// The elements of a path as points, subpath starts marked in \a moves.
QList<QPointF> elements(const QPainterPath &path, QList<int> *moves = nullptr)
{
    QList<QPointF> points;
    for (int i = 0; i < path.elementCount(); ++i) {
        points.append(QPointF(path.elementAt(i)));
        if (moves && path.elementAt(i).isMoveTo())
            moves->append(i);
    }
    return points;
}

bool samePoints(const QList<QPointF> &actual, const QList<QPointF> &expected)
{
    if (actual.size() != expected.size()) {
        qWarning() << actual.size() << "points instead of" << expected.size();
        return false;
    }
    for (int i = 0; i < actual.size(); ++i) {
        if (!((actual.at(i) - expected.at(i)).manhattanLength() < 1e-6)) {
            qWarning() << "point" << i << "is" << actual.at(i) << "instead of" << expected.at(i);
            return false;
        }
    }
    return true;
}

QImage image(const QSize &size, QImage::Format format, uint pixel)
{
    QImage result(size, format);
    result.fill(pixel);
    return result;
}

KelGPXTrackSelection lineSelection(int croppingOpacity, double haloWidth = 0.0)
{
    KelGPXTrackConfiguration line = configuration();
    line.setLineWidth(KelDistance(10.0));
    line.setHaloWidth(KelDistance(haloWidth));
    KelGPXTrackSelection selection = selectionOf(trackThrough({QPointF(50, 100), QPointF(270, 100)}), line);
    selection.setCroppingOpacity(croppingOpacity);
    return selection;
}

} // namespace

class tst_KelGPXTrackRenderer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsWhatItWasMadeOf();
    void optionsHaveTheirNumbers();

    void checkDateLineCrossing_data();
    void checkDateLineCrossing();
    void crossingsAcrossChunks();
    void crossingsSkipEmptyChunks();
    void crossingsLeaveOtherChunksAlone();
    void offsetsThereAndBack();
    void offsetsOfTwoRounds();
    void offsetsWestward();
    void offsetsMultiplyBothCoordinates();
    void noCrossingLeavesTheFlagAlone();
    void offsetsComeHomeAlsoWithoutAFiniteWorldWidth();

    void projectPointsTakesARangeOfIndices();
    void projectPointsTakesARangeFromZeroToZero();
    void projectPointsPPWritesIntoTheChunksRange();
    void shiftProjectedShiftsOnlyTheRange();

    void emptyTrackHasAnEmptyPath();
    void emptySegmentsHaveAnEmptyPath();
    void emptySegmentBeforeAndBetween();
    void thinningThreshold_data();
    void thinningThreshold();
    void thinningMeasuresFromTheLastPointTaken();
    void lastPointAlwaysEndsThePath();
    void twoPointsAreAMoveAndALine();
    void singlePointIsEmpty();
    void pointsThatAreNotFiniteAreLeftOut();
    void linesBeginAndEndAtFinitePoints_data();
    void linesBeginAndEndAtFinitePoints();
    void strengthOfOneHundredDoesNotSmooth();
    void strengthIsAPercentage();
    void smoothingStepsAreThePieces();
    void segmentsAreOneLine();
    void manyPointsInManyChunks();

    void dateLineEastward();
    void dateLineWestward();
    void dateLineThereAndBack();
    void dateLineBetweenSegments();
    void dateLineWrittenAsWestIsEastern();
    void dateLineIsMendedBeforeSmoothing();
    void primeMeridianIsNotShifted();
    void dateLineWithAMapProjection();

    void lineDrawnAsPolygonIsClosed();
    void naturalPolygonIsNotClosedAgain();
    void lineStaysOpen();
    void enclavesFollowInOrderAndStayOpen();
    void enclavesAreSmoothedLikeTheTrack();
    void enclavesCountEvenWhereTheTrackIsAPoint();
    void enclavesOfEnclavesAreNotDrawn();

    void aroundTheWorldOffset();
    void visibleShifts_data();
    void visibleShifts();
    void visibleShiftsCountsRawPixels();
    void visibleShiftsOfDegenerateWorlds_data();
    void visibleShiftsOfDegenerateWorlds();
    void visibleShiftsWithoutADevice();

    void detectAngleOfPath_data();
    void detectAngleOfPath();
    void angleIsThePlainMean();
    void carthesian_data();
    void carthesian();
    void movePolar();

    void adaptColor();
    void colorsOfTheConfiguration();
    void solidPen_data();
    void solidPen();
    void penStyleOnlyInNormal();
    void brush();

    void mergeCroppingSetsTheAlphaOfTheRows();
    void mergeCroppingDetachesTheTarget();
    void mergeCroppingStaysInBothImages_data();
    void mergeCroppingStaysInBothImages();
    void mergeCroppingLeavesOtherDepthsAlone();
    void cropWithFullOpacityReturnsTheMap_data();
    void cropWithFullOpacityReturnsTheMap();
    void cropFollowsTheTable_data();
    void cropFollowsTheTable();
    void cropReachesToTheHalo();
    void cropReplacesTheMapsOwnAlpha();
    void cropNeverChangesTheCallersMap_data();
    void cropNeverChangesTheCallersMap();
    void cropOfAnotherSize_data();
    void cropOfAnotherSize();
    void cropOfANullMap();
    void cropOfAnEmptySelectionReturnsTheMap();
    void cropLimitsTheOpacity();

    void imagesHaveSizeAndFormat();
    void emptySizeGivesANullImage();
    void failingProjectionReachesTheCaller();
};

void tst_KelGPXTrackRenderer::keepsWhatItWasMadeOf()
{
    const LinearRenderer renderer(KelGPXTrackSelection(), QSize(123, 45), 2.5);
    QCOMPARE(renderer.targetImageSize(), QSize(123, 45));
    QCOMPARE(renderer.renderingFactor(), 2.5);
    QCOMPARE(renderer.scale(4.0), 10.0);
    QCOMPARE(renderer.scale(-1.0), -2.5);
}

void tst_KelGPXTrackRenderer::optionsHaveTheirNumbers()
{
    QCOMPARE(static_cast<int>(KelGPXTrackRenderer::Normal), 0);
    QCOMPARE(static_cast<int>(KelGPXTrackRenderer::Foreground), 1);
}

// ---- date line ------------------------------------------------------------------------------------------------

void tst_KelGPXTrackRenderer::checkDateLineCrossing_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<int>("expected");

    QTest::newRow("eastward over the date line") << 179.0 << -179.0 << 1;
    QTest::newRow("westward over the date line") << -179.0 << 179.0 << -1;
    QTest::newRow("eastward over the prime meridian") << -1.0 << 1.0 << 0;
    QTest::newRow("westward over the prime meridian") << 1.0 << -1.0 << 0;
    QTest::newRow("within the eastern hemisphere") << 10.0 << 170.0 << 0;
    QTest::newRow("within the western hemisphere") << -10.0 << -170.0 << 0;
    QTest::newRow("equal longitudes") << 179.0 << 179.0 << 0;
    QTest::newRow("equal longitudes on either side of the prime meridian") << 4e-7 << -4e-7 << 0;
    QTest::newRow("just less than half a turn to the east") << -89.0 << 90.0 << 0;
    QTest::newRow("just more than half a turn to the east is westward") << -91.0 << 90.0 << -1;
    QTest::newRow("just less than half a turn to the west") << 90.0 << -89.0 << 0;
    QTest::newRow("just more than half a turn to the west is eastward") << 90.0 << -91.0 << 1;
    // Exactly half a turn: neither is east of the other, so only the way out of the eastern hemisphere counts.
    QTest::newRow("half a turn from the east") << 90.0 << -90.0 << 1;
    QTest::newRow("half a turn from the west") << -90.0 << 90.0 << 0;
    QTest::newRow("the date line itself is eastern, to the west") << 180.0 << -179.0 << 1;
    QTest::newRow("the date line itself is eastern, from the west") << -179.0 << 180.0 << -1;
    QTest::newRow("the date line written as west is eastern too") << 179.0 << -180.0 << 0;
    QTest::newRow("both writings of the date line") << 180.0 << -180.0 << 0;
}

void tst_KelGPXTrackRenderer::checkDateLineCrossing()
{
    QFETCH(double, from);
    QFETCH(double, to);
    QTEST(LinearRenderer().checkDateLineCrossing(degrees(10, from), degrees(-20, to)), "expected");
}

void tst_KelGPXTrackRenderer::crossingsAcrossChunks()
{
    const QList<KelGeoPositionList> chunks = {longitudes({178, 179}), longitudes({-179, -178, 179}),
                                              longitudes({178, -179})};
    const QList<KelIntRange> ranges = rangesOf(chunks);
    QList<int> crossings(7, 99);
    for (int i = 0; i < 3; ++i)
        LinearRenderer().checkDateLineCrossings(i, chunks, ranges, crossings.data());
    QCOMPARE(crossings, QList<int>({0, 0, 1, 0, -1, 0, 1}));
}

void tst_KelGPXTrackRenderer::crossingsSkipEmptyChunks()
{
    const QList<KelGeoPositionList> chunks = {longitudes({}), longitudes({179}), longitudes({}), longitudes({}),
                                              longitudes({-179})};
    const QList<KelIntRange> ranges = rangesOf(chunks);
    QList<int> crossings(2, 99);
    for (int i = 0; i < 5; ++i)
        LinearRenderer().checkDateLineCrossings(i, chunks, ranges, crossings.data());
    QCOMPARE(crossings, QList<int>({0, 1}));
}

void tst_KelGPXTrackRenderer::crossingsLeaveOtherChunksAlone()
{
    const QList<KelGeoPositionList> chunks = {longitudes({179}), longitudes({-179, 179}), longitudes({-179})};
    QList<int> crossings(4, 99);
    LinearRenderer().checkDateLineCrossings(1, chunks, rangesOf(chunks), crossings.data());
    QCOMPARE(crossings, QList<int>({99, 1, -1, 99}));
}

namespace
{

QList<QPointF> offsetsOf(const KelGPXTrackRenderer &renderer, const QList<KelGeoPositionList> &chunks, bool *crossed)
{
    int total = 0;
    for (const KelGeoPositionList &chunk : chunks)
        total += static_cast<int>(chunk.size());
    const std::unique_ptr<QPointF[]> offsets(
        renderer.createDateLineCrossingOffsets(chunks, indicesOf(chunks), total, rangesOf(chunks), crossed));
    return QList<QPointF>(offsets.get(), offsets.get() + total);
}

} // namespace

void tst_KelGPXTrackRenderer::offsetsThereAndBack()
{
    bool crossed = false;
    const QPointF none;
    const QPointF once(WORLD_WIDTH, 0);
    QCOMPARE(offsetsOf(LinearRenderer(), {longitudes({178, 179}), longitudes({-179, -178}), longitudes({179, 178})},
                       &crossed),
             QList<QPointF>({none, none, once, once, none, none}));
    QVERIFY(crossed);
}

void tst_KelGPXTrackRenderer::offsetsOfTwoRounds()
{
    bool crossed = false;
    const QList<QPointF> offsets = offsetsOf(
        LinearRenderer(), {longitudes({100, -150, -30, 100, -150, -30})}, &crossed);
    QCOMPARE(offsets.at(0), QPointF());
    QCOMPARE(offsets.at(3), QPointF(WORLD_WIDTH, 0));
    QCOMPARE(offsets.at(5), QPointF(2 * WORLD_WIDTH, 0));
}

void tst_KelGPXTrackRenderer::offsetsWestward()
{
    bool crossed = false;
    QCOMPARE(offsetsOf(LinearRenderer(), {longitudes({-179, 179})}, &crossed),
             QList<QPointF>({QPointF(), QPointF(-WORLD_WIDTH, 0)}));
    QVERIFY(crossed);
}

void tst_KelGPXTrackRenderer::offsetsMultiplyBothCoordinates()
{
    const WorldOffsetRenderer renderer(KelGPXTrackSelection(), QPointF(300, -40));
    bool crossed = false;
    QCOMPARE(offsetsOf(renderer, {longitudes({179, -179})}, &crossed), QList<QPointF>({QPointF(), QPointF(300, -40)}));
    QCOMPARE(offsetsOf(renderer, {longitudes({-179, 179})}, &crossed), QList<QPointF>({QPointF(), QPointF(-300, 40)}));
}

void tst_KelGPXTrackRenderer::noCrossingLeavesTheFlagAlone()
{
    for (bool crossed : {false, true}) {
        const bool before = crossed;
        QCOMPARE(offsetsOf(LinearRenderer(), {longitudes({-1, 1}), longitudes({2, -2})}, &crossed),
                 QList<QPointF>(4));
        QCOMPARE(crossed, before);
    }
}

void tst_KelGPXTrackRenderer::offsetsComeHomeAlsoWithoutAFiniteWorldWidth()
{
    const WorldOffsetRenderer renderer(KelGPXTrackSelection(), QPointF(std::numeric_limits<double>::quiet_NaN(), 0));
    bool crossed = false;
    const QList<QPointF> offsets = offsetsOf(renderer, {longitudes({179, -179, 179})}, &crossed);
    QCOMPARE(offsets.at(0), QPointF());
    QVERIFY(std::isnan(offsets.at(1).x()));
    QCOMPARE(offsets.at(2), QPointF());
}

// ---- projection -----------------------------------------------------------------------------------------------

void tst_KelGPXTrackRenderer::projectPointsTakesARangeOfIndices()
{
    const KelGeoPositionList list = positions({QPointF(1, 1), QPointF(2, 2), QPointF(3, 3), QPointF(4, 4)});
    const QPointF untouched(-1, -1);
    QList<QPointF> output(4, untouched);
    LinearRenderer().projectPoints(list, KelIntRange(1, 2), output.data());
    QVERIFY(samePoints(output, {untouched, QPointF(2, 2), QPointF(3, 3), untouched}));
}

void tst_KelGPXTrackRenderer::projectPointsTakesARangeFromZeroToZero()
{
    // As a range of indices, 0 to 0 is one element, although such a range is "unset" elsewhere.
    QList<QPointF> output(2);
    LinearRenderer().projectPoints(positions({QPointF(7, 8), QPointF(9, 9)}), KelIntRange(0, 0), output.data());
    QVERIFY(samePoints(output, {QPointF(7, 8), QPointF()}));

    LinearRenderer().projectPoints(positions({QPointF(7, 8), QPointF(9, 9)}), KelIntRange(1, 0), output.data());
    QVERIFY(samePoints(output, {QPointF(7, 8), QPointF()}));
}

void tst_KelGPXTrackRenderer::projectPointsPPWritesIntoTheChunksRange()
{
    const QList<KelGeoPositionList> chunks = {positions({QPointF(1, 1)}), positions({QPointF(2, 2), QPointF(3, 3)}),
                                              positions({QPointF(4, 4)})};
    const QPointF untouched(-1, -1);
    QList<QPointF> output(4, untouched);
    LinearRenderer().projectPointsPP(1, chunks, rangesOf(chunks), output.data());
    QVERIFY(samePoints(output, {untouched, QPointF(2, 2), QPointF(3, 3), untouched}));
}

void tst_KelGPXTrackRenderer::shiftProjectedShiftsOnlyTheRange()
{
    QList<QPointF> projected(4, QPointF(1, 2));
    const QList<QPointF> offsets(4, QPointF(10, 20));
    LinearRenderer().shiftProjected(KelIntRange(1, 2), projected.data(), offsets.data());
    QCOMPARE(projected, QList<QPointF>({QPointF(1, 2), QPointF(11, 22), QPointF(11, 22), QPointF(1, 2)}));

    LinearRenderer().shiftProjected(KelIntRange(2, 1), projected.data(), offsets.data());
    QCOMPARE(projected.at(2), QPointF(11, 22));
}

// ---- paths ----------------------------------------------------------------------------------------------------

void tst_KelGPXTrackRenderer::emptyTrackHasAnEmptyPath()
{
    QVERIFY(LinearRenderer().createPainterPath(KelGPXTrack(), 100, 1).isEmpty());
    QVERIFY(LinearRenderer().createPainterPath(KelGPXTrack(), 50, 3).isEmpty());
}

void tst_KelGPXTrackRenderer::emptySegmentsHaveAnEmptyPath()
{
    const KelGPXTrack track = trackOf({KelGPXTrackSegment(), KelGPXTrackSegment()});
    QCOMPARE(track.segments().size(), 2);
    QVERIFY(LinearRenderer().createPainterPath(track, 50, 3).isEmpty());
}

void tst_KelGPXTrackRenderer::emptySegmentBeforeAndBetween()
{
    const KelGPXTrack track = trackOf({KelGPXTrackSegment(), segment(longitudes({179})), KelGPXTrackSegment(),
                                       segment(longitudes({-179})), KelGPXTrackSegment()});
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track, 100, 1)),
                       {QPointF(1790, 0), QPointF(1810, 0)}));
}

void tst_KelGPXTrackRenderer::thinningThreshold_data()
{
    QTest::addColumn<double>("factor");
    QTest::addColumn<QPointF>("second");
    QTest::addColumn<bool>("drawn");

    // The projection of these pixels is exact: one pixel per degree.
    QTest::newRow("exactly four pixels") << 1.0 << QPointF(4, 0) << false;
    QTest::newRow("just above four pixels") << 1.0 << QPointF(4.0625, 0) << true;
    QTest::newRow("Manhattan distance, exactly four") << 1.0 << QPointF(2, 2) << false;
    QTest::newRow("Manhattan distance, five, although less than four straight") << 1.0 << QPointF(2, 3) << true;
    QTest::newRow("to the left and up") << 1.0 << QPointF(-3, -1) << false;
    QTest::newRow("further to the left and up") << 1.0 << QPointF(-3, -1.0625) << true;
    QTest::newRow("high density, exactly eight pixels") << 2.0 << QPointF(5, 3) << false;
    QTest::newRow("high density, just above eight pixels") << 2.0 << QPointF(5, 3.0625) << true;
    QTest::newRow("low density, exactly two pixels") << 0.5 << QPointF(1, 1) << false;
    QTest::newRow("low density, just above two pixels") << 0.5 << QPointF(1, 1.0625) << true;
}

void tst_KelGPXTrackRenderer::thinningThreshold()
{
    QFETCH(double, factor);
    QFETCH(QPointF, second);
    QFETCH(bool, drawn);

    const LinearRenderer renderer(KelGPXTrackSelection(), QSize(320, 200), factor, 1.0);
    const KelGPXTrack track = trackOf({segment({degrees(0, 0), degrees(-second.y(), second.x())})});
    const QPainterPath path = renderer.createPainterPath(track, 100, 1);
    QCOMPARE(!path.isEmpty(), drawn);
    if (drawn)
        QVERIFY(samePoints(elements(path), {QPointF(0, 0), second}));
}

void tst_KelGPXTrackRenderer::thinningMeasuresFromTheLastPointTaken()
{
    // 3 and 4 are too near to 0; 5 is taken; 9 is too near to 5, 10 is not.
    const KelGPXTrack track = trackOf({segment(longitudes({0, 3, 4, 5, 9, 10, 14, 20}))});
    const LinearRenderer renderer(KelGPXTrackSelection(), QSize(320, 200), 1.0, 1.0);
    QVERIFY(samePoints(elements(renderer.createPainterPath(track, 100, 1)),
                       {QPointF(0, 0), QPointF(5, 0), QPointF(10, 0), QPointF(20, 0)}));
}

void tst_KelGPXTrackRenderer::lastPointAlwaysEndsThePath()
{
    const KelGPXTrack track = trackOf({segment(longitudes({0, 10, 11, 12}))});
    const LinearRenderer renderer(KelGPXTrackSelection(), QSize(320, 200), 1.0, 1.0);
    QVERIFY(samePoints(elements(renderer.createPainterPath(track, 100, 1)),
                       {QPointF(0, 0), QPointF(10, 0), QPointF(12, 0)}));
}

void tst_KelGPXTrackRenderer::twoPointsAreAMoveAndALine()
{
    // The line to the last point is asked for a second time; a painter path drops a line that leads nowhere.
    const QPainterPath path = LinearRenderer().createPainterPath(
        trackThrough({QPointF(10, 20), QPointF(110, 70)}), 100, 1);
    QVERIFY(samePoints(elements(path), {QPointF(10, 20), QPointF(110, 70)}));
    QVERIFY(path.elementAt(0).isMoveTo());
    QVERIFY(path.elementAt(1).isLineTo());
}

void tst_KelGPXTrackRenderer::singlePointIsEmpty()
{
    QVERIFY(LinearRenderer().createPainterPath(trackThrough({QPointF(10, 20)}), 100, 1).isEmpty());
}

void tst_KelGPXTrackRenderer::pointsThatAreNotFiniteAreLeftOut()
{
    class Renderer : public LinearRenderer
    {
    public:
        QPointF projectPosition(const KelGeoPosition &position) const override
        {
            return position.latitude().decimalDegrees() < -80
                ? QPointF(0, std::numeric_limits<double>::quiet_NaN())
                : LinearRenderer::projectPosition(position);
        }
    };
    const KelGPXTrack track = trackOf({segment({at(10, 10), degrees(-90, 5), at(100, 10)})});
    QVERIFY(samePoints(elements(Renderer().createPainterPath(track, 100, 1)), {QPointF(10, 10), QPointF(100, 10)}));

    const KelGPXTrack onlyPoles = trackOf({segment({degrees(-90, 5), degrees(-90, 5), degrees(-85, 5)})});
    QVERIFY(Renderer().createPainterPath(onlyPoles, 100, 1).isEmpty());
}

void tst_KelGPXTrackRenderer::linesBeginAndEndAtFinitePoints_data()
{
    QTest::addColumn<double>("nowhere");
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    QTest::newRow("infinite on the other side") << -std::numeric_limits<double>::infinity();
    QTest::newRow("farther than painter paths take") << 1e200;
}

void tst_KelGPXTrackRenderer::linesBeginAndEndAtFinitePoints()
{
    class Renderer : public LinearRenderer
    {
    public:
        explicit Renderer(double nowhere)
            : LinearRenderer(selectionOf(trackOf({segment({degrees(-90, 5)})}), configuration()))
            , m_nowhere(nowhere)
        {
        }
        QPointF projectPosition(const KelGeoPosition &position) const override
        {
            return position.latitude().decimalDegrees() < -80 ? QPointF(50, m_nowhere)
                                                              : LinearRenderer::projectPosition(position);
        }

    private:
        double m_nowhere;
    };
    QFETCH(double, nowhere);
    const Renderer renderer(nowhere);
    const KelGPXTrack track = trackOf({segment({degrees(-90, 5), degrees(-90, 6), at(100, 10), at(200, 10),
                                                degrees(-90, 5), at(201, 10), degrees(-90, 5)})});
    // Neither from the origin nor to nowhere; the last finite point ends the line, near as it is to the one before.
    QVERIFY(samePoints(elements(renderer.createPainterPath(track, 100, 1)),
                       {QPointF(100, 10), QPointF(200, 10), QPointF(201, 10)}));
    QVERIFY(renderer.createPainterPath(trackOf({segment({degrees(-90, 5), at(100, 10), degrees(-90, 5)})}), 100, 1)
                .isEmpty());

    // A single point nowhere has no marker.
    const QImage picture = renderer.render(KelGPXTrackRenderer::Foreground);
    QCOMPARE(picture, image(picture.size(), picture.format(), 0));
}

void tst_KelGPXTrackRenderer::strengthOfOneHundredDoesNotSmooth()
{
    const QList<QPointF> bend = {QPointF(0, 0), QPointF(100, 100), QPointF(200, 0)};
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(trackThrough(bend), 100, 1)), bend));
}

void tst_KelGPXTrackRenderer::strengthIsAPercentage()
{
    const KelGPXTrack track = trackThrough({QPointF(0, 0), QPointF(100, 100), QPointF(200, 0)});
    const LinearRenderer renderer;
    QVERIFY(samePoints(elements(renderer.createPainterPath(track, 99, 1)),
                       {QPointF(0, 0), QPointF(100, 99), QPointF(200, 0)}));
    QVERIFY(samePoints(elements(renderer.createPainterPath(track, 0, 1)),
                       {QPointF(0, 0), QPointF(100, 0), QPointF(200, 0)}));
    QVERIFY(samePoints(elements(renderer.createPainterPath(track, 150, 1)),
                       {QPointF(0, 0), QPointF(100, 150), QPointF(200, 0)}));
    QVERIFY(samePoints(elements(renderer.createPainterPath(track, -50, 1)),
                       {QPointF(0, 0), QPointF(100, -50), QPointF(200, 0)}));
}

void tst_KelGPXTrackRenderer::smoothingStepsAreThePieces()
{
    // Six points in two pieces: 0, 2 and 5 stay. Point 1 goes onto the chord from 0 to 2, symmetric.
    const KelGPXTrack track = trackThrough({QPointF(0, 0), QPointF(50, 50), QPointF(100, 0), QPointF(150, 0),
                                            QPointF(200, 0), QPointF(250, 0)});
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track, 0, 2)),
                       {QPointF(0, 0), QPointF(50, 0), QPointF(100, 0), QPointF(150, 0), QPointF(200, 0),
                        QPointF(250, 0)}));
    // In six pieces nothing moves.
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track, 0, 6)),
                       {QPointF(0, 0), QPointF(50, 50), QPointF(100, 0), QPointF(150, 0), QPointF(200, 0),
                        QPointF(250, 0)}));
}

void tst_KelGPXTrackRenderer::segmentsAreOneLine()
{
    const KelGPXTrack track = trackOf({segment(positions({QPointF(0, 0), QPointF(10, 0)})),
                                       segment(positions({QPointF(50, 50), QPointF(60, 50)}))});
    QList<int> moves;
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track, 100, 1), &moves),
                       {QPointF(0, 0), QPointF(10, 0), QPointF(50, 50), QPointF(60, 50)}));
    QCOMPARE(moves, QList<int>{0});
}

void tst_KelGPXTrackRenderer::manyPointsInManyChunks()
{
    // Crosses the date line eastward every 1000 points, so that every chunk depends on all before it. No point lies
    // on the date line itself.
    KelGeoPositionList list;
    QList<QPointF> expected;
    constexpr int count = 10000;
    for (int i = 0; i < count; ++i) {
        const double longitude = i * 0.36 + 0.1;
        const double wrapped = longitude - 360.0 * std::floor((longitude + 180.0) / 360.0);
        list.append(degrees(i % 2, wrapped));
        expected.append(QPointF(longitude * 100, -(i % 2) * 100));
    }
    const LinearRenderer renderer(KelGPXTrackSelection(), QSize(320, 200), 1.0, 100.0);
    QVERIFY(samePoints(elements(renderer.createPainterPath(trackOf({segment(list)}), 100, 1)), expected));
}

// ---- date line in paths -----------------------------------------------------------------------------------------

void tst_KelGPXTrackRenderer::dateLineEastward()
{
    const KelGPXTrack track = trackOf({segment(longitudes({179, -179}))});
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track, 100, 1)),
                       {QPointF(1790, 0), QPointF(1810, 0)}));
}

void tst_KelGPXTrackRenderer::dateLineWestward()
{
    const KelGPXTrack track = trackOf({segment(longitudes({-179, 179}))});
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track, 100, 1)),
                       {QPointF(-1790, 0), QPointF(-1810, 0)}));
}

void tst_KelGPXTrackRenderer::dateLineThereAndBack()
{
    const KelGPXTrack track = trackOf({segment(longitudes({178, -178, 177, -177}))});
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track, 100, 1)),
                       {QPointF(1780, 0), QPointF(1820, 0), QPointF(1770, 0), QPointF(1830, 0)}));
}

void tst_KelGPXTrackRenderer::dateLineBetweenSegments()
{
    const KelGPXTrack track = trackOf({segment(longitudes({178, 179})), segment(longitudes({-179, -178}))});
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track, 100, 1)),
                       {QPointF(1780, 0), QPointF(1790, 0), QPointF(1810, 0), QPointF(1820, 0)}));
}

void tst_KelGPXTrackRenderer::dateLineWrittenAsWestIsEastern()
{
    // Deliberate: longitude -180 belongs to the eastern hemisphere, so the line is shifted only behind it.
    const KelGPXTrack track = trackOf({segment(longitudes({179, -180, -179}))});
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track, 100, 1)),
                       {QPointF(1790, 0), QPointF(-1800, 0), QPointF(1810, 0)}));
    const KelGPXTrack writtenAsEast = trackOf({segment(longitudes({179, 180, -179}))});
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(writtenAsEast, 100, 1)),
                       {QPointF(1790, 0), QPointF(1800, 0), QPointF(1810, 0)}));
}

void tst_KelGPXTrackRenderer::dateLineIsMendedBeforeSmoothing()
{
    // The middle point goes onto the chord from 170 E to 150 W = 210 E, not onto one that leads around the world.
    const KelGPXTrack track = trackOf({segment({degrees(0, 170), degrees(10, -170), degrees(0, -150)})});
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track, 0, 1)),
                       {QPointF(1700, 0), QPointF(1900, 0), QPointF(2100, 0)}));
}

void tst_KelGPXTrackRenderer::primeMeridianIsNotShifted()
{
    const KelGPXTrack track = trackOf({segment(longitudes({-1, 1, -2}))});
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track, 100, 1)),
                       {QPointF(-10, 0), QPointF(10, 0), QPointF(-20, 0)}));
}

void tst_KelGPXTrackRenderer::dateLineWithAMapProjection()
{
    // 20 degrees around the date line in 200 pixels: ten pixels per degree, the date line in the middle.
    const MapRenderer renderer(KelGPXTrackSelection(), area(-1, 1, 170, -170), QSize(200, 20));
    // The projection cuts to whole pixels.
    QVERIFY(std::abs(renderer.aroundTheWorldOffset().x() - 3600) <= 1);
    QCOMPARE(renderer.aroundTheWorldOffset().y(), 0.0);
    const QPainterPath path =
        renderer.createPainterPath(trackOf({segment(longitudes({175, -175, 175}))}), 100, 1);
    QCOMPARE(path.elementCount(), 3);
    QVERIFY(std::abs(path.elementAt(0).x - 50) <= 1);
    QVERIFY(std::abs(path.elementAt(1).x - 150) <= 1);
    QVERIFY(std::abs(path.elementAt(2).x - 50) <= 1);
}

// ---- paths of configured tracks -----------------------------------------------------------------------------------

namespace
{

const QList<QPointF> &openTriangle()
{
    static const QList<QPointF> points = {QPointF(10, 10), QPointF(110, 10), QPointF(110, 90)};
    return points;
}

const QList<QPointF> &closedTriangle()
{
    static const QList<QPointF> points = openTriangle() + QList<QPointF>{QPointF(10, 10)};
    return points;
}

KelGPXTrackConfiguration shaped(KelGPXTrackShapeEnum shape)
{
    KelGPXTrackConfiguration result = configuration();
    result.setTrackShape(KelGPXTrackShape(shape));
    return result;
}

} // namespace

void tst_KelGPXTrackRenderer::lineDrawnAsPolygonIsClosed()
{
    const KelGPXConfiguredTrack track(trackThrough(openTriangle()), shaped(TrackShapePolygon));
    QCOMPARE(track.naturalShape().toInt(), static_cast<int>(TrackShapeLineString));
    QCOMPARE(track.effectiveShape().toInt(), static_cast<int>(TrackShapePolygon));
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track)), closedTriangle()));
}

void tst_KelGPXTrackRenderer::naturalPolygonIsNotClosedAgain()
{
    const KelGPXConfiguredTrack track(trackThrough(closedTriangle()), shaped(TrackShapePolygon));
    QCOMPARE(track.naturalShape().toInt(), static_cast<int>(TrackShapePolygon));
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track)), closedTriangle()));
}

void tst_KelGPXTrackRenderer::lineStaysOpen()
{
    for (const KelGPXTrackShapeEnum shape : {TrackShapeLineString, TrackShapeAuto, TrackShapeHop}) {
        const KelGPXConfiguredTrack track(trackThrough(openTriangle()), shaped(shape));
        QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track)), openTriangle()));
    }
}

void tst_KelGPXTrackRenderer::enclavesFollowInOrderAndStayOpen()
{
    const QList<QPointF> first = {QPointF(60, 20), QPointF(100, 20), QPointF(100, 50)};
    const QList<QPointF> second = {QPointF(90, 20), QPointF(105, 20)};
    KelGPXTrack track = trackThrough(openTriangle());
    track.addEnclave(trackThrough(first));
    track.addEnclave(trackThrough(second));

    QList<int> moves;
    const QPainterPath path =
        LinearRenderer().createPainterPath(KelGPXConfiguredTrack(track, shaped(TrackShapePolygon)));
    QVERIFY(samePoints(elements(path, &moves), closedTriangle() + first + second));
    QCOMPARE(moves, QList<int>({0, 4, 7}));

    // The path of the track alone knows no enclaves.
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(track, 100, 1)), openTriangle()));
}

void tst_KelGPXTrackRenderer::enclavesAreSmoothedLikeTheTrack()
{
    KelGPXTrack track = trackThrough({QPointF(0, 0), QPointF(100, 100), QPointF(200, 0)});
    track.addEnclave(trackThrough({QPointF(0, 50), QPointF(100, 150), QPointF(200, 50)}));
    KelGPXTrackConfiguration smooth = configuration();
    smooth.setSmoothingStrength(25);
    smooth.setSmoothingSteps(1);
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(KelGPXConfiguredTrack(track, smooth))),
                       {QPointF(0, 0), QPointF(100, 25), QPointF(200, 0),
                        QPointF(0, 50), QPointF(100, 75), QPointF(200, 50)}));
}

void tst_KelGPXTrackRenderer::enclavesCountEvenWhereTheTrackIsAPoint()
{
    KelGPXTrack track = trackThrough({QPointF(10, 10), QPointF(11, 11), QPointF(12, 10)});
    track.addEnclave(trackThrough({QPointF(50, 50), QPointF(70, 50)}));
    QVERIFY(samePoints(elements(LinearRenderer().createPainterPath(
                           KelGPXConfiguredTrack(track, shaped(TrackShapePolygon)))),
                       {QPointF(50, 50), QPointF(70, 50)}));
}

void tst_KelGPXTrackRenderer::enclavesOfEnclavesAreNotDrawn()
{
    KelGPXTrack enclave = trackThrough({QPointF(60, 20), QPointF(100, 20)});
    enclave.addEnclave(trackThrough({QPointF(70, 20), QPointF(90, 20)}));
    KelGPXTrack track = trackThrough(closedTriangle());
    track.addEnclave(enclave);
    QCOMPARE(LinearRenderer().createPainterPath(KelGPXConfiguredTrack(track, configuration())).elementCount(), 4 + 2);
}

// ---- world copies ---------------------------------------------------------------------------------------------

void tst_KelGPXTrackRenderer::aroundTheWorldOffset()
{
    QCOMPARE(LinearRenderer().aroundTheWorldOffset(), QPointF(3600, 0));
    QCOMPARE(WorldOffsetRenderer(KelGPXTrackSelection(), QPointF(12.5, -3)).aroundTheWorldOffset(),
             QPointF(12.5, -3));
    // The whole world in 360 pixels.
    QCOMPARE(MapRenderer(KelGPXTrackSelection(), area(-60, 60, -180, 180), QSize(360, 100)).aroundTheWorldOffset().y(),
             0.0);
}

void tst_KelGPXTrackRenderer::visibleShifts_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<double>("worldWidth");
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");

    QTest::newRow("three world widths") << 900 << 300.0 << -4 << 4;
    QTest::newRow("a pixel less than three world widths") << 899 << 300.0 << -3 << 3;
    QTest::newRow("the world is wider than the image") << 100 << 300.0 << -1 << 1;
    QTest::newRow("as wide as the world") << 300 << 300.0 << -2 << 2;
    QTest::newRow("the world's width is cut to whole pixels") << 300 << 150.9 << -3 << 3;
    QTest::newRow("the image is not wider than the cut width") << 300 << 300.9 << -2 << 2;
    QTest::newRow("a world of one pixel") << 10 << 1.0 << -11 << 11;
    QTest::newRow("a world of nearly two pixels") << 10 << 1.99 << -11 << 11;
    QTest::newRow("a mirrored world, truncated toward zero") << 100 << -300.0 << -1 << 1;
    QTest::newRow("a mirrored small world inverts the range") << 900 << -300.0 << 2 << -2;
}

void tst_KelGPXTrackRenderer::visibleShifts()
{
    QFETCH(int, width);
    QFETCH(double, worldWidth);
    QImage device(width, 1, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&device);
    const KelIntRange shifts =
        WorldOffsetRenderer(KelGPXTrackSelection(), QPointF(worldWidth, 0)).visibleShifts(&painter);
    QTEST(shifts.min(), "min");
    QTEST(shifts.max(), "max");
}

void tst_KelGPXTrackRenderer::visibleShiftsCountsRawPixels()
{
    QImage device(900, 1, QImage::Format_ARGB32_Premultiplied);
    device.setDevicePixelRatio(3.0);
    QPainter painter(&device);
    painter.scale(5, 5);
    QCOMPARE(WorldOffsetRenderer(KelGPXTrackSelection(), QPointF(300, 0)).visibleShifts(&painter).max(), 4);
}

void tst_KelGPXTrackRenderer::visibleShiftsOfDegenerateWorlds_data()
{
    QTest::addColumn<double>("worldWidth");
    QTest::newRow("no width") << 0.0;
    QTest::newRow("less than a pixel") << 0.99;
    QTest::newRow("less than a pixel, mirrored") << -0.99;
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    QTest::newRow("infinite, mirrored") << -std::numeric_limits<double>::infinity();
    QTest::newRow("beyond int") << 1e300;
}

void tst_KelGPXTrackRenderer::visibleShiftsOfDegenerateWorlds()
{
    QFETCH(double, worldWidth);
    KelGPXTrackConfiguration line = configuration();
    const WorldOffsetRenderer renderer(selectionOf(trackThrough({QPointF(50, 50), QPointF(150, 50)}), line),
                                       QPointF(worldWidth, 0));
    QImage device(320, 200, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&device);
    QCOMPARE(renderer.visibleShifts(&painter).min(), -1);
    QCOMPARE(renderer.visibleShifts(&painter).max(), 1);
    painter.end();

    // The world itself is painted in any case.
    const QImage picture = renderer.render(KelGPXTrackRenderer::Normal);
    QCOMPARE(picture.pixelColor(100, 50), QColor(0, 0, 255));
    QCOMPARE(picture.pixelColor(100, 150).alpha(), 0);
}

void tst_KelGPXTrackRenderer::visibleShiftsWithoutADevice()
{
    QPainter painter;
    QCOMPARE(LinearRenderer().visibleShifts(&painter).min(), -1);
    QCOMPARE(LinearRenderer().visibleShifts(&painter).max(), 1);
}

// ---- arrow geometry -------------------------------------------------------------------------------------------

void tst_KelGPXTrackRenderer::detectAngleOfPath_data()
{
    QTest::addColumn<QPointF>("end");
    QTest::addColumn<double>("angle");

    QTest::newRow("right") << QPointF(100, 0) << 0.0;
    QTest::newRow("up") << QPointF(0, -100) << 90.0;
    QTest::newRow("left") << QPointF(-100, 0) << 180.0;
    QTest::newRow("down") << QPointF(0, 100) << 270.0;
    QTest::newRow("up and right") << QPointF(100, -100) << 45.0;
    QTest::newRow("down and right") << QPointF(100, 100) << 315.0;
}

void tst_KelGPXTrackRenderer::detectAngleOfPath()
{
    QFETCH(QPointF, end);
    QPainterPath path;
    path.lineTo(end);
    QTEST(LinearRenderer().detectAngleOfPath(path), "angle");
}

void tst_KelGPXTrackRenderer::angleIsThePlainMean()
{
    // The last 3.5 percent bend from 2 degrees to 358: samples 2, 2, 358, 358, 358, whose plain mean points back.
    QLineF line(0, 0, 96.5, 0);
    line.setAngle(2);
    QLineF bend(line.p2(), line.p2() + QPointF(3.5, 0));
    bend.setAngle(358);
    QPainterPath path(line.p1());
    path.lineTo(line.p2());
    path.lineTo(bend.p2());
    QVERIFY(std::abs(LinearRenderer().detectAngleOfPath(path) - (2 * 2.0 + 3 * 358.0) / 5) < 1e-6);

    // Without the jump the mean weighs the samples evenly.
    line.setAngle(10);
    bend.translate(line.p2() - bend.p1());
    bend.setAngle(60);
    QPainterPath even(line.p1());
    even.lineTo(line.p2());
    even.lineTo(bend.p2());
    QVERIFY(std::abs(LinearRenderer().detectAngleOfPath(even) - (2 * 10.0 + 3 * 60.0) / 5) < 1e-6);
}

void tst_KelGPXTrackRenderer::carthesian_data()
{
    QTest::addColumn<double>("radius");
    QTest::addColumn<double>("angle");
    QTest::addColumn<QPointF>("expected");

    QTest::newRow("backwards from right is left") << 10.0 << 0.0 << QPointF(-10, 0);
    QTest::newRow("backwards from up is down") << 10.0 << 90.0 << QPointF(0, 10);
    QTest::newRow("backwards from left is right") << 10.0 << 180.0 << QPointF(10, 0);
    QTest::newRow("backwards from down is up") << 10.0 << 270.0 << QPointF(0, -10);
    QTest::newRow("thirty degrees") << 10.0 << 30.0 << QPointF(-8.660254037844386, 5);
    QTest::newRow("minus thirty degrees") << 10.0 << -30.0 << QPointF(-8.660254037844386, -5);
    QTest::newRow("no radius") << 0.0 << 77.0 << QPointF(0, 0);
}

void tst_KelGPXTrackRenderer::carthesian()
{
    QFETCH(double, radius);
    QFETCH(double, angle);
    QFETCH(QPointF, expected);
    QVERIFY(samePoints({LinearRenderer().carthesian(radius, angle)}, {expected}));
}

void tst_KelGPXTrackRenderer::movePolar()
{
    QVERIFY(samePoints({LinearRenderer().movePolar(QPointF(100, 50), 20, 90)}, {QPointF(100, 70)}));
}

// ---- colours, pens, brushes -----------------------------------------------------------------------------------

void tst_KelGPXTrackRenderer::adaptColor()
{
    const LinearRenderer renderer;
    QCOMPARE(renderer.adaptColor(QColor(1, 2, 3, 4), KelGPXTrackRenderer::Normal), QColor(1, 2, 3, 4));
    QCOMPARE(renderer.adaptColor(QColor(1, 2, 3, 4), KelGPXTrackRenderer::Foreground), QColor(1, 2, 3, 255));
    QCOMPARE(renderer.adaptColor(QColor(1, 2, 3, 0), KelGPXTrackRenderer::Foreground), QColor(1, 2, 3, 255));
}

void tst_KelGPXTrackRenderer::colorsOfTheConfiguration()
{
    KelGPXTrackConfiguration colors = configuration();
    colors.setLineColor(QColor(10, 20, 30, 40));
    colors.setFillColor(QColor(50, 60, 70, 80));
    const LinearRenderer renderer;
    QCOMPARE(renderer.lineColor(colors, KelGPXTrackRenderer::Normal), QColor(10, 20, 30, 40));
    QCOMPARE(renderer.lineColor(colors, KelGPXTrackRenderer::Foreground), QColor(10, 20, 30, 255));
    QCOMPARE(renderer.fillColor(colors, KelGPXTrackRenderer::Normal), QColor(50, 60, 70, 80));
    QCOMPARE(renderer.fillColor(colors, KelGPXTrackRenderer::Foreground), QColor(50, 60, 70, 255));
}

void tst_KelGPXTrackRenderer::solidPen_data()
{
    QTest::addColumn<double>("factor");
    QTest::addColumn<bool>("foreground");
    QTest::addColumn<double>("width");
    QTest::addColumn<int>("alpha");

    QTest::newRow("normal: the line") << 1.0 << false << 6.0 << 100;
    QTest::newRow("foreground: line and halo") << 1.0 << true << 11.5 << 255;
    QTest::newRow("normal, high density") << 2.0 << false << 12.0 << 100;
    QTest::newRow("foreground, high density") << 2.0 << true << 23.0 << 255;
}

void tst_KelGPXTrackRenderer::solidPen()
{
    QFETCH(double, factor);
    QFETCH(bool, foreground);
    QFETCH(double, width);
    QFETCH(int, alpha);

    KelGPXTrackConfiguration halo = configuration();
    halo.setLineColor(QColor(10, 20, 30, 100));
    halo.setHaloWidth(KelDistance(5.5));
    halo.setPenStyle(KelPenStyle(Qt::DotLine));
    const LinearRenderer renderer(KelGPXTrackSelection(), QSize(320, 200), factor);
    const QPen pen = renderer.solidPenFromTrack(
        halo, foreground ? KelGPXTrackRenderer::Foreground : KelGPXTrackRenderer::Normal);
    QCOMPARE(pen.widthF(), width);
    QCOMPARE(pen.color(), QColor(10, 20, 30, alpha));
    QCOMPARE(pen.brush().style(), Qt::SolidPattern);
    QCOMPARE(pen.style(), Qt::SolidLine);
    QCOMPARE(pen.capStyle(), Qt::RoundCap);
    QCOMPARE(pen.joinStyle(), Qt::RoundJoin);
    QVERIFY(!pen.isCosmetic());
}

void tst_KelGPXTrackRenderer::penStyleOnlyInNormal()
{
    KelGPXTrackConfiguration dashed = configuration();
    dashed.setPenStyle(KelPenStyle(Qt::DashDotLine));
    const LinearRenderer renderer;
    const QPen normal = renderer.penFromTrack(dashed, KelGPXTrackRenderer::Normal);
    QCOMPARE(normal.style(), Qt::DashDotLine);
    QCOMPARE(normal.widthF(), 6.0);
    QCOMPARE(normal.color(), QColor(0, 0, 255));
    QCOMPARE(renderer.penFromTrack(dashed, KelGPXTrackRenderer::Foreground).style(), Qt::SolidLine);
}

void tst_KelGPXTrackRenderer::brush()
{
    KelGPXTrackConfiguration filled = configuration();
    filled.setFillColor(QColor(50, 60, 70, 80));
    const QBrush normal = LinearRenderer().brushFromTrack(filled, KelGPXTrackRenderer::Normal);
    QCOMPARE(normal.style(), Qt::SolidPattern);
    QCOMPARE(normal.color(), QColor(50, 60, 70, 80));
    QCOMPARE(LinearRenderer().brushFromTrack(filled, KelGPXTrackRenderer::Foreground).color(), QColor(50, 60, 70));
}

// ---- cropping -------------------------------------------------------------------------------------------------

void tst_KelGPXTrackRenderer::mergeCroppingSetsTheAlphaOfTheRows()
{
    uchar table[256];
    for (int i = 0; i < 256; ++i)
        table[i] = static_cast<uchar>(255 - i);

    QImage target = image(QSize(3, 4), QImage::Format_ARGB32, qRgba(11, 22, 33, 44));
    QImage mask = image(QSize(3, 4), QImage::Format_ARGB32, qRgba(1, 2, 3, 0));
    mask.setPixel(0, 1, qRgba(1, 2, 3, 55));
    mask.setPixel(2, 2, qRgba(1, 2, 3, 255));
    LinearRenderer().mergeCropping(&target, mask, KelIntRange(1, 2), table);

    for (int x = 0; x < 3; ++x) {
        QCOMPARE(target.pixel(x, 0), qRgba(11, 22, 33, 44));
        QCOMPARE(target.pixel(x, 3), qRgba(11, 22, 33, 44));
    }
    QCOMPARE(target.pixel(0, 1), qRgba(11, 22, 33, 200));
    QCOMPARE(target.pixel(1, 1), qRgba(11, 22, 33, 255));
    QCOMPARE(target.pixel(2, 1), qRgba(11, 22, 33, 255));
    QCOMPARE(target.pixel(0, 2), qRgba(11, 22, 33, 255));
    QCOMPARE(target.pixel(2, 2), qRgba(11, 22, 33, 0));
}

void tst_KelGPXTrackRenderer::mergeCroppingDetachesTheTarget()
{
    const uchar table[256] = {};
    const QImage original = image(QSize(2, 2), QImage::Format_ARGB32, qRgba(1, 2, 3, 255));
    QImage target = original;
    LinearRenderer().mergeCropping(&target, original, KelIntRange(0, 1), table);
    QCOMPARE(target.pixel(0, 0), qRgba(1, 2, 3, 0));
    QCOMPARE(original.pixel(0, 0), qRgba(1, 2, 3, 255));
}

void tst_KelGPXTrackRenderer::mergeCroppingStaysInBothImages_data()
{
    QTest::addColumn<QSize>("targetSize");
    QTest::addColumn<QSize>("maskSize");
    QTest::newRow("smaller mask") << QSize(9, 7) << QSize(4, 3);
    QTest::newRow("larger mask") << QSize(4, 3) << QSize(9, 7);
    QTest::newRow("narrow and high") << QSize(9, 3) << QSize(4, 7);
    QTest::newRow("null mask") << QSize(4, 3) << QSize();
    QTest::newRow("null target") << QSize() << QSize(4, 3);
}

void tst_KelGPXTrackRenderer::mergeCroppingStaysInBothImages()
{
    QFETCH(QSize, targetSize);
    QFETCH(QSize, maskSize);
    const uchar table[256] = {77};
    QImage target = image(targetSize, QImage::Format_ARGB32, qRgba(1, 2, 3, 255));
    const QImage mask = image(maskSize, QImage::Format_ARGB32, 0);
    LinearRenderer().mergeCropping(&target, mask, KelIntRange(-5, 50), table);
    for (int y = 0; y < target.height(); ++y) {
        for (int x = 0; x < target.width(); ++x)
            QCOMPARE(qAlpha(target.pixel(x, y)), mask.rect().contains(x, y) ? 77 : 255);
    }
}

void tst_KelGPXTrackRenderer::mergeCroppingLeavesOtherDepthsAlone()
{
    const uchar table[256] = {};
    QImage target = image(QSize(4, 4), QImage::Format_RGB888, qRgb(9, 9, 9));
    const QImage before = target.copy();
    LinearRenderer().mergeCropping(&target, image(QSize(4, 4), QImage::Format_ARGB32, 0), KelIntRange(0, 3), table);
    QCOMPARE(target, before);

    QImage deep = image(QSize(4, 4), QImage::Format_ARGB32, qRgba(1, 2, 3, 255));
    LinearRenderer().mergeCropping(&deep, image(QSize(4, 4), QImage::Format_Alpha8, 0), KelIntRange(0, 3), table);
    QCOMPARE(deep.pixel(1, 1), qRgba(1, 2, 3, 255));
}

void tst_KelGPXTrackRenderer::cropWithFullOpacityReturnsTheMap_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("with alpha") << QImage::Format_ARGB32;
    QTest::newRow("without alpha") << QImage::Format_RGB32;
    QTest::newRow("24 bits") << QImage::Format_RGB888;
}

void tst_KelGPXTrackRenderer::cropWithFullOpacityReturnsTheMap()
{
    QFETCH(QImage::Format, format);
    const QImage map = image(QSize(320, 200), format, qRgba(10, 100, 200, 99));
    const QImage cropped = LinearRenderer(lineSelection(255)).crop(map);
    QCOMPARE(cropped.format(), format);
    QCOMPARE(cropped, map);
}

void tst_KelGPXTrackRenderer::cropFollowsTheTable_data()
{
    QTest::addColumn<int>("opacity");
    QTest::newRow("transparent outside") << 0;
    QTest::newRow("hardly visible outside") << 1;
    QTest::newRow("half") << 128;
    QTest::newRow("nearly opaque") << 254;
}

void tst_KelGPXTrackRenderer::cropFollowsTheTable()
{
    QFETCH(int, opacity);
    // Sloped, so that its edges cover pixels to many degrees.
    KelGPXTrackSelection selection =
        selectionOf(trackThrough({QPointF(50, 80), QPointF(270, 120)}), configuration());
    selection.setCroppingOpacity(opacity);
    const LinearRenderer renderer(selection);
    // White keeps its alpha apart from the colour: premultiplied, every channel is the alpha.
    const QImage cropped = renderer.crop(image(QSize(320, 200), QImage::Format_RGB32, qRgb(255, 255, 255)));
    QCOMPARE(cropped.format(), QImage::Format_ARGB32_Premultiplied);

    const QImage mask = renderer.render(KelGPXTrackRenderer::Foreground);
    QSet<int> seen;
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 320; ++x) {
            const int a = qAlpha(mask.pixel(x, y));
            const int expected = qMin(qMax(a * (255 - opacity) / 255 + opacity, opacity), 255);
            QCOMPARE(qAlpha(cropped.pixel(x, y)), expected);
            seen.insert(a);
        }
    }
    QVERIFY(seen.contains(0));
    QVERIFY(seen.contains(255));
    QVERIFY(seen.size() > 10);
    QCOMPARE(qAlpha(cropped.pixel(5, 5)), opacity);
    QCOMPARE(qAlpha(cropped.pixel(160, 100)), 255);
}

void tst_KelGPXTrackRenderer::cropReachesToTheHalo()
{
    // Line of 10 and halo of 20 are 30 wide: 85 to 115 around y = 100.
    const QImage map = image(QSize(320, 200), QImage::Format_RGB32, qRgb(255, 255, 255));
    const QImage cropped = LinearRenderer(lineSelection(0, 20.0)).crop(map);
    QCOMPARE(qAlpha(cropped.pixel(160, 84)), 0);
    QCOMPARE(qAlpha(cropped.pixel(160, 85)), 255);
    QCOMPARE(qAlpha(cropped.pixel(160, 114)), 255);
    QCOMPARE(qAlpha(cropped.pixel(160, 115)), 0);
}

void tst_KelGPXTrackRenderer::cropReplacesTheMapsOwnAlpha()
{
    const QImage map = image(QSize(320, 200), QImage::Format_ARGB32, qRgba(200, 100, 50, 20));
    const QImage cropped = LinearRenderer(lineSelection(128)).crop(map).convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(cropped.pixel(160, 100), qRgba(200, 100, 50, 255));
    QCOMPARE(qAlpha(cropped.pixel(5, 5)), 128);
}

void tst_KelGPXTrackRenderer::cropNeverChangesTheCallersMap_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("already in the working format") << QImage::Format_ARGB32;
    QTest::newRow("premultiplied") << QImage::Format_ARGB32_Premultiplied;
    QTest::newRow("without alpha") << QImage::Format_RGB32;
}

void tst_KelGPXTrackRenderer::cropNeverChangesTheCallersMap()
{
    QFETCH(QImage::Format, format);
    const QImage map = image(QSize(320, 200), format, qRgba(100, 100, 100, 150));
    const QImage before = map.copy();
    const QImage cropped = LinearRenderer(lineSelection(0)).crop(map);
    QVERIFY(cropped != before);
    QCOMPARE(map, before);
}

void tst_KelGPXTrackRenderer::cropOfAnotherSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("smaller") << QSize(100, 101);
    QTest::newRow("larger") << QSize(500, 300);
    QTest::newRow("narrower and higher") << QSize(100, 300);
}

void tst_KelGPXTrackRenderer::cropOfAnotherSize()
{
    QFETCH(QSize, size);
    const QImage map = image(size, QImage::Format_ARGB32, qRgba(255, 255, 255, 33));
    const QImage cropped = LinearRenderer(lineSelection(0)).crop(map);
    QCOMPARE(cropped.size(), size);
    QCOMPARE(qAlpha(cropped.pixel(80, 100)), 255);
    QCOMPARE(qAlpha(cropped.pixel(80, 50)), 0);
    // Beyond the renderer's size the map stays as it is.
    if (size.height() > 200)
        QCOMPARE(qAlpha(cropped.pixel(80, 250)), 33);
    if (size.width() > 320)
        QCOMPARE(qAlpha(cropped.pixel(400, 100)), 33);
}

void tst_KelGPXTrackRenderer::cropOfANullMap()
{
    QVERIFY(LinearRenderer(lineSelection(0)).crop(QImage()).isNull());
    QVERIFY(LinearRenderer(lineSelection(255)).crop(QImage()).isNull());
}

void tst_KelGPXTrackRenderer::cropOfAnEmptySelectionReturnsTheMap()
{
    KelGPXTrackSelection selection;
    selection.setCroppingOpacity(0);
    const QImage map = image(QSize(320, 200), QImage::Format_RGB888, qRgb(1, 2, 3));
    QCOMPARE(LinearRenderer(selection).crop(map), map);
}

void tst_KelGPXTrackRenderer::cropLimitsTheOpacity()
{
    const QImage map = image(QSize(320, 200), QImage::Format_RGB32, qRgb(255, 255, 255));
    QCOMPARE(LinearRenderer(lineSelection(1000)).crop(map), map);
    const QImage cropped = LinearRenderer(lineSelection(std::numeric_limits<int>::min())).crop(map);
    QCOMPARE(qAlpha(cropped.pixel(5, 5)), 0);
    QCOMPARE(qAlpha(cropped.pixel(160, 100)), 255);
}

// ---- images ---------------------------------------------------------------------------------------------------

void tst_KelGPXTrackRenderer::imagesHaveSizeAndFormat()
{
    const LinearRenderer renderer(KelGPXTrackSelection(), QSize(31, 17));
    for (const TrackRenderOption option : {KelGPXTrackRenderer::Normal, KelGPXTrackRenderer::Foreground}) {
        const QImage full = renderer.render(option);
        QCOMPARE(full.size(), QSize(31, 17));
        QCOMPARE(full.format(), QImage::Format_ARGB32);
        const QImage quick = renderer.renderQuickAndDirty(option);
        QCOMPARE(quick.size(), QSize(31, 17));
        QCOMPARE(quick.format(), QImage::Format_ARGB32_Premultiplied);
        for (int x = 0; x < 31; ++x) {
            QCOMPARE(full.pixel(x, 8), 0u);
            QCOMPARE(quick.pixel(x, 8), 0u);
        }
    }
    QCOMPARE(renderer.renderForeground().format(), QImage::Format_ARGB32_Premultiplied);
}

void tst_KelGPXTrackRenderer::emptySizeGivesANullImage()
{
    const LinearRenderer renderer(lineSelection(128), QSize(0, 100));
    QVERIFY(renderer.render(KelGPXTrackRenderer::Normal).isNull());
    QVERIFY(renderer.renderForeground().isNull());
    const QImage map = image(QSize(10, 10), QImage::Format_ARGB32_Premultiplied, qRgba(1, 1, 1, 200));
    QCOMPARE(renderer.crop(map).size(), QSize(10, 10));
}

void tst_KelGPXTrackRenderer::failingProjectionReachesTheCaller()
{
    KelGeoPositionList list;
    for (int i = 0; i < 1000; ++i)
        list.append(at(i, i));
    const FailingRenderer renderer;
    const KelGPXTrack track = trackOf({segment(list)});
    QPainterPath path;
    QVERIFY_EXCEPTION_THROWN((path = renderer.createPainterPath(track, 100, 1)), std::runtime_error);
}

QTEST_MAIN(tst_KelGPXTrackRenderer)
#include "tst_KelGPXTrackRenderer.moc"
