// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Random selections, views and options, rendered by the library and in the plain form: not one pixel may differ.

#include "KelFuzz.h"
#include "KelFuzzReader.h"

#include <KelGPXTrackPoint.h>
#include <KelGeoPositionRect.h>
#include <KelMapProjection.h>
#include <KelPenStyle.h>
#include <KelPlainRenderer.h>

#include <QColor>
#include <QSize>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace
{

constexpr int LARGEST_SIDE = 96;
constexpr int MOST_TRACKS = 3;
constexpr int FEW_POINTS = 12;
constexpr int MANY_POINTS = 200; // from about here on, lines are painted in tiles

/// Maps either by Mercator or in a straight line, the latter with any origin and scale.
class Renderer : public KelGPXTrackRenderer
{
public:
    Renderer(const KelGPXTrackSelection &selection, const QSize &size, double factor, const KelMapProjection *mercator,
             const QPointF &origin, double pixelsPerDegree)
        : KelGPXTrackRenderer(selection, size, factor)
        , m_mercator(mercator)
        , m_origin(origin)
        , m_pixelsPerDegree(pixelsPerDegree)
    {
    }

    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        if (m_mercator != nullptr)
            return m_mercator->projectate(position);
        return m_origin
            + QPointF(position.longitude().decimalDegrees(), -position.latitude().decimalDegrees()) * m_pixelsPerDegree;
    }

private:
    const KelMapProjection *m_mercator;
    QPointF m_origin;
    double m_pixelsPerDegree;
};

/// A walk with steps of a size of its own, a jump now and then, and perhaps back to where it began.
KelGPXTrackSegment makeSegment(KelFuzzReader &reader)
{
    const bool isOdd = reader.below(16) == 0; // any bits at all
    const double step = std::exp2(reader.below(16) - 10);
    double latitude = reader.within(90);
    double longitude = reader.within(180);
    const bool isLong = reader.below(4) == 0;
    const int count = isLong ? MANY_POINTS + reader.byte() : reader.below(FEW_POINTS);
    QList<KelGPXTrackPoint> points;
    for (int i = 0; i < count; ++i) {
        points.append(KelGPXTrackPoint(KelGeoPosition(latitude, longitude), 0, QDateTime(), QString()));
        const int move = reader.byte();
        if (isOdd && move > 0xf0) {
            latitude = reader.anyDouble();
            longitude = reader.anyDouble();
        } else if (move == 0xff) {
            longitude = -longitude;
        } else if (reader.atEnd()) { // a curve of its own, so that short inputs can make long lines
            latitude += step * std::sin(i * 0.7);
            longitude += step * std::cos(i * 0.3);
        } else {
            latitude += step * ((move & 15) - 7.5);
            longitude += step * ((move >> 4) - 7.5);
        }
    }
    if (!points.isEmpty() && reader.flag())
        points.append(points.first());
    return KelGPXTrackSegment(points);
}

KelGPXTrack makeTrack(KelFuzzReader &reader)
{
    QList<KelGPXTrackSegment> segments;
    const int count = 1 + reader.below(4) / 3;
    for (int i = 0; i < count; ++i)
        segments.append(makeSegment(reader));
    return KelGPXTrack(QString(), QString(), segments, KelGPXTrackShape(TrackShapeAuto));
}

KelGPXTrackConfiguration makeConfiguration(KelFuzzReader &reader)
{
    static constexpr int markers[] = {0, 1, 2, 8, 16, 32, 64, 128, 256, 512, 1024, 1025};
    static constexpr int shapes[] = {TrackShapeAuto, TrackShapeLineString, TrackShapePolygon, TrackShapePoint,
                                     TrackShapeHop, TrackShapeUnknown, 12, 511};
    const auto color = [&reader] { return QColor::fromRgba(QRgb(reader.int32())); };
    const auto width = [&reader] {
        const int kind = reader.below(8);
        return kind == 0 ? reader.within(100) : kind == 1 ? 0.0
                                                          : reader.byte() / 8.0;
    };
    const QColor line = color();
    const QColor fill = color();
    const double lineWidth = width();
    const double halo = width();
    const int options = reader.below(8);
    const int marker = markers[reader.below(12)];
    const int shape = shapes[reader.below(8)];
    const int style = reader.below(3) == 0 ? reader.below(7) : 1;
    const int strength = reader.below(3) == 0 ? reader.int16() : 100;
    return KelGPXTrackConfiguration(line, lineWidth, fill, halo, KelGPXTrackDisplayOptions(options),
                                    KelGPXMarkerShape(marker), KelGPXTrackShape(shape),
                                    KelPenStyle(static_cast<Qt::PenStyle>(style)), strength, reader.int16());
}

KelGPXTrackSelection makeSelection(KelFuzzReader &reader)
{
    KelGPXTrackSelection selection;
    const int count = 1 + reader.below(MOST_TRACKS);
    for (int i = 0; i < count; ++i) {
        const KelGPXTrackConfiguration configuration = makeConfiguration(reader);
        KelGPXTrack track = makeTrack(reader);
        for (int enclaves = reader.below(8) - 5; enclaves > 0; --enclaves)
            track.addEnclave(makeTrack(reader));
        selection.addTrack(KelGPXConfiguredTrack(track, configuration));
    }
    selection.setCroppingOpacity(reader.byte());
    return selection;
}

/// Some map, partly transparent.
QImage makeMap(const QSize &size)
{
    QImage map(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < map.height(); ++y) {
        for (int x = 0; x < map.width(); ++x)
            map.setPixelColor(x, y, QColor(x & 255, y & 255, (x * y) & 255, 255 - ((x + y) & 63)));
    }
    return map;
}

/// QPainterPath's own comparison is a rough one.
void comparePaths(const QPainterPath &actual, const QPainterPath &expected)
{
    KelFuzz::compare(actual.elementCount(), expected.elementCount(), "paths have as many elements as by the plain rules");
    for (int i = 0; i < actual.elementCount(); ++i) {
        KelFuzz::compare(actual.elementAt(i).x, expected.elementAt(i).x, "paths are as by the plain rules (x)");
        KelFuzz::compare(actual.elementAt(i).y, expected.elementAt(i).y, "paths are as by the plain rules (y)");
    }
}

void compareImages(const QImage &actual, const QImage &expected, const char *rule)
{
    KelFuzz::check(actual.size() == expected.size() && actual.format() == expected.format(), rule);
    for (int y = 0; y < actual.height(); ++y) {
        const auto *const a = reinterpret_cast<const QRgb *>(actual.constScanLine(y));
        const auto *const b = reinterpret_cast<const QRgb *>(expected.constScanLine(y));
        if (std::memcmp(a, b, std::size_t(actual.width()) * sizeof(QRgb)) == 0)
            continue;
        for (int x = 0; x < actual.width(); ++x) {
            if (a[x] != b[x])
                KelFuzz::fail(rule, QStringLiteral("(%1, %2): %3").arg(x).arg(y).arg(a[x], 8, 16),
                              QStringLiteral("%1").arg(b[x], 8, 16));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    KelFuzzReader reader(data, size);
    const QSize imageSize(reader.below(LARGEST_SIDE), reader.below(LARGEST_SIDE));
    const double factor = (1 + reader.below(12)) / 4.0;
    const bool byMercator = reader.flag();
    const int scale = reader.below(40); // the world is 90 pixels wide at least, in the last step thousands of millions
    const double pixelsPerDegree = scale == 39 ? 1e7 : std::exp2(scale / 2.0 - 2);
    const QPointF origin(reader.within(2000), reader.within(2000));
    const KelGeoPosition southWest(reader.within(85), reader.within(180));
    const double height = std::abs(reader.within(60)) + 1e-3;
    const KelMapProjection mercator(
        KelGeoPositionRect(southWest,
                           KelGeoPosition(std::min(southWest.latitude().decimalDegrees() + height, 86.0),
                                          southWest.longitude().decimalDegrees() + height)),
        imageSize);
    const auto option = reader.flag() ? KelGPXTrackRenderer::Foreground : KelGPXTrackRenderer::Normal;
    const int what = reader.below(8);
    const KelGPXTrackSelection selection = makeSelection(reader);

    const Renderer renderer(selection, imageSize, factor, byMercator && !imageSize.isEmpty() ? &mercator : nullptr, origin,
                            pixelsPerDegree);
    const KelPlainRenderer plain(renderer, selection);
    const KelGPXConfiguredTrackList tracks = selection.tracks();
    for (const KelGPXConfiguredTrack &track : tracks.tracks())
        comparePaths(renderer.createPainterPath(track), plain.path(track));
    if (what < 4)
        compareImages(renderer.render(option), plain.render(option), "render() is as by the plain rules");
    else if (what < 7)
        compareImages(renderer.renderQuickAndDirty(option), plain.renderQuickAndDirty(option),
                      "renderQuickAndDirty() is as by the plain rules");
    else
        compareImages(renderer.crop(makeMap(imageSize)), plain.crop(makeMap(imageSize)), "crop() is as by the plain rules");
    return 0;
}
