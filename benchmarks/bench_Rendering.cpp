// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// From points to pixels. Each row has its reference next to it: the same work done plainly.
// The CPU time is that of the whole process, worker threads included.

#include <KelGPXConfiguredTrack.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrack.h>
#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackPoint.h>
#include <KelGPXTrackRenderer.h>
#include <KelGPXTrackSegment.h>
#include <KelGPXTrackSelection.h>
#include <KelGeoPosition.h>
#include <KelIntRange.h>
#include <KelLatitude.h>
#include <KelLongitude.h>

#include <QApplication>
#include <QBrush>
#include <QDateTime>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

namespace
{

constexpr double PI = 3.141592653589793;
constexpr int MILLION = 1000000;
constexpr QSize SCREEN(1920, 1080);
constexpr QSize LARGE(4000, 3000);

// Pixels per degree of longitude: the whole walk on the screen, or a small part of it.
constexpr int FITTED = 300;
constexpr int ZOOMED_IN = 3000;
constexpr double ON_LARGE = 700;

constexpr int OPACITY = 60;

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

KelGPXTrack trackOf(const std::vector<Degrees> &points, bool closed = false)
{
    QList<KelGPXTrackPoint> list;
    list.reserve(static_cast<qsizetype>(points.size()) + 1);
    for (const Degrees &point : points) {
        list.append(KelGPXTrackPoint(KelGeoPosition(KelLatitude(point.latitude), KelLongitude(point.longitude)), 0,
                                     QDateTime(), QString()));
    }
    if (closed)
        list.append(list.first());
    return KelGPXTrack(QStringLiteral("track"), QString(), {KelGPXTrackSegment(list)},
                       KelGPXTrackShape(TrackShapeAuto));
}

KelGPXTrackConfiguration configuration(KelGPXTrackDisplayOptionsEnum options)
{
    return KelGPXTrackConfiguration(QColor(0, 0, 255, 200), KelDistance(10.0), QColor(255, 255, 0, 128),
                                    KelDistance(4.0), KelGPXTrackDisplayOptions(options),
                                    KelGPXMarkerShape(MarkerUnknown), KelGPXTrackShape(TrackShapeAuto),
                                    KelPenStyle(Qt::SolidLine), 100, 1);
}

// Mercator, with the middle of the walks in the middle of the image.
class Renderer : public KelGPXTrackRenderer
{
public:
    Renderer(const KelGPXTrackSelection &selection, const QSize &size, double pixelsPerDegree)
        : KelGPXTrackRenderer(selection, size, 1.0)
        , m_pixelsPerDegree(pixelsPerDegree)
        , m_origin(size.width() / 2.0 - 8.5 * pixelsPerDegree, size.height() / 2.0 + y(46.5))
    {
    }

    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        return project(position.latitude().decimalDegrees(), position.longitude().decimalDegrees());
    }

    QPointF project(double latitude, double longitude) const
    {
        return QPointF(m_origin.x() + longitude * m_pixelsPerDegree, m_origin.y() - y(latitude));
    }

private:
    double y(double latitude) const
    {
        return std::log(std::tan(PI / 4 + latitude * PI / 360)) * 180 / PI * m_pixelsPerDegree;
    }

    double m_pixelsPerDegree;
    QPointF m_origin;
};

const std::vector<Degrees> &millionPoints()
{
    static const std::vector<Degrees> points = walk(MILLION, 1);
    return points;
}

// An open track for lines, a closed one for areas.
const KelGPXConfiguredTrack &million(bool filled)
{
    static const KelGPXConfiguredTrack line(trackOf(millionPoints()), configuration(DisplayStroke));
    static const KelGPXConfiguredTrack area(trackOf(millionPoints(), true), configuration(DisplayFill));
    return filled ? area : line;
}

Renderer rendererOfMillion(double pixelsPerDegree, bool filled)
{
    return Renderer(KelGPXTrackSelection(KelGPXConfiguredTrackList({million(filled)})), SCREEN, pixelsPerDegree);
}

QImage transparent(const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void stroke_drawPath(benchmark::State &state)
{
    const Renderer renderer = rendererOfMillion(static_cast<double>(state.range(0)), false);
    const QPainterPath path = renderer.createPainterPath(million(false));
    const QPen pen = renderer.penFromTrack(configuration(DisplayStroke), KelGPXTrackRenderer::Normal);
    for (auto _ : state) {
        QImage image = transparent(SCREEN);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(pen);
        painter.drawPath(path);
    }
    state.counters["elements"] = path.elementCount();
}

void fill_fillPath(benchmark::State &state)
{
    const Renderer renderer = rendererOfMillion(static_cast<double>(state.range(0)), true);
    const QPainterPath path = renderer.createPainterPath(million(true));
    const QBrush brush = renderer.brushFromTrack(configuration(DisplayFill), KelGPXTrackRenderer::Normal);
    for (auto _ : state) {
        QImage image = transparent(SCREEN);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(path, brush);
    }
    state.counters["elements"] = path.elementCount();
}

// With the path and all.
void renderMillion(benchmark::State &state, bool filled)
{
    const Renderer renderer = rendererOfMillion(static_cast<double>(state.range(0)), filled);
    for (auto _ : state)
        benchmark::DoNotOptimize(renderer.render(KelGPXTrackRenderer::Normal));
}

void stroke_render(benchmark::State &state)
{
    renderMillion(state, false);
}

void fill_render(benchmark::State &state)
{
    renderMillion(state, true);
}

void path_createPainterPath(benchmark::State &state)
{
    const Renderer renderer = rendererOfMillion(FITTED, false);
    for (auto _ : state)
        benchmark::DoNotOptimize(renderer.createPainterPath(million(false)));
}

void path_plainLoop(benchmark::State &state)
{
    const Renderer renderer = rendererOfMillion(FITTED, false);
    for (auto _ : state) {
        QPainterPath path;
        QPointF last;
        for (const Degrees &point : millionPoints()) {
            const QPointF pixel = renderer.project(point.latitude, point.longitude);
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
}

QImage largeMap()
{
    QImage map(LARGE, QImage::Format_ARGB32);
    for (int y = 0; y < LARGE.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(map.scanLine(y));
        for (int x = 0; x < LARGE.width(); ++x)
            line[x] = qRgb(x & 255, y & 255, (x ^ y) & 255);
    }
    return map;
}

Renderer rendererOfLarge()
{
    KelGPXTrackSelection selection(KelGPXConfiguredTrackList(
        {KelGPXConfiguredTrack(trackOf(walk(20000, 3)), configuration(DisplayStroke))}));
    selection.setCroppingOpacity(OPACITY);
    return Renderer(selection, LARGE, ON_LARGE);
}

void crop_crop(benchmark::State &state)
{
    const Renderer renderer = rendererOfLarge();
    const QImage map = largeMap();
    for (auto _ : state)
        benchmark::DoNotOptimize(renderer.crop(map));
}

// Step by step: mask, alpha of each pixel, conversion.
void crop_plain(benchmark::State &state)
{
    const Renderer renderer = rendererOfLarge();
    const QImage map = largeMap();
    uchar table[256];
    for (int a = 0; a < 256; ++a)
        table[a] = static_cast<uchar>(a * (255 - OPACITY) / 255 + OPACITY);
    for (auto _ : state) {
        QImage mask = transparent(LARGE);
        {
            QPainter painter(&mask);
            painter.setRenderHint(QPainter::Antialiasing);
            renderer.renderWith(&painter, KelGPXTrackRenderer::Foreground);
        }
        mask = mask.convertToFormat(QImage::Format_ARGB32);
        QImage target = map.convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < LARGE.height(); ++y) {
            uchar *to = target.scanLine(y);
            const uchar *from = mask.constScanLine(y);
            for (int x = 0; x < LARGE.width(); ++x)
                to[4 * x + 3] = table[from[4 * x + 3]];
        }
        benchmark::DoNotOptimize(target.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    }
}

// What cannot be had for less: both images are read, and one of them is written.
void merge_pass(benchmark::State &state)
{
    QImage target = largeMap();
    const QImage mask = transparent(LARGE);
    for (auto _ : state) {
        auto *to = reinterpret_cast<QRgb *>(target.bits());
        const auto *from = reinterpret_cast<const QRgb *>(mask.constBits());
        for (qsizetype i = 0; i < qsizetype(LARGE.width()) * LARGE.height(); ++i)
            to[i] ^= from[i];
        benchmark::ClobberMemory();
    }
}

void merge_mergeCropping(benchmark::State &state)
{
    const Renderer renderer = rendererOfLarge();
    const QImage mask = renderer.render(KelGPXTrackRenderer::Foreground);
    QImage target = largeMap();
    uchar table[256];
    for (int a = 0; a < 256; ++a)
        table[a] = static_cast<uchar>(a * (255 - OPACITY) / 255 + OPACITY);
    for (auto _ : state)
        renderer.mergeCropping(&target, mask, KelIntRange::rowsOfImage(target), table);
}

void manyTracks_renderQuickAndDirty(benchmark::State &state)
{
    QList<KelGPXConfiguredTrack> tracks;
    for (unsigned i = 0; i < 1000; ++i)
        tracks.append(KelGPXConfiguredTrack(trackOf(walk(1000, 100 + i)), configuration(DisplayStroke)));
    const Renderer renderer(KelGPXTrackSelection{KelGPXConfiguredTrackList(tracks)}, SCREEN, FITTED);
    for (auto _ : state)
        benchmark::DoNotOptimize(renderer.renderQuickAndDirty(KelGPXTrackRenderer::Normal));
}

void timed(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
}

void views(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(FITTED)->Arg(ZOOMED_IN)->ArgName("pixels per degree");
    timed(benchmark);
}

BENCHMARK(stroke_drawPath)->Apply(views);
BENCHMARK(stroke_render)->Apply(views);
BENCHMARK(fill_fillPath)->Apply(views);
BENCHMARK(fill_render)->Apply(views);
BENCHMARK(path_plainLoop)->Apply(timed);
BENCHMARK(path_createPainterPath)->Apply(timed);
BENCHMARK(merge_pass)->Apply(timed);
BENCHMARK(merge_mergeCropping)->Apply(timed);
BENCHMARK(crop_plain)->Apply(timed);
BENCHMARK(crop_crop)->Apply(timed);
BENCHMARK(manyTracks_renderQuickAndDirty)->Apply(timed);

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
