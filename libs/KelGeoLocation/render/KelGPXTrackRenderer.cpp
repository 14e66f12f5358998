// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackRenderer.h"

#include "KelPathCutter.h"
#include "KelPathPainter.h"
#include "KelPixel.h"

#include <KelConcurrent.h>
#include <KelDistance.h>
#include <KelGPXConfiguredTrack.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXMarkerShape.h>
#include <KelGPXTrack.h>
#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackDisplayOptions.h>
#include <KelGPXTrackSegment.h>
#include <KelGPXTrackShape.h>
#include <KelGPXTrackSmoothing.h>
#include <KelGeoPosition.h>
#include <KelGeoPositionList.h>
#include <KelIntRange.h>
#include <KelLatitude.h>
#include <KelLongitude.h>
#include <KelPenStyle.h>

#include <QBrush>
#include <QColor>
#include <QColorSpace>
#include <QImage>
#include <QLineF>
#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QRectF>
#include <QRgb>
#include <QString>
#include <QStringList>
#include <QTransform>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <numeric>
#include <optional>
#include <typeinfo>
#include <utility>
#include <vector>

namespace
{

constexpr double PI = 3.141592653589793;

constexpr int NO_SMOOTHING = 100;
constexpr double PERCENT = 100.0;
constexpr double THINNING_DISTANCE = 4.0;

// Points that a thread of its own is worth starting for.
constexpr int SMALLEST_PIECE = 4096;

constexpr double ARROW_SAMPLES[] = {0.95, 0.96, 0.97, 0.98, 0.99};
constexpr double ARROW_OPENING = 30.0;
constexpr double ARROW_PART_OF_DISTANCE = 0.5;
constexpr double SHORTEST_BARB = 10.0;
constexpr double LONGEST_BARB = 100.0;

// Painter paths refuse what is not a number and coordinates from 1e128 on.
constexpr double FARTHEST_COORDINATE = 1e100;

// More than rounding to pixels, antialiasing and cosmetic pens add to what is painted.
constexpr double PIXELS_AROUND = 2.0;

// Out of reach of any device; it only keeps the ends of the range within an int.
constexpr int MOST_WORLD_WIDTHS = std::numeric_limits<int>::max() - 2;

constexpr int OPAQUE = 255;
constexpr int BYTES_PER_PIXEL = 4;
constexpr int ALPHA_BYTE = 3;
constexpr bool IS_LAST_BYTE_ALPHA = Q_BYTE_ORDER == Q_LITTLE_ENDIAN; // where pixels are numbers
using CropTable = std::array<uchar, 256>;

bool isStroked(const KelGPXTrackConfiguration &configuration)
{
    return configuration.hasDrawOption(KelGPXTrackDisplayOptions(DisplayStroke));
}

bool isFilled(const KelGPXTrackConfiguration &configuration)
{
    return configuration.hasDrawOption(KelGPXTrackDisplayOptions(DisplayFill));
}

bool hasArrow(const KelGPXTrackConfiguration &configuration)
{
    return (configuration.markerShape() & KelGPXMarkerShape(MarkerArrow)) != 0;
}

// Before scaling; the path is not empty.
double barbLength(const QPainterPath &path)
{
    const double distance = QLineF(path.elementAt(0), path.elementAt(path.elementCount() - 1)).length();
    return std::clamp(ARROW_PART_OF_DISTANCE * distance, SHORTEST_BARB, LONGEST_BARB);
}

// Widths come from files. Qt never finishes the dashes of an endless pen.
double usableWidth(double width)
{
    return std::isnan(width) ? 0.0 : std::clamp(width, -FARTHEST_COORDINATE, FARTHEST_COORDINATE);
}

// ---- one path build -------------------------------------------------------------------------------------------

// The step to a point leads across the date line: +1 eastward, -1 westward.
struct Crossing
{
    int index;
    int step;
};

// Consecutive points of a track, which one task works on: a part of a segment, or one of the chunks of a host's own kind of track.
struct Piece
{
    const KelGPXTrackSegment *segment = nullptr;
    const KelGeoPositionList *chunk = nullptr;
    KelIntRange range; // within the segment or the chunk
    int start = 0;     // of the whole track
    QList<Crossing> crossings;
};

const KelGeoPosition &positionOf(const Piece &piece, int index)
{
    return piece.segment ? piece.segment->positionAt(index) : piece.chunk->at(index);
}

// The array is written before it is read, and by the tasks: its pages are theirs.
struct FreeRawMemory
{
    void operator()(QPointF *points) const noexcept { ::operator delete(points); }
};
using RawPoints = std::unique_ptr<QPointF[], FreeRawMemory>;

RawPoints createRawPoints(int count)
{
    return RawPoints(static_cast<QPointF *>(::operator new(static_cast<size_t>(count) * sizeof(QPointF))));
}

// What one path build works with. Each piece's task writes its own slice of the array.
//
// The steps are those of the renderer's building blocks, and so are the results, but the positions are read where they
// are (handles are counted by atomic operations, which cost as much as a projection), and each point is looked at once.
struct PathBuild
{
    explicit PathBuild(const KelGPXTrackRenderer &trackRenderer)
        : renderer(trackRenderer)
    {
    }

    const KelGPXTrackRenderer &renderer;
    // Only one of them is used; they keep the positions alive.
    QList<KelGPXTrackSegment> segments;
    QList<KelGeoPositionList> chunks;
    std::vector<Piece> pieces;
    int total = 0;
    RawPoints projected;
};

void addPiece(PathBuild *build, Piece piece)
{
    if (piece.range.size() == 0)
        return;
    piece.start = build->total;
    build->total += piece.range.size();
    build->pieces.push_back(std::move(piece));
}

// In the main thread long segments are cut into pieces for all processor cores, as their chunkedPoints() are.
void addSegment(PathBuild *build, const KelGPXTrackSegment &segment)
{
    const KelIntRange everything(0, segment.count() - 1);
    const bool isCut = segment.count() >= 2 * SMALLEST_PIECE && segment.weAreaRunningInMainThread();
    const QList<KelIntRange> ranges = isCut ? everything.splitEvenlyForCpuCores() : QList<KelIntRange>{everything};
    for (const KelIntRange &range : ranges)
        addPiece(build, Piece{&segment, nullptr, range, 0, {}});
}

void takePieces(PathBuild *build, const KelGPXTrack &track)
{
    // A host may derive from tracks and say what its points are.
    if (typeid(track) == typeid(KelGPXTrack)) {
        build->segments = track.segments();
        for (const KelGPXTrackSegment &segment : std::as_const(build->segments))
            addSegment(build, segment);
        return;
    }
    build->chunks = track.chunkedPoints();
    for (const KelGeoPositionList &chunk : std::as_const(build->chunks))
        addPiece(build, Piece{nullptr, &chunk, KelIntRange(0, static_cast<int>(chunk.size()) - 1), 0, {}});
}

// Vector code of the system may leave the upper halves of the vector registers in use. That changes no result, but where
// code with and without them meets, as in every call of a logarithm or tangent, some processors then take twenty times as
// long (seen with the GNU C library 2.36 on a processor with AVX-512). Callers expect nothing in these halves.
#if defined(__x86_64__) && defined(__GNUC__)
[[gnu::target("avx")]] void clearUpperHalvesWithAvx()
{
    __builtin_ia32_vzeroupper();
}

void clearUpperHalves()
{
    static const bool hasAvx = __builtin_cpu_supports("avx");
    if (hasAvx)
        clearUpperHalvesWithAvx();
}
#else
void clearUpperHalves()
{
}
#endif

// Projects the points of one piece and notes the date line's crossings. Only where the hemisphere changes there can be one.
void projectPiece(PathBuild *build, size_t pieceIndex)
{
    clearUpperHalves();
    Piece &piece = build->pieces[pieceIndex];
    const Piece *before = pieceIndex == 0 ? nullptr : &build->pieces[pieceIndex - 1];
    const KelGeoPosition *previous = before ? &positionOf(*before, before->range.max()) : nullptr;
    bool wasEast = previous && previous->isInEasternHemisphere();
    QPointF *output = build->projected.get() + piece.start;
    const int end = piece.range.lastIndexEvenIfUnvalid();
    for (int i = piece.range.min(); i < end; ++i) {
        const KelGeoPosition &position = positionOf(piece, i);
        *output++ = build->renderer.projectPosition(position);
        const bool isEast = position.isInEasternHemisphere();
        if (isEast != wasEast && previous) {
            const int step = build->renderer.checkDateLineCrossing(*previous, position);
            if (step != 0)
                piece.crossings.append({piece.start + i - piece.range.min(), step});
        }
        previous = &position;
        wasEast = isEast;
    }
}

void project(PathBuild *build)
{
    build->projected = createRawPoints(build->total);
    std::vector<size_t> indices(build->pieces.size());
    std::iota(indices.begin(), indices.end(), size_t(0));
    const auto task = [build](size_t pieceIndex) { projectPiece(build, pieceIndex); };
    // Few points are done before other threads would have begun.
    if (build->total < 2 * SMALLEST_PIECE)
        std::for_each(indices.begin(), indices.end(), task);
    else
        KelConcurrent::blockingMap(indices, task);
}

void shiftAcrossDateLine(PathBuild *build)
{
    QList<Crossing> crossings;
    for (const Piece &piece : build->pieces)
        crossings += piece.crossings;
    if (crossings.isEmpty())
        return;
    crossings.append({build->total, 0});

    const QPointF worldOffset = build->renderer.aroundTheWorldOffset();
    int sum = 0;
    int index = 0;
    for (const Crossing &crossing : std::as_const(crossings)) {
        // Home again means exactly home, also where the world has no finite width.
        const QPointF offset = sum == 0 ? QPointF() : worldOffset * sum;
        for (; index < crossing.index; ++index)
            build->projected[static_cast<size_t>(index)] += offset;
        sum += crossing.step;
    }
}

void smooth(PathBuild *build, int strength, int steps)
{
    if (strength == NO_SMOOTHING)
        return;
    KelGPXTrackSmoothing(build->projected.get(), build->total, strength / PERCENT, steps).run();
}

// A path that is asked to begin at a point that it refuses begins at the origin instead.
bool isDrawable(const QPointF &point)
{
    return std::abs(point.x()) < FARTHEST_COORDINATE && std::abs(point.y()) < FARTHEST_COORDINATE;
}

QPainterPath thinnedPath(const PathBuild &build)
{
    const QPointF *points = build.projected.get();
    const QPointF *end = points + build.total;
    const QPointF *first = std::find_if(points, end, isDrawable);
    if (first == end)
        return QPainterPath();

    const double threshold = build.renderer.renderingFactor() * THINNING_DISTANCE;
    QPainterPath path;
    path.moveTo(*first);
    QPointF last = *first;
    QPointF lastDrawable = *first;
    int lines = 0;
    for (const QPointF *point = first + 1; point != end; ++point) {
        if (!isDrawable(*point))
            continue;
        lastDrawable = *point;
        if ((*point - last).manhattanLength() > threshold) {
            path.lineTo(*point);
            ++lines;
            last = *point;
        }
    }
    // Deliberate: what collapses into the threshold is a point, and the callers draw empty paths as markers.
    if (lines == 0)
        return QPainterPath();
    path.lineTo(lastDrawable);
    return path;
}

// ---- world copies ---------------------------------------------------------------------------------------------

double outlineWidth(const KelGPXTrackRenderer &renderer, const KelGPXTrackConfiguration &configuration)
{
    return std::abs(renderer.scale((configuration.lineWidth() + configuration.haloWidth()).value()));
}

QRectF grown(const QRectF &rect, double margin)
{
    return rect.adjusted(-margin, -margin, margin, margin);
}

// An area that holds all that is painted of a path that is not empty: the path and its arrow head, beyond which round
// caps and joins reach half the pen's width.
QRectF areaOfPath(const KelGPXTrackRenderer &renderer, const QPainterPath &path,
                  const KelGPXTrackConfiguration &configuration)
{
    QRectF area = grown(path.controlPointRect(), outlineWidth(renderer, configuration));
    if (hasArrow(configuration)) {
        const QPointF tip = path.elementAt(path.elementCount() - 1);
        const double reach = std::abs(renderer.scale(barbLength(path))) + outlineWidth(renderer, configuration);
        area |= grown(QRectF(tip, tip), reach);
    }
    return area;
}

// The same for a marker, which grows with the pen's width rounded to a whole number.
QRectF areaOfMarker(const KelGPXTrackRenderer &renderer, const QPointF &center, double radius,
                    const KelGPXTrackConfiguration &configuration)
{
    return grown(QRectF(center, center), std::abs(radius) + outlineWidth(renderer, configuration) + 1.0);
}

// Whether what is painted in that area can reach a pixel. Only images are asked: what other devices do with things
// outside of their rectangle is their own affair (vector formats keep them).
bool reachesThePicture(const QPaintDevice *device, const QTransform &toDevice, const QRectF &area)
{
    if (!device || device->devType() != QInternal::Image || !toDevice.isAffine())
        return true;
    const QRectF reached = grown(toDevice.mapRect(area), PIXELS_AROUND);
    // Written so that an area that is not finite counts as seen.
    return !(reached.right() < 0 || reached.bottom() < 0 || reached.left() > device->width()
             || reached.top() > device->height());
}

// Calls draw(offset) with the painter moved by the offset of each world copy in turn. Copies of which nothing can be seen are left out:
// outlining a long path costs the same wherever it lies.
template <typename Draw>
void forEachWorldCopy(const KelGPXTrackRenderer &renderer, QPainter *painter, const QRectF &area, Draw draw)
{
    const QPointF worldOffset = renderer.aroundTheWorldOffset();
    const KelIntRange shifts = renderer.visibleShifts(painter);
    const QPaintDevice *device = painter->device();
    const QTransform toDevice = painter->deviceTransform();
    for (int shift = shifts.min(); shift <= shifts.max(); ++shift) {
        // Without a usable world width there is still the world itself.
        const QPointF offset = shift == 0 ? QPointF() : worldOffset * shift;
        if (!std::isfinite(offset.x()) || !std::isfinite(offset.y()))
            continue;
        if (!reachesThePicture(device, QTransform(toDevice).translate(offset.x(), offset.y()), area))
            continue;
        painter->save();
        painter->translate(offset);
        draw(offset);
        painter->restore();
    }
}

// ---- points ---------------------------------------------------------------------------------------------------

// The first of the drawing points, without the list of all of them where a long line is drawn as a point only because
// it is small on the map. Without points there is none.
std::optional<KelGeoPosition> firstDrawingPoint(const KelGPXConfiguredTrack &configuredTrack)
{
    if (configuredTrack.effectiveShape() == TrackShapePoint) {
        const KelGeoPositionList points = configuredTrack.drawingPoints();
        return points.isEmpty() ? std::nullopt : std::optional(points.first());
    }
    const QList<KelGPXTrackSegment> segments = configuredTrack.track().segments();
    const auto segment = std::find_if(segments.begin(), segments.end(),
                                      [](const KelGPXTrackSegment &candidate) { return candidate.isValid(); });
    return segment == segments.end() ? std::nullopt : std::optional(segment->firstPoint());
}

// ---- lines and areas ------------------------------------------------------------------------------------------

// What of a line the painter is given.
QPainterPath lineNearPicture(const QPainter *painter, const QPainterPath &path, const QPen &pen,
                             double farthest = KelPathCutter::FARTHEST)
{
    const KelPathCutter cutter(painter, pen.widthF() * std::max(1.0, pen.miterLimit()), farthest);
    if (pen.style() == Qt::SolidLine)
        return cutter.line(path);
    const QList<qreal> pattern = pen.dashPattern();
    return cutter.dashedLine(path, pen.widthF() * std::accumulate(pattern.begin(), pattern.end(), 0.0));
}

// Calls draw(path, configuration, offset) for each world copy of a track that is not drawn as a point.
template <typename Draw>
void forEachCopyOfPath(const KelGPXTrackRenderer &renderer, QPainter *painter,
                       const KelGPXConfiguredTrack &configuredTrack, KelGPXTrackRenderer::TrackRenderOption option,
                       Draw draw)
{
    const QPainterPath path = renderer.createPainterPath(configuredTrack);
    if (path.isEmpty()) {
        renderer.drawPoint(painter, configuredTrack, option);
        return;
    }
    const KelGPXTrackConfiguration &configuration = configuredTrack.configuration();
    forEachWorldCopy(renderer, painter, areaOfPath(renderer, path, configuration),
                     [&](const QPointF &offset) { draw(path, configuration, offset); });
}

// drawTrack() on an image of our own: the same pixels, only faster.
void drawTrackFast(const KelGPXTrackRenderer &renderer, KelPathPainter *pathPainter, QPainter *painter,
                   const KelGPXConfiguredTrack &configuredTrack, KelGPXTrackRenderer::TrackRenderOption option)
{
    const KelGPXTrackShape shape = configuredTrack.effectiveShape();
    if (shape == TrackShapePoint) {
        renderer.drawPoint(painter, configuredTrack, option);
        return;
    }
    const bool everything = option == KelGPXTrackRenderer::Foreground;
    const auto draw = [&](const QPainterPath &path, const KelGPXTrackConfiguration &configuration,
                          const QPointF &offset) {
        if (shape == TrackShapePolygon && (everything || isFilled(configuration))) {
            const QBrush brush = renderer.brushFromTrack(configuration, option);
            const QPainterPath area = KelPathCutter(painter, 0.0).area(path);
            if (!pathPainter->fill(area, brush, offset))
                painter->fillPath(area, brush);
        }
        if (everything || isStroked(configuration)) {
            const QPen pen = renderer.penFromTrack(configuration, option);
            const QPainterPath line = lineNearPicture(painter, path, pen);
            if (!pathPainter->stroke(line, pen, offset))
                painter->strokePath(line, pen);
        }
        if (shape != TrackShapePolygon && hasArrow(configuration))
            renderer.drawArrowHead(painter, path, configuration, option);
    };
    forEachCopyOfPath(renderer, painter, configuredTrack, option, draw);
}

// ---- images ---------------------------------------------------------------------------------------------------

// Whether the image is one whose pixels a KelPathPainter knows.
bool isOfPlainPixels(const QImage &image)
{
    return image.format() == QImage::Format_ARGB32_Premultiplied && image.devicePixelRatio() == 1.0;
}

// Calls paint(painter, pathPainter) for a painter with these hints. The path painter is null on images of other kinds.
// Nothing is called where the image cannot be painted on, and it stays as it is.
template<typename Paint>
void paintOn(QImage *image, QPainter::RenderHints hints, Paint paint)
{
    if (image->isNull())
        return;
    if (!image->isDetached()) {
        // Were it left to the painter, the image would be lost where memory is short.
        QImage own = image->copy();
        if (own.isNull())
            return;
        *image = std::move(own);
    }
    QPainter painter;
    if (!painter.begin(image))
        return;
    painter.setRenderHints(hints);
    std::optional<KelPathPainter> pathPainter;
    if (isOfPlainPixels(*image))
        pathPainter.emplace(image, hints);
    paint(&painter, pathPainter ? &*pathPainter : nullptr);
}

void paintTracks(const KelGPXTrackRenderer &renderer, const KelGPXConfiguredTrackList &tracks, QImage *image,
                 KelGPXTrackRenderer::TrackRenderOption option, QPainter::RenderHints hints)
{
    paintOn(image, hints, [&](QPainter *painter, KelPathPainter *pathPainter) {
        for (const KelGPXConfiguredTrack &configuredTrack : tracks.tracks()) {
            if (pathPainter)
                drawTrackFast(renderer, pathPainter, painter, configuredTrack, option);
            else
                renderer.drawTrack(painter, configuredTrack, option);
        }
    });
}

// Null for an empty size, and where memory is short.
QImage paintImage(const KelGPXTrackRenderer &renderer, const KelGPXConfiguredTrackList &tracks,
                  KelGPXTrackRenderer::TrackRenderOption option, QPainter::RenderHints hints)
{
    QImage image(renderer.targetImageSize(), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.fill(Qt::transparent);
    paintTracks(renderer, tracks, &image, option, hints);
    return image;
}

CropTable createCropTable(int opacity)
{
    CropTable table;
    int product = 0;
    for (uchar &entry : table) {
        entry = static_cast<uchar>(std::clamp(product / OPAQUE + opacity, opacity, OPAQUE));
        product += OPAQUE - opacity;
    }
    return table;
}

// The pixels that target and mask have in common, as raw memory: taken once, before the stripes are written in
// parallel, because QImage's own accessors to writable memory count their calls.
struct CropArea
{
    CropArea(QImage *target, const QImage &mask)
    {
        if (target->depth() != BYTES_PER_PIXEL * 8 || mask.depth() != BYTES_PER_PIXEL * 8)
            return;
        width = std::min(target->width(), mask.width());
        height = std::min(target->height(), mask.height());
        targetBits = target->bits();
        targetBytesPerLine = target->bytesPerLine();
        maskBits = mask.constBits();
        maskBytesPerLine = mask.bytesPerLine();
    }

    int width = 0;
    int height = 0;
    uchar *targetBits = nullptr;
    qsizetype targetBytesPerLine = 0;
    const uchar *maskBits = nullptr;
    qsizetype maskBytesPerLine = 0;
};

// Most of a mask is empty: what comes in blocks of nothing needs no look at the table.
constexpr int BLOCK = 16;

bool isTransparent(const QRgb *block)
{
    QRgb any = 0;
    for (int i = 0; i < BLOCK; ++i)
        any |= block[i];
    return qAlpha(any) == 0;
}

void setAlpha(QRgb *block, int alpha)
{
    for (int i = 0; i < BLOCK; ++i)
        block[i] = (block[i] & RGB_MASK) | qRgba(0, 0, 0, alpha);
}

void mergeRow(uchar *target, const uchar *mask, int width, const uchar *table)
{
    int column = 0;
    while (column < width) {
        const qsizetype offset = qsizetype(column) * BYTES_PER_PIXEL;
        const int end = std::min(column + BLOCK, width);
        if (IS_LAST_BYTE_ALPHA && end - column == BLOCK && isTransparent(reinterpret_cast<const QRgb *>(mask + offset))) {
            setAlpha(reinterpret_cast<QRgb *>(target + offset), table[0]);
            column = end;
        }
        for (; column < end; ++column)
            target[column * BYTES_PER_PIXEL + ALPHA_BYTE] = table[mask[column * BYTES_PER_PIXEL + ALPHA_BYTE]];
    }
}

void mergeRows(const CropArea &area, const KelIntRange &rows, const uchar *table)
{
    const int end = std::min(rows.lastIndexEvenIfUnvalid(), area.height);
    for (int row = std::max(rows.min(), 0); row < end; ++row)
        mergeRow(area.targetBits + row * area.targetBytesPerLine, area.maskBits + row * area.maskBytesPerLine, area.width, table);
}

// An image of the same size and kind, but for the format, as conversions make it; without pixels.
QImage premultipliedLike(const QImage &image)
{
    QImage result(image.size(), QImage::Format_ARGB32_Premultiplied);
    result.setDotsPerMeterX(image.dotsPerMeterX());
    result.setDotsPerMeterY(image.dotsPerMeterY());
    result.setDevicePixelRatio(image.devicePixelRatio());
    result.setOffset(image.offset());
    result.setColorSpace(image.colorSpace());
    for (const QString &key : image.textKeys())
        result.setText(key, image.text(key));
    return result;
}

// One pass in place of three: the mask's alpha into the map, and the conversion of the outcome. As raw memory, see CropArea.
struct CroppedMap
{
    CroppedMap(QImage *result, const QImage &map, const QImage &mask)
        : width(map.width())
        , commonWidth(std::min(map.width(), mask.width()))
        , commonHeight(std::min(map.height(), mask.height()))
        , ownAlpha(map.format() == QImage::Format_RGB32 ? qRgba(0, 0, 0, OPAQUE) : 0)
        , resultBits(result->bits())
        , resultBytesPerLine(result->bytesPerLine())
        , mapBits(map.constBits())
        , mapBytesPerLine(map.bytesPerLine())
        , maskBits(mask.constBits())
        , maskBytesPerLine(mask.bytesPerLine())
    {
    }

    QRgb *resultRow(int row) const { return reinterpret_cast<QRgb *>(resultBits + row * resultBytesPerLine); }
    const QRgb *mapRow(int row) const { return reinterpret_cast<const QRgb *>(mapBits + row * mapBytesPerLine); }
    const QRgb *maskRow(int row) const { return reinterpret_cast<const QRgb *>(maskBits + row * maskBytesPerLine); }

    int width;
    int commonWidth;
    int commonHeight;
    QRgb ownAlpha; // of all pixels of maps without transparency
    uchar *resultBits;
    qsizetype resultBytesPerLine;
    const uchar *mapBits;
    qsizetype mapBytesPerLine;
    const uchar *maskBits;
    qsizetype maskBytesPerLine;
};

void cropRow(QRgb *result, const QRgb *map, const QRgb *mask, int width, const CropTable &table)
{
    for (int column = 0; column < width; ++column) {
        const int alpha = table[static_cast<size_t>(qAlpha(mask[column]))];
        result[column] = qPremultiply((map[column] & RGB_MASK) | qRgba(0, 0, 0, alpha));
    }
}

void cropRows(const CroppedMap &cropped, const KelIntRange &rows, const CropTable &table)
{
    for (int row = rows.min(); row < rows.lastIndexEvenIfUnvalid(); ++row) {
        const QRgb *map = cropped.mapRow(row);
        QRgb *result = cropped.resultRow(row);
        const int common = row < cropped.commonHeight ? cropped.commonWidth : 0;
        if (common > 0)
            cropRow(result, map, cropped.maskRow(row), common, table);
        for (int column = common; column < cropped.width; ++column)
            result[column] = qPremultiply(map[column] | cropped.ownAlpha);
    }
}

} // namespace

KelGPXTrackRenderer::KelGPXTrackRenderer(const KelGPXTrackSelection &selection, const QSize &targetImageSize,
                                         double renderingFactor)
    : m_selection(selection)
    , m_targetImageSize(targetImageSize)
    , m_renderingFactor(renderingFactor)
{
}

KelGPXTrackRenderer::~KelGPXTrackRenderer() = default;

double KelGPXTrackRenderer::scale(double value) const noexcept
{
    return value * m_renderingFactor;
}

QSize KelGPXTrackRenderer::targetImageSize() const noexcept
{
    return m_targetImageSize;
}

double KelGPXTrackRenderer::renderingFactor() const noexcept
{
    return m_renderingFactor;
}

// ---- images ---------------------------------------------------------------------------------------------------

QImage KelGPXTrackRenderer::render(TrackRenderOption option) const
{
    return paintImage(*this, m_selection.tracks(), option, QPainter::Antialiasing).convertToFormat(QImage::Format_ARGB32);
}

QImage KelGPXTrackRenderer::renderQuickAndDirty(TrackRenderOption option) const
{
    return paintImage(*this, m_selection.tracks(), option, QPainter::RenderHints());
}

QImage KelGPXTrackRenderer::renderForeground() const
{
    return renderQuickAndDirty(Foreground);
}

QImage KelGPXTrackRenderer::crop(const QImage &mapImage) const
{
    const int opacity = std::clamp(m_selection.effectiveCroppingOpacity(), 0, OPAQUE);
    if (opacity == OPAQUE)
        return mapImage;

    // Only its alpha is needed, which is the same before and after the conversion that render() ends with.
    const QImage mask = paintImage(*this, m_selection.tracks(), Foreground, QPainter::Antialiasing);
    if (mask.isNull() && !m_targetImageSize.isEmpty())
        return QImage();
    // Of a map without transparency nothing but the colours is looked at.
    const QImage map =
        mapImage.format() == QImage::Format_RGB32 ? mapImage : mapImage.convertToFormat(QImage::Format_ARGB32);
    QImage result = premultipliedLike(map);
    if (result.isNull())
        return result;
    const CropTable table = createCropTable(opacity);
    const CroppedMap cropped(&result, map, mask);
    KelConcurrent::blockingMap(KelIntRange::rowsOfImage(result).splitEvenlyForCpuCores(),
                               [&](const KelIntRange &rows) { cropRows(cropped, rows, table); });
    return result;
}

void KelGPXTrackRenderer::mergeCropping(QImage *target, const QImage &mask, const KelIntRange &rows,
                                        const uchar *table) const
{
    mergeRows(CropArea(target, mask), rows, table);
}

// ---- painter paths --------------------------------------------------------------------------------------------

QPainterPath KelGPXTrackRenderer::createPainterPath(const KelGPXConfiguredTrack &configuredTrack) const
{
    const KelGPXTrack &track = configuredTrack.track();
    const int strength = configuredTrack.smoothingStrength();
    const int steps = configuredTrack.smoothingSteps();

    QPainterPath path = createPainterPath(track, strength, steps);
    if (configuredTrack.naturalShape() == TrackShapeLineString
        && configuredTrack.effectiveShape() == TrackShapePolygon)
        path.closeSubpath();
    const QList<KelGPXTrack> enclaves = track.enclaves();
    for (const KelGPXTrack &enclave : enclaves)
        path.addPath(createPainterPath(enclave, strength, steps));
    return path;
}

QPainterPath KelGPXTrackRenderer::createPainterPath(const KelGPXTrack &track, int smoothingStrength,
                                                    int smoothingSteps) const
{
    PathBuild build(*this);
    takePieces(&build, track);
    if (build.total == 0)
        return QPainterPath();
    project(&build);
    shiftAcrossDateLine(&build);
    smooth(&build, smoothingStrength, smoothingSteps);
    return thinnedPath(build);
}

// ---- world copies ---------------------------------------------------------------------------------------------

QPointF KelGPXTrackRenderer::aroundTheWorldOffset() const
{
    return projectPosition(KelGeoPosition(KelLatitude(0.0), KelLongitude(180.0)))
        - projectPosition(KelGeoPosition(KelLatitude(0.0), KelLongitude(-180.0)));
}

KelIntRange KelGPXTrackRenderer::visibleShifts(QPainter *painter) const
{
    // QPaintDevice's own width() is the raw number of pixels, whatever the device pixel ratio.
    const QPaintDevice *device = painter->device();
    const int deviceWidth = device ? device->width() : 0;
    const int worldWidth = KelPixel::truncated(aroundTheWorldOffset().x());
    const int count = worldWidth == 0 ? 0 : std::min(deviceWidth / worldWidth, MOST_WORLD_WIDTHS);
    return KelIntRange(-count - 1, count + 1);
}

// ---- building blocks of a path --------------------------------------------------------------------------------

int KelGPXTrackRenderer::checkDateLineCrossing(const KelGeoPosition &a, const KelGeoPosition &b) const
{
    const bool fromEast = a.isInEasternHemisphere();
    if (fromEast == b.isInEasternHemisphere() || a.longitude() == b.longitude())
        return 0;
    // On both sides of the prime meridian the position of the eastern hemisphere lies east of the other one; on both
    // sides of the date line it lies west of it.
    if (fromEast == a.isEastOf(b))
        return 0;
    return fromEast ? 1 : -1;
}

void KelGPXTrackRenderer::checkDateLineCrossings(int chunkIndex, const QList<KelGeoPositionList> &chunks,
                                                 const QList<KelIntRange> &ranges, int *crossings) const
{
    const KelGeoPositionList &chunk = chunks.at(chunkIndex);
    if (chunk.isEmpty())
        return;

    int *entry = crossings + ranges.at(chunkIndex).min();
    int previous = chunkIndex - 1;
    while (previous >= 0 && chunks.at(previous).isEmpty())
        --previous;
    entry[0] = previous < 0 ? 0 : checkDateLineCrossing(chunks.at(previous).last(), chunk.first());
    for (qsizetype k = 1; k < chunk.size(); ++k)
        entry[k] = checkDateLineCrossing(chunk.at(k - 1), chunk.at(k));
}

QPointF *KelGPXTrackRenderer::createDateLineCrossingOffsets(const QList<KelGeoPositionList> &chunks,
                                                            const QList<int> &chunkIndices, int total,
                                                            const QList<KelIntRange> &ranges, bool *crossed) const
{
    const auto crossings = std::make_unique<int[]>(static_cast<size_t>(total));
    KelConcurrent::blockingMap(chunkIndices, [this, &chunks, &ranges, &crossings](int chunkIndex) {
        checkDateLineCrossings(chunkIndex, chunks, ranges, crossings.get());
    });

    const QPointF worldOffset = aroundTheWorldOffset();
    auto offsets = std::make_unique<QPointF[]>(static_cast<size_t>(total));
    int sum = 0;
    for (int k = 0; k < total; ++k) {
        if (crossings[static_cast<size_t>(k)] != 0) {
            *crossed = true;
            sum += crossings[static_cast<size_t>(k)];
        }
        // Home again means exactly home, also where the world has no finite width.
        if (sum != 0)
            offsets[static_cast<size_t>(k)] = worldOffset * sum;
    }
    return offsets.release();
}

void KelGPXTrackRenderer::projectPoints(const KelGeoPositionList &positions, const KelIntRange &range,
                                        QPointF *output) const
{
    const int end = range.lastIndexEvenIfUnvalid();
    for (int k = range.min(); k < end; ++k)
        output[k] = projectPosition(positions.at(k));
}

void KelGPXTrackRenderer::projectPointsPP(int chunkIndex, const QList<KelGeoPositionList> &chunks,
                                          const QList<KelIntRange> &ranges, QPointF *output) const
{
    const KelGeoPositionList &chunk = chunks.at(chunkIndex);
    QPointF *entry = output + ranges.at(chunkIndex).min();
    for (const KelGeoPosition &position : chunk)
        *entry++ = projectPosition(position);
}

void KelGPXTrackRenderer::shiftProjected(const KelIntRange &range, QPointF *projected, const QPointF *offsets) const
{
    const int end = range.lastIndexEvenIfUnvalid();
    for (int k = range.min(); k < end; ++k)
        projected[k] += offsets[k];
}

// ---- arrow geometry -------------------------------------------------------------------------------------------

double KelGPXTrackRenderer::detectAngleOfPath(const QPainterPath &path) const
{
    // Deliberate: the plain mean, also where the samples lie on both sides of 0/360 degrees.
    double sum = 0;
    for (const double percent : ARROW_SAMPLES)
        sum += path.angleAtPercent(percent);
    return sum / static_cast<double>(std::size(ARROW_SAMPLES));
}

QPointF KelGPXTrackRenderer::carthesian(double radius, double angle) const
{
    const double radians = (180 - angle) * PI / 180;
    return QPointF(radius * std::cos(radians), radius * std::sin(radians));
}

QPointF KelGPXTrackRenderer::movePolar(const QPointF &point, double radius, double angle) const
{
    return point + carthesian(radius, angle);
}

// ---- colours, pens, brushes -----------------------------------------------------------------------------------

QColor KelGPXTrackRenderer::adaptColor(const QColor &color, TrackRenderOption option) const
{
    QColor adapted = color;
    if (option == Foreground)
        adapted.setAlpha(OPAQUE);
    return adapted;
}

QColor KelGPXTrackRenderer::lineColor(const KelGPXTrackConfiguration &configuration, TrackRenderOption option) const
{
    return adaptColor(configuration.lineColor(), option);
}

QColor KelGPXTrackRenderer::fillColor(const KelGPXTrackConfiguration &configuration, TrackRenderOption option) const
{
    return adaptColor(configuration.fillColor(), option);
}

QPen KelGPXTrackRenderer::solidPenFromTrack(const KelGPXTrackConfiguration &configuration,
                                            TrackRenderOption option) const
{
    KelDistance width = configuration.lineWidth();
    if (option == Foreground)
        width = width + configuration.haloWidth();
    return QPen(QBrush(lineColor(configuration, option)), usableWidth(scale(width.value())), Qt::SolidLine, Qt::RoundCap,
                Qt::RoundJoin);
}

QPen KelGPXTrackRenderer::penFromTrack(const KelGPXTrackConfiguration &configuration, TrackRenderOption option) const
{
    QPen pen = solidPenFromTrack(configuration, option);
    if (option != Foreground)
        configuration.penStyle().modifyPen(pen);
    return pen;
}

QBrush KelGPXTrackRenderer::brushFromTrack(const KelGPXTrackConfiguration &configuration,
                                           TrackRenderOption option) const
{
    return QBrush(fillColor(configuration, option), Qt::SolidPattern);
}

// ---- drawing --------------------------------------------------------------------------------------------------

void KelGPXTrackRenderer::renderWith(QPainter *painter, TrackRenderOption option) const
{
    const KelGPXConfiguredTrackList list = m_selection.tracks();
    for (const KelGPXConfiguredTrack &configuredTrack : list.tracks())
        drawTrack(painter, configuredTrack, option);
}

void KelGPXTrackRenderer::renderOver(QImage *image, TrackRenderOption option) const
{
    paintTracks(*this, m_selection.tracks(), image, option, QPainter::Antialiasing);
}

void KelGPXTrackRenderer::strokeOver(QImage *image, const QPainterPath &path, const QPen &pen) const
{
    paintOn(image, QPainter::Antialiasing, [&](QPainter *painter, KelPathPainter *pathPainter) {
        const QRectF area = grown(path.controlPointRect(), pen.widthF() * std::max(1.0, pen.miterLimit()));
        forEachWorldCopy(*this, painter, area, [&](const QPointF &offset) {
            const QPainterPath line = lineNearPicture(painter, path, pen);
            if (!pathPainter || !pathPainter->stroke(line, pen, offset))
                painter->strokePath(line, pen);
        });
    });
}

void KelGPXTrackRenderer::drawTrack(QPainter *painter, const KelGPXConfiguredTrack &configuredTrack,
                                    TrackRenderOption option) const
{
    const KelGPXTrackShape shape = configuredTrack.effectiveShape();
    if (shape == TrackShapePoint)
        drawPoint(painter, configuredTrack, option);
    else if (shape == TrackShapePolygon)
        drawPolygon(painter, configuredTrack, option);
    else
        drawLine(painter, configuredTrack, option);
}

void KelGPXTrackRenderer::drawPoint(QPainter *painter, const KelGPXConfiguredTrack &configuredTrack,
                                    TrackRenderOption option) const
{
    const KelGPXTrackConfiguration &configuration = configuredTrack.configuration();
    const bool stroked = option == Foreground || isStroked(configuration);
    const bool filled = option == Foreground || isFilled(configuration);
    if (!stroked && !filled)
        return;

    painter->save();
    // A transparent pen rather than none: markers are sized by the pen's width.
    painter->setPen(stroked ? penFromTrack(configuration, option) : QPen(Qt::transparent));
    painter->setBrush(filled ? brushFromTrack(configuration, option) : QBrush(Qt::transparent));
    const std::optional<KelGeoPosition> position = firstDrawingPoint(configuredTrack);
    const QPointF point = position ? projectPosition(*position) : QPointF();
    if (position && isDrawable(point)) {
        const double radius = scale(configuredTrack.lineWidth().value());
        const KelGPXMarkerShape &marker = configuration.markerShape();
        forEachWorldCopy(*this, painter, areaOfMarker(*this, point, radius, configuration),
                         [&](const QPointF &) { marker.draw(painter, point, radius, radius); });
    }
    painter->restore();
}

void KelGPXTrackRenderer::drawLine(QPainter *painter, const KelGPXConfiguredTrack &configuredTrack,
                                   TrackRenderOption option) const
{
    const auto draw = [&](const QPainterPath &path, const KelGPXTrackConfiguration &configuration, const QPointF &) {
        drawLine(painter, path, configuration, option);
    };
    forEachCopyOfPath(*this, painter, configuredTrack, option, draw);
}

void KelGPXTrackRenderer::drawPolygon(QPainter *painter, const KelGPXConfiguredTrack &configuredTrack,
                                      TrackRenderOption option) const
{
    const auto draw = [&](const QPainterPath &path, const KelGPXTrackConfiguration &configuration, const QPointF &) {
        drawPolygon(painter, path, configuration, option);
    };
    forEachCopyOfPath(*this, painter, configuredTrack, option, draw);
}

void KelGPXTrackRenderer::drawLine(QPainter *painter, const QPainterPath &path,
                                   const KelGPXTrackConfiguration &configuration, TrackRenderOption option) const
{
    drawPath(painter, path, configuration, option);
    if (hasArrow(configuration))
        drawArrowHead(painter, path, configuration, option);
}

void KelGPXTrackRenderer::drawPolygon(QPainter *painter, const QPainterPath &path,
                                      const KelGPXTrackConfiguration &configuration, TrackRenderOption option) const
{
    painter->save();
    if (option == Foreground || isFilled(configuration))
        painter->fillPath(KelPathCutter(painter, 0.0, KelPathCutter::FARTHEST_FOR_PAINTERS).area(path),
                          brushFromTrack(configuration, option));
    drawPath(painter, path, configuration, option);
    painter->restore();
}

void KelGPXTrackRenderer::drawPath(QPainter *painter, const QPainterPath &path,
                                   const KelGPXTrackConfiguration &configuration, TrackRenderOption option) const
{
    painter->save();
    painter->setPen(penFromTrack(configuration, option));
    // A host's painter may have a brush, too.
    const bool isLine = painter->brush().style() == Qt::NoBrush;
    if (option == Foreground || isStroked(configuration)) {
        painter->drawPath(isLine ? lineNearPicture(painter, path, painter->pen(), KelPathCutter::FARTHEST_FOR_PAINTERS)
                                 : path);
    }
    painter->restore();
}

void KelGPXTrackRenderer::drawArrowHead(QPainter *painter, const QPainterPath &path,
                                        const KelGPXTrackConfiguration &configuration, TrackRenderOption option) const
{
    if (path.elementCount() == 0)
        return;
    const double angle = detectAngleOfPath(path);
    const QPointF tip = path.elementAt(path.elementCount() - 1);
    const double barb = scale(barbLength(path));

    painter->save();
    painter->setPen(solidPenFromTrack(configuration, option));
    painter->drawLine(tip, movePolar(tip, barb, angle + ARROW_OPENING));
    painter->drawLine(tip, movePolar(tip, barb, angle - ARROW_OPENING));
    painter->restore();
}
