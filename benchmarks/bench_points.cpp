// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Points: their memory, the way from points to a painter path, distances, and a repaint of many tracks. Each row has
// its reference next to it: the same work done plainly.
//
//     bench_points              times of each, then the ratios
//     bench_points --ratios     the ratios only
//
// CPU time is that of the whole process, worker threads included.

#include <KelGPXConfiguredTrack.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrack.h>
#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackPoint.h>
#include <KelGPXTrackRenderer.h>
#include <KelGPXTrackSegment.h>
#include <KelGPXTrackSelection.h>
#include <KelGeoPosition.h>
#include <KelLatitude.h>
#include <KelLongitude.h>

#include <QApplication>
#include <QDateTime>
#include <QImage>
#include <QPainterPath>
#include <QSharedData>
#include <QSharedDataPointer>

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <random>
#include <string_view>
#include <thread>
#include <vector>

// The classes of points and positions with plain memory. What the library has in sources of its own is not inlined here, either.
namespace Plain
{

class PositionData : public QSharedData
{
public:
    [[gnu::noinline]] PositionData(const KelLatitude &theLatitude, const KelLongitude &theLongitude) noexcept
        : longitude(theLongitude)
        , latitude(theLatitude)
    {
    }
    PositionData(const PositionData &) = default;
    [[gnu::noinline]] virtual ~PositionData() = default;

    KelLongitude longitude;
    KelLatitude latitude;
};

class Position
{
public:
    [[gnu::noinline]] Position(double latitude, double longitude)
        : d(new PositionData(latitude, longitude))
    {
    }
    [[gnu::noinline]] Position(const Position &other) = default;
    [[gnu::noinline]] Position(Position &&other) noexcept = default;
    Position &operator=(const Position &other) = default;
    Position &operator=(Position &&other) noexcept = default;
    [[gnu::noinline]] virtual ~Position() = default;

private:
    QSharedDataPointer<PositionData> d;
};

class Element
{
public:
    virtual ~Element() = default;
    virtual int elevation() const = 0;
};

class PointData : public Element, public QSharedData
{
public:
    [[gnu::noinline]] PointData(Position thePosition, int theElevation, QDateTime theTime, QString theDescription)
        : m_elevation(theElevation)
        , m_position(std::move(thePosition))
        , m_time(std::move(theTime))
        , m_description(std::move(theDescription))
    {
    }
    PointData(const PointData &) = default;
    [[gnu::noinline]] ~PointData() override = default;

    int elevation() const override { return m_elevation; }

private:
    int m_elevation;
    Position m_position;
    QDateTime m_time;
    QString m_description;
};

class Point : public Element
{
public:
    [[gnu::noinline]] Point(const Position &position, int elevation, const QDateTime &time, const QString &description)
        : d(new PointData(position, elevation, time, description))
    {
    }
    [[gnu::noinline]] Point(const Point &other) = default;
    [[gnu::noinline]] Point(Point &&other) noexcept = default;
    Point &operator=(const Point &other) = default;
    Point &operator=(Point &&other) noexcept = default;
    [[gnu::noinline]] ~Point() override = default;

    int elevation() const override { return d->elevation(); }

private:
    QSharedDataPointer<PointData> d;
};

static_assert(sizeof(Position) == sizeof(KelGeoPosition) && sizeof(Point) == sizeof(KelGPXTrackPoint));

} // namespace Plain

Q_DECLARE_TYPEINFO(Plain::Point, Q_RELOCATABLE_TYPE);

namespace
{

constexpr double PI = 3.141592653589793;
constexpr int MILLION = 1000000;
constexpr QSize SCREEN(1920, 1080);
constexpr double PIXELS_PER_DEGREE = 300;
constexpr int TRACKS = 1000;
constexpr int POINTS_OF_TRACK = 1000;
constexpr int REPETITIONS = 7;

struct Degrees
{
    double latitude;
    double longitude;
};

// A walk around the Alps from one place to the next, a point every hundred metres or so.
std::vector<Degrees> walk(int count, unsigned seed)
{
    std::mt19937 engine(seed);
    std::normal_distribution<double> bend(0.0, 0.3);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const auto place = [&] { return Degrees{45.3 + 2.4 * unit(engine), 5.5 + 6 * unit(engine)}; };
    std::vector<Degrees> result;
    Degrees position = place();
    Degrees target = place();
    for (int i = 0; i < count; ++i) {
        if (std::hypot(target.latitude - position.latitude, target.longitude - position.longitude) < 0.05)
            target = place();
        const double direction =
            std::atan2(target.latitude - position.latitude, target.longitude - position.longitude) + 3 * bend(engine);
        position.latitude += 0.0007 * std::sin(direction);
        position.longitude += 0.001 * std::cos(direction);
        result.push_back(position);
    }
    return result;
}

const std::vector<Degrees> &millionDegrees()
{
    static const std::vector<Degrees> degrees = walk(MILLION, 1);
    return degrees;
}

// ---- the memory of points -------------------------------------------------------------------------------------

const QDateTime &startTime()
{
    static const QDateTime time = QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC);
    return time;
}

template<typename Point, typename Position>
QList<Point> build(const std::vector<Degrees> &degrees)
{
    QList<Point> points;
    points.reserve(static_cast<qsizetype>(degrees.size()));
    for (const Degrees &place : degrees)
        points.append(Point(Position(place.latitude, place.longitude), 12, startTime(), QString()));
    return points;
}

void buildPoints()
{
    benchmark::DoNotOptimize(build<KelGPXTrackPoint, KelGeoPosition>(millionDegrees()));
}

void buildPlainPoints()
{
    benchmark::DoNotOptimize(build<Plain::Point, Plain::Position>(millionDegrees()));
}

// ---- from points to a path ------------------------------------------------------------------------------------

KelGPXTrack trackOf(const std::vector<Degrees> &degrees)
{
    return KelGPXTrack(QStringLiteral("track"), QString(),
                       {KelGPXTrackSegment(build<KelGPXTrackPoint, KelGeoPosition>(degrees))},
                       KelGPXTrackShape(TrackShapeAuto));
}

KelGPXTrackConfiguration blueLine()
{
    return KelGPXTrackConfiguration(QColor(0, 0, 255, 200), KelDistance(10.0), QColor(255, 255, 0, 128), KelDistance(4.0),
                                    KelGPXTrackDisplayOptions(DisplayStroke), KelGPXMarkerShape(MarkerUnknown),
                                    KelGPXTrackShape(TrackShapeAuto), KelPenStyle(Qt::SolidLine), 100, 1);
}

// Mercator, with the middle of the walks in the middle of the image.
class Renderer : public KelGPXTrackRenderer
{
public:
    explicit Renderer(const KelGPXTrackSelection &selection = KelGPXTrackSelection())
        : KelGPXTrackRenderer(selection, SCREEN, 1.0)
        , m_origin(SCREEN.width() / 2.0 - 8.5 * PIXELS_PER_DEGREE, SCREEN.height() / 2.0 + y(46.5))
    {
    }

    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        return project(position.latitude().decimalDegrees(), position.longitude().decimalDegrees());
    }

    QPointF project(double latitude, double longitude) const
    {
        return QPointF(m_origin.x() + longitude * PIXELS_PER_DEGREE, m_origin.y() - y(latitude));
    }

private:
    static double y(double latitude)
    {
        return std::log(std::tan(PI / 4 + latitude * PI / 360)) * 180 / PI * PIXELS_PER_DEGREE;
    }

    QPointF m_origin;
};

const KelGPXTrack &millionTrack()
{
    static const KelGPXTrack track = trackOf(millionDegrees());
    return track;
}

void buildPath()
{
    benchmark::DoNotOptimize(Renderer().createPainterPath(millionTrack(), 100, 1));
}

void buildPathInOneThread()
{
    std::thread(&buildPath).join();
}

void buildPathPlainly()
{
    const Renderer renderer;
    QPainterPath path;
    QPointF last;
    for (const Degrees &place : millionDegrees()) {
        const QPointF pixel = renderer.project(place.latitude, place.longitude);
        if (path.elementCount() == 0) {
            path.moveTo(pixel);
            last = pixel;
        } else if ((pixel - last).manhattanLength() > 4) {
            path.lineTo(pixel);
            last = pixel;
        }
    }
    benchmark::DoNotOptimize(path);
}

void chunkPoints()
{
    benchmark::DoNotOptimize(millionTrack().chunkedPoints());
}

// ---- distances ------------------------------------------------------------------------------------------------

const std::vector<KelGeoPosition> &millionPositions()
{
    static const std::vector<KelGeoPosition> positions = [] {
        std::vector<KelGeoPosition> result;
        result.reserve(MILLION);
        for (const Degrees &place : millionDegrees())
            result.emplace_back(place.latitude, place.longitude);
        return result;
    }();
    return positions;
}

void measureDistances()
{
    const std::vector<KelGeoPosition> &positions = millionPositions();
    double sum = 0;
    for (std::size_t i = 1; i < positions.size(); ++i)
        sum += positions[i - 1].distance(positions[i]);
    benchmark::DoNotOptimize(sum);
}

double haversine(const Degrees &a, const Degrees &b)
{
    constexpr double radians = 0.017453292519943295;
    const double sinePhi = std::sin(std::abs(a.latitude - b.latitude) * radians * 0.5);
    const double sineLambda = std::sin(std::abs(a.longitude - b.longitude) * radians * 0.5);
    const double chord = sinePhi * sinePhi
        + sineLambda * sineLambda * std::cos(a.latitude * radians) * std::cos(b.latitude * radians);
    return 2.0 * std::atan2(std::sqrt(chord), std::sqrt(1.0 - chord)) * 6370.0;
}

void measureDistancesPlainly()
{
    const std::vector<Degrees> &degrees = millionDegrees();
    double sum = 0;
    for (std::size_t i = 1; i < degrees.size(); ++i)
        sum += haversine(degrees[i - 1], degrees[i]);
    benchmark::DoNotOptimize(sum);
}

// ---- many tracks ----------------------------------------------------------------------------------------------

const Renderer &rendererOfManyTracks()
{
    static const Renderer renderer = [] {
        QList<KelGPXConfiguredTrack> tracks;
        for (unsigned i = 0; i < TRACKS; ++i)
            tracks.append(KelGPXConfiguredTrack(trackOf(walk(POINTS_OF_TRACK, 100 + i)), blueLine()));
        return Renderer(KelGPXTrackSelection{KelGPXConfiguredTrackList(tracks)});
    }();
    return renderer;
}

void repaintManyTracks()
{
    benchmark::DoNotOptimize(rendererOfManyTracks().renderQuickAndDirty(KelGPXTrackRenderer::Normal));
}

// The part of it that is not painting.
void buildPathsOfManyTracks()
{
    static const QList<KelGPXTrack> tracks = [] {
        QList<KelGPXTrack> result;
        for (unsigned i = 0; i < TRACKS; ++i)
            result.append(trackOf(walk(POINTS_OF_TRACK, 100 + i)));
        return result;
    }();
    const Renderer &renderer = rendererOfManyTracks();
    for (const KelGPXTrack &track : tracks)
        benchmark::DoNotOptimize(renderer.createPainterPath(track, 100, 1));
}

// ---- the table ------------------------------------------------------------------------------------------------

struct Cost
{
    double cpu = 1e9; // milliseconds of user and system time
    double wall = 1e9;
};

double cpuMilliseconds()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const auto milliseconds = [](const timeval &time) { return double(time.tv_sec) * 1e3 + double(time.tv_usec) * 1e-3; };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

// What the renderer does for itself: plain code and the mathematical functions must not pay for registers that vector
// code elsewhere in the process left in use, neither here nor in the references.
void clearUpperHalves()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx"))
        asm volatile("vzeroupper" ::
                         : "memory");
#endif
}

void measureOnce(const std::function<void()> &work, Cost *best)
{
    clearUpperHalves();
    const double cpu = cpuMilliseconds();
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
    best->cpu = std::min(best->cpu, cpuMilliseconds() - cpu);
    best->wall = std::min(best->wall, wall.count());
}

struct Pair
{
    Cost work;
    Cost reference;
};

// The best of several runs of both in turn, after one that counts for nothing.
Pair measure(const std::function<void()> &work, const std::function<void()> &reference)
{
    work();
    reference();
    Pair result;
    for (int i = 0; i < REPETITIONS; ++i) {
        measureOnce(work, &result.work);
        measureOnce(reference, &result.reference);
    }
    return result;
}

double residentBytes()
{
    long pages = 0;
    if (std::FILE *const file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%*d %ld", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return double(pages) * double(sysconf(_SC_PAGESIZE));
}

// Memory that a new process has more while it keeps a million points.
template<typename Point, typename Position>
double bytesPerPoint()
{
    int ends[2];
    if (pipe(ends) != 0)
        qFatal("no pipe");
    const pid_t child = fork();
    if (child == 0) {
        const double before = residentBytes();
        const QList<Point> points = build<Point, Position>(millionDegrees());
        const double perPoint = (residentBytes() - before) / double(points.size());
        const bool isWritten = write(ends[1], &perPoint, sizeof perPoint) == sizeof perPoint;
        _exit(isWritten ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    double perPoint = 0;
    const bool isRead = read(ends[0], &perPoint, sizeof perPoint) == sizeof perPoint;
    int status = 0;
    if (!isRead || waitpid(child, &status, 0) != child || status != 0)
        qFatal("a measured process failed");
    close(ends[0]);
    close(ends[1]);
    return perPoint;
}

void printRow(const char *name, double value, double reference, const char *unit, double ratio, double goal)
{
    std::printf("%-52s %9.1f %9.1f %-6s %7.2f %7.2f %s\n", name, value, reference, unit, ratio, goal,
                ratio <= goal ? "reached" : "MISSED");
}

void printRatios()
{
    std::printf("%-52s %9s %9s %-6s %7s %7s\n", "", "library", "plain", "", "ratio", "goal");

    const double bytes = bytesPerPoint<KelGPXTrackPoint, KelGeoPosition>();
    printRow("bytes per point kept (goal: bytes)", bytes, bytesPerPoint<Plain::Point, Plain::Position>(), "B", bytes, 140);

    const Pair points = measure(&buildPoints, &buildPlainPoints);
    printRow("1M points built and destroyed: plain malloc", points.work.cpu, points.reference.cpu, "ms CPU",
             points.work.cpu / points.reference.cpu, 0.5);

    const Pair path = measure(&buildPath, &buildPathPlainly);
    printRow("path of 1M points: plain loop over log(tan)", path.work.cpu, path.reference.cpu, "ms CPU",
             path.work.cpu / path.reference.cpu, 1.5);
    const Pair threads = measure(&buildPath, &buildPathInOneThread);
    printRow("path of 1M points, all threads: one thread", threads.work.wall, threads.reference.wall, "ms",
             threads.work.wall / threads.reference.wall, 0.75);

    const Pair distances = measure(&measureDistances, &measureDistancesPlainly);
    printRow("1M distances: the formula on plain doubles", distances.work.cpu, distances.reference.cpu, "ms CPU",
             distances.work.cpu / distances.reference.cpu, 1.5);

    const Pair many = measure(&repaintManyTracks, &buildPathsOfManyTracks);
    printRow("1,000 tracks of 1,000 points, quick: paths only", many.work.cpu, many.reference.cpu, "ms CPU", many.work.cpu,
             100);
}

void run(benchmark::State &state, void (*work)())
{
    work();
    for (auto _ : state)
        work();
}

void timed(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
}

BENCHMARK_CAPTURE(run, points, &buildPoints)->Apply(timed);
BENCHMARK_CAPTURE(run, points_plain, &buildPlainPoints)->Apply(timed);
BENCHMARK_CAPTURE(run, chunkedPoints, &chunkPoints)->Apply(timed);
BENCHMARK_CAPTURE(run, path, &buildPath)->Apply(timed);
BENCHMARK_CAPTURE(run, path_oneThread, &buildPathInOneThread)->Apply(timed);
BENCHMARK_CAPTURE(run, path_plain, &buildPathPlainly)->Apply(timed);
BENCHMARK_CAPTURE(run, distance, &measureDistances)->Apply(timed);
BENCHMARK_CAPTURE(run, distance_plain, &measureDistancesPlainly)->Apply(timed);
BENCHMARK_CAPTURE(run, manyTracks, &repaintManyTracks)->Apply(timed);
BENCHMARK_CAPTURE(run, manyTracks_pathsOnly, &buildPathsOfManyTracks)->Apply(timed);

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    bool ratiosOnly = false;
    for (int i = 1; i < argc; ++i)
        ratiosOnly = ratiosOnly || std::string_view(argv[i]) == "--ratios";
    if (!ratiosOnly) {
        benchmark::Initialize(&argc, argv);
        benchmark::RunSpecifiedBenchmarks();
    }
    millionDegrees();
    printRatios();
    return 0;
}
