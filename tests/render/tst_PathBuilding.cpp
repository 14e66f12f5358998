// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// The path of a track is built in one go, but as the renderer's building blocks would do it one after the other. Random
// tracks are built both ways and compared bit for bit. KEL_RANDOM_CASES sets another number of random cases,
// KEL_RANDOM_SEED another beginning.

#include "KelRenderTestSupport.h"

#include <KelGPXTrackSmoothing.h>
#include <KelIntRange.h>
#include <KelTestSupport.h>

#include <QtTest>

#include <atomic>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <thread>
#include <vector>

using namespace KelRenderTest;

namespace
{

constexpr int RANDOM_CASES = 20000;
constexpr int SMOOTHING_OFF = 100;

/// Beyond what painter paths take.
bool isOutOfReach(const QPointF &point)
{
    return !(std::abs(point.x()) < 1e100 && std::abs(point.y()) < 1e100);
}

/// Step by step, with all the lists in between.
QPainterPath plainPath(const KelGPXTrackRenderer &renderer, const KelGPXTrack &track, int strength, int steps)
{
    const QList<KelGeoPositionList> chunks = track.chunkedPoints();
    QList<int> indices;
    QList<KelIntRange> ranges;
    int total = 0;
    for (int i = 0; i < chunks.size(); ++i) {
        indices.append(i);
        ranges.append(KelIntRange(total, total + static_cast<int>(chunks.at(i).size()) - 1));
        total += static_cast<int>(chunks.at(i).size());
    }
    bool crossed = false;
    const std::unique_ptr<QPointF[]> offsets(
        renderer.createDateLineCrossingOffsets(chunks, indices, total, ranges, &crossed));
    std::vector<QPointF> projected(static_cast<size_t>(total));
    for (const int i : indices)
        renderer.projectPointsPP(i, chunks, ranges, projected.data());
    if (crossed)
        renderer.shiftProjected(KelIntRange(0, total - 1), projected.data(), offsets.get());
    if (strength != SMOOTHING_OFF)
        KelGPXTrackSmoothing(projected.data(), total, strength / 100.0, steps).run();

    std::erase_if(projected, isOutOfReach);
    if (projected.empty())
        return QPainterPath();
    QPainterPath path(projected.front());
    QPointF last = projected.front();
    bool hasLines = false;
    for (const QPointF &point : projected) {
        if (std::abs(point.x() - last.x()) + std::abs(point.y() - last.y()) > 4.0 * renderer.renderingFactor()) {
            path.lineTo(point);
            last = point;
            hasLines = true;
        }
    }
    if (!hasLines)
        return QPainterPath();
    path.lineTo(projected.back());
    return path;
}

bool sameBits(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool isSame(const QPainterPath &a, const QPainterPath &b)
{
    if (a.elementCount() != b.elementCount())
        return false;
    for (int i = 0; i < a.elementCount(); ++i) {
        const QPainterPath::Element one = a.elementAt(i);
        const QPainterPath::Element other = b.elementAt(i);
        if (one.type != other.type || !sameBits(one.x, other.x) || !sameBits(one.y, other.y))
            return false;
    }
    return true;
}

/// Tracks of all kinds: empty segments, single points, the date line, poles, places that are none.
class Random
{
public:
    explicit Random(int seed)
        : m_engine(static_cast<unsigned>(seed))
    {
    }

    int integer(int first, int last) { return std::uniform_int_distribution<int>(first, last)(m_engine); }
    double real(double first, double last) { return std::uniform_real_distribution<double>(first, last)(m_engine); }

    KelGPXTrack track(int longest)
    {
        m_step = std::pow(10.0, real(-2, 1.7));
        m_oddity = integer(0, 3) == 0 ? 10 : 1000000;
        QList<KelGPXTrackSegment> segments;
        const int count = integer(0, 9) == 0 ? integer(0, 12) : integer(1, 2);
        for (int i = 0; i < count; ++i)
            segments.append(segment(longest));
        return trackOf(segments);
    }

    KelGPXTrackSegment segment(int longest)
    {
        KelGeoPositionList list;
        double latitude = real(-80, 80);
        double longitude = integer(0, 1) == 0 ? real(-180, 180) : real(175, 185);
        const int count = integer(0, 9) == 0 ? integer(0, 2) : integer(0, longest);
        for (int i = 0; i < count; ++i) {
            list.append(integer(0, m_oddity) == 0 ? odd(latitude, longitude) : degrees(latitude, longitude));
            latitude = std::clamp(latitude + real(-m_step, m_step), -89.0, 89.0);
            longitude = std::remainder(longitude + real(-m_step, m_step), 360.0);
        }
        return KelRenderTest::segment(list);
    }

private:
    KelGeoPosition odd(double latitude, double longitude)
    {
        switch (integer(0, 8)) {
        case 0:
            return degrees(latitude, 180);
        case 1:
            return degrees(latitude, -180);
        case 2:
            return degrees(latitude, 0);
        case 3:
            return degrees(latitude, -0.0);
        case 4:
            return degrees(90, longitude);
        case 5:
            return degrees(latitude, std::numeric_limits<double>::infinity());
        case 6:
            return degrees(latitude, std::nan(""));
        case 7:
            return degrees(latitude, longitude + 360);
        default:
            return KelGeoPosition();
        }
    }

    std::mt19937 m_engine;
    double m_step = 1;
    int m_oddity = 1;
};

/// Mercator, which has no place for the poles.
class MercatorRenderer : public KelGPXTrackRenderer
{
public:
    MercatorRenderer(double factor, double pixelsPerDegree)
        : KelGPXTrackRenderer(KelGPXTrackSelection(), QSize(300, 200), factor)
        , m_pixelsPerDegree(pixelsPerDegree)
    {
    }

    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        ++calls;
        const double phi = position.latitude().radians();
        return QPointF(position.longitude().decimalDegrees() * m_pixelsPerDegree,
                       -std::log(std::tan(0.7853981633974483 + phi / 2)) * 57.29577951308232 * m_pixelsPerDegree);
    }

    mutable std::atomic<int> calls{0};

private:
    double m_pixelsPerDegree;
};

/// A host's own kind of track, whose points are not those of its segments.
class BackwardTrack : public KelGPXTrack
{
public:
    using KelGPXTrack::KelGPXTrack;
    explicit BackwardTrack(const KelGPXTrack &track)
        : KelGPXTrack(track)
    {
    }

    QList<KelGeoPositionList> chunkedPoints() const override
    {
        QList<KelGeoPositionList> result;
        for (const KelGeoPositionList &chunk : KelGPXTrack::chunkedPoints())
            result.prepend(KelGeoPositionList(QList<KelGeoPosition>(chunk.rbegin(), chunk.rend())));
        return result;
    }
};

} // namespace

class tst_PathBuilding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomTracks();
    void longTracks_data();
    void longTracks();
    void inAnotherThread();
    void everyPointIsProjectedOnce();
    void tracksOfTheHost();

private:
    void compare(const KelGPXTrack &track, Random *random, int seed);

    int m_lines = 0;
};

void tst_PathBuilding::compare(const KelGPXTrack &track, Random *random, int seed)
{
    const double factor = random->integer(0, 2) == 0 ? random->real(0.25, 3) : 1.0;
    const MercatorRenderer renderer(factor, std::pow(10.0, random->real(-1, 2)));
    const int strength = random->integer(0, 2) == 0 ? random->integer(0, 120) : SMOOTHING_OFF;
    const int steps = random->integer(1, 12);
    const QPainterPath path = renderer.createPainterPath(track, strength, steps);
    const QPainterPath expected = plainPath(renderer, track, strength, steps);
    const QString counts = QStringLiteral("%1 elements instead of %2").arg(path.elementCount()).arg(expected.elementCount());
    QVERIFY2(isSame(path, expected), qPrintable(QStringLiteral("seed %1: ").arg(seed) + counts));
    m_lines += path.isEmpty() ? 0 : 1;
}

void tst_PathBuilding::randomTracks()
{
    const int first = int(KelTestSupport::randomSeed(1));
    const int cases = KelTestSupport::randomCases(RANDOM_CASES);
    m_lines = 0;
    for (int seed = first; seed < first + cases; ++seed) {
        Random random(seed);
        compare(random.track(seed % 50 == 0 ? 300 : 20), &random, seed);
        if (QTest::currentTestFailed())
            return;
    }
    // Otherwise there is nothing that was compared.
    QVERIFY(m_lines > cases / 2);
}

void tst_PathBuilding::longTracks_data()
{
    QTest::addColumn<int>("longest");
    for (const int longest : {4095, 4096, 8191, 8192, 8193, 20000, 100000})
        QTest::addRow("up to %d points in a segment", longest) << longest;
}

void tst_PathBuilding::longTracks()
{
    QFETCH(int, longest);
    for (int seed = longest; seed < longest + 6; ++seed) {
        Random random(seed);
        compare(random.track(longest), &random, seed);
        if (QTest::currentTestFailed())
            return;
    }
    // Of exactly that length, across the date line again and again.
    KelGeoPositionList list;
    for (int i = 0; i < longest; ++i)
        list.append(degrees(std::sin(i * 0.001) * 60, std::remainder(179 + 3 * std::sin(i * 0.1), 360)));
    Random random(longest);
    compare(trackOf({segment(list), segment(KelGeoPositionList(list.mid(1)))}), &random, 0);
}

void tst_PathBuilding::inAnotherThread()
{
    Random random(7);
    KelGPXTrack track;
    while (track.countPoints() < 20000)
        track = random.track(50000);
    const MercatorRenderer renderer(1, 10);
    const QPainterPath expected = renderer.createPainterPath(track, SMOOTHING_OFF, 1);
    QPainterPath path;
    std::thread([&] { path = renderer.createPainterPath(track, SMOOTHING_OFF, 1); }).join();
    QVERIFY(!expected.isEmpty());
    QVERIFY(isSame(path, expected));
}

void tst_PathBuilding::everyPointIsProjectedOnce()
{
    KelGeoPositionList list;
    for (int i = 0; i < 30000; ++i)
        list.append(degrees(i * 0.001, i * 0.002));
    const MercatorRenderer renderer(1, 10);
    QVERIFY(!renderer.createPainterPath(trackOf({segment(list), segment(list)}), SMOOTHING_OFF, 1).isEmpty());
    QCOMPARE(renderer.calls.load(), 60000);
}

void tst_PathBuilding::tracksOfTheHost()
{
    const BackwardTrack track(
        trackOf({segment({at(0, 0), at(50, 50)}), segment({}), segment({at(100, 0), at(150, 0), at(150, 70)})}));
    const QPainterPath path = LinearRenderer().createPainterPath(track, SMOOTHING_OFF, 1);
    QVERIFY(isSame(path, plainPath(LinearRenderer(), track, SMOOTHING_OFF, 1)));
    QCOMPARE(path.elementAt(0).y, 70.0);

    Random random(3);
    for (int seed = 0; seed < 200; ++seed) {
        compare(BackwardTrack(random.track(50)), &random, seed);
        if (QTest::currentTestFailed())
            return;
    }
}

QTEST_MAIN(tst_PathBuilding)
#include "tst_PathBuilding.moc"
