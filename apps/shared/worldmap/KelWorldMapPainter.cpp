// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelWorldMapPainter.h"

#include <KelGPXTrackRenderer.h>
#include <KelGPXTrackSelection.h>
#include <KelGeoPosition.h>

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <vector>

namespace
{

constexpr double MARGIN = 24.0;            // pixels at factor 1 around the picture that are still drawn
constexpr double THINNING = 0.3;           // pixels; nearer points say nothing
constexpr double GRATICULE_PIXELS = 105.0; // least distance of the graticule's meridians at factor 1
constexpr double LABELLED_PIXELS = 55.0;   // room of the widest label of a meridian at factor 1
constexpr double LABEL_PIXELS = 11.0;
constexpr double OVERLAY_PIXELS = 30.0;
constexpr double SHALLOWS_WIDTH = 7.0;
constexpr double COAST_WIDTH = 0.9;
constexpr double BORDER_WIDTH = 0.9;
constexpr double GRATICULE_WIDTH = 0.8;
// Worlds of less than so many pixels per unit of width have narrower outlines: wider ones would cover them.
constexpr double LEAST_WORLD = 40.0;
// Pixels. Lines between one and this are what neither way of painting is quick with.
constexpr double NARROWEST_OUTLINE = 1.02;
constexpr int BAND_PIXELS = 1024; // of wide images, which are filled band by band
// Degrees, then minutes and seconds.
constexpr double STEPS[] = {30.0,      20.0,      10.0,      5.0,       2.0,        1.0,
                            1.0 / 2,   1.0 / 3,   1.0 / 6,   1.0 / 12,  1.0 / 30,   1.0 / 60,
                            1.0 / 120, 1.0 / 180, 1.0 / 360, 1.0 / 720, 1.0 / 1800, 1.0 / 3600};

double squaredDistance(const QPointF &a, const QPointF &b)
{
    const QPointF d = a - b;
    return d.x() * d.x() + d.y() * d.y();
}

/// One step of cutting a polygon at a rectangle: keeps what lies inside one of its edges.
template<typename Inside, typename Cut>
void cutAtEdge(QList<QPointF> &polygon, QList<QPointF> &scratch, Inside inside, Cut cut)
{
    scratch.clear();
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        const QPointF &from = polygon.at(i == 0 ? polygon.size() - 1 : i - 1);
        const QPointF &to = polygon.at(i);
        if (inside(from) != inside(to))
            scratch.append(cut(from, to));
        if (inside(to))
            scratch.append(to);
    }
    polygon.swap(scratch);
}

QPointF atX(const QPointF &a, const QPointF &b, double x)
{
    return {x, a.y() + (b.y() - a.y()) * (x - a.x()) / (b.x() - a.x())};
}

QPointF atY(const QPointF &a, const QPointF &b, double y)
{
    return {a.x() + (b.x() - a.x()) * (y - a.y()) / (b.y() - a.y()), y};
}

void cutPolygon(QList<QPointF> &polygon, const QRectF &clip)
{
    QList<QPointF> scratch;
    scratch.reserve(polygon.size());
    const double left = clip.left(), right = clip.right(), top = clip.top(), bottom = clip.bottom();
    cutAtEdge(
        polygon, scratch, [&](const QPointF &p) { return p.x() >= left; },
        [&](const QPointF &a, const QPointF &b) { return atX(a, b, left); });
    cutAtEdge(
        polygon, scratch, [&](const QPointF &p) { return p.x() <= right; },
        [&](const QPointF &a, const QPointF &b) { return atX(a, b, right); });
    cutAtEdge(
        polygon, scratch, [&](const QPointF &p) { return p.y() >= top; },
        [&](const QPointF &a, const QPointF &b) { return atY(a, b, top); });
    cutAtEdge(
        polygon, scratch, [&](const QPointF &p) { return p.y() <= bottom; },
        [&](const QPointF &a, const QPointF &b) { return atY(a, b, bottom); });
}

/// The part of a line within the rectangle.
std::optional<QLineF> cutLine(const QLineF &line, const QRectF &clip)
{
    double from = 0.0;
    double to = 1.0;
    const auto limit = [&](double delta, double distance) {
        // Inside where delta × t <= distance.
        if (delta == 0.0)
            return distance >= 0.0;
        const double t = distance / delta;
        if (delta < 0.0)
            from = std::max(from, t);
        else
            to = std::min(to, t);
        return from <= to;
    };
    if (!limit(-line.dx(), line.x1() - clip.left()) || !limit(line.dx(), clip.right() - line.x1())
        || !limit(-line.dy(), line.y1() - clip.top()) || !limit(line.dy(), clip.bottom() - line.y1()))
        return std::nullopt;
    return QLineF(line.pointAt(from), line.pointAt(to));
}

/// Strokes on images the way that tracks are: the painter's own pixels, in a time that grows with the length of the
/// path only. A painter takes minutes for the shallows of many worlds side by side, or for very wide ones.
class OutlineStroker : public KelGPXTrackRenderer
{
public:
    explicit OutlineStroker(const QSize &size)
        : KelGPXTrackRenderer(KelGPXTrackSelection(), size, 1.0)
    {
    }

    /// No picture shows this world twice: the paths hold all copies already.
    [[nodiscard]] QPointF projectPosition(const KelGeoPosition &position) const override
    {
        constexpr double PIXELS_PER_DEGREE = 1e6;
        return {position.longitude().decimalDegrees() * PIXELS_PER_DEGREE, 0.0};
    }
};

/// The image whose pixels are the painter's units, if it paints on one and nothing of it is left out or changed.
QImage *plainImage(const QPainter &painter)
{
    const QPaintEngine *engine = painter.paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster || painter.device()->devType() != QInternal::Image)
        return nullptr;
    const bool plain = painter.deviceTransform().isIdentity() && !painter.hasClipping() && painter.opacity() == 1.0
        && painter.compositionMode() == QPainter::CompositionMode_SourceOver;
    return plain ? static_cast<QImage *>(painter.device()) : nullptr;
}

void stroke(QPainter &painter, QImage *image, const QPainterPath &path, const QPen &pen)
{
    // Lines up to a pixel are no outlines for the painter, and quick.
    if (!image || pen.widthF() <= 1.0) {
        painter.strokePath(path, pen);
        return;
    }
    QPen widePen(pen);
    widePen.setWidthF(std::max(pen.widthF(), NARROWEST_OUTLINE));
    QImage pixels(image->bits(), image->width(), image->height(), image->bytesPerLine(), image->format());
    OutlineStroker(pixels.size()).strokeOver(&pixels, path, widePen);
}

/// One of the areas that a path holds: its elements, and the columns from its west to its east.
struct PathPart
{
    int first;
    int end;
    double west;
    double east;
};

std::vector<PathPart> partsOf(const QPainterPath &path)
{
    std::vector<PathPart> parts;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo())
            parts.push_back({i, i, element.x, element.x});
        PathPart &part = parts.back();
        part.end = i + 1;
        part.west = std::min(part.west, element.x);
        part.east = std::max(part.east, element.x);
    }
    return parts;
}

/// The areas that come into the rectangle's columns, as wholes.
QPainterPath areasWithin(const QPainterPath &path, const std::vector<PathPart> &parts, const QRect &rect)
{
    QPainterPath result;
    result.setFillRule(path.fillRule());
    for (const PathPart &part : parts) {
        if (part.east < rect.left() - 1.0 || part.west > rect.right() + 2.0)
            continue;
        result.moveTo(path.elementAt(part.first));
        for (int i = part.first + 1; i < part.end; ++i)
            result.lineTo(path.elementAt(i));
    }
    return result;
}

/// What the painter makes of a path takes a time that grows with the square of the edges in a row of pixels: wide images
/// are filled band by band. A pixel has the same edges around it as ever.
void fill(QPainter &painter, const QImage *image, const QPainterPath &path, const QColor &color)
{
    if (!image || image->width() <= BAND_PIXELS) {
        painter.fillPath(path, color);
        return;
    }
    const std::vector<PathPart> parts = partsOf(path);
    for (int left = 0; left < image->width(); left += BAND_PIXELS) {
        const QRect band = QRect(left, 0, BAND_PIXELS, image->height()) & image->rect();
        painter.setClipRect(band);
        painter.fillPath(areasWithin(path, parts, band), color);
    }
    painter.setClipRect(image->rect());
}

double mercator(double latitude)
{
    return 0.5 - std::log(std::tan((90.0 + latitude) * std::numbers::pi / 360.0)) / (2.0 * std::numbers::pi);
}

double latitudeOf(double mercator)
{
    return 90.0 - 360.0 * std::atan(std::exp((mercator - 0.5) * 2.0 * std::numbers::pi)) / std::numbers::pi;
}

} // namespace

KelWorldMapPainter::KelWorldMapPainter(const KelWorldMapFrame &frame, double factor, const KelWorldMapColors &colors)
    : m_frame(frame)
    , m_factor(factor)
    , m_colors(colors)
    , m_clip(QRectF(QPointF(0, 0), frame.size)
                 .adjusted(-MARGIN * factor, -MARGIN * factor, MARGIN * factor, MARGIN * factor))
{
}

void KelWorldMapPainter::paint(QPainter &painter, const KelWorldMap &map) const
{
    const Paths paths = collect(map);
    const double factor = std::min(m_factor, std::max(1.0, m_frame.worldSize / LEAST_WORLD));
    const auto pen = [factor](const QColor &color, double width) {
        return QPen(color, width * factor, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    };
    QImage *image = plainImage(painter);
    if (image && QSizeF(image->size()) != m_frame.size)
        image = nullptr;
    painter.save();
    painter.setClipRect(QRectF(QPointF(0, 0), m_frame.size));
    painter.fillRect(QRectF(QPointF(0, 0), m_frame.size), m_colors.sea);
    painter.setRenderHint(QPainter::Antialiasing);
    stroke(painter, image, paths.coasts, pen(m_colors.shallows, SHALLOWS_WIDTH));
    fill(painter, image, paths.land, m_colors.land);
    stroke(painter, image, paths.borders, pen(m_colors.border, BORDER_WIDTH));
    stroke(painter, image, paths.coasts, pen(m_colors.coast, COAST_WIDTH));
    drawGraticule(painter);
    painter.restore();
}

KelWorldMapPainter::Paths KelWorldMapPainter::collect(const KelWorldMap &map) const
{
    Paths paths;
    // One path for all land: where a land was cut at the date line, both sides share the pixel exactly.
    paths.land.setFillRule(Qt::WindingFill);
    const int level = KelWorldMap::levelForScale(m_frame.pixelsPerDegree());
    const QPointF northWest = m_frame.toWorld(m_clip.topLeft());
    const QPointF southEast = m_frame.toWorld(m_clip.bottomRight());
    for (const KelWorldMap::Outline &outline : map.outlines()) {
        const bool polar = outline.kind == KelWorldMap::PolarLand;
        if (outline.level > level || outline.north > southEast.y() || (outline.south < northWest.y() && !polar))
            continue;
        const int first = static_cast<int>(std::ceil(northWest.x() - outline.east));
        const int last = static_cast<int>(std::floor(southEast.x() - outline.west));
        for (int shift = first; shift <= last; ++shift) {
            if (outline.kind == KelWorldMap::Border) {
                addLine(paths.borders, outline, level, shift);
                continue;
            }
            addArea(paths.land, outline, level, shift);
            addLine(paths.coasts, outline, level, shift);
        }
    }
    return paths;
}

void KelWorldMapPainter::addArea(QPainterPath &path, const KelWorldMap::Outline &outline, int level, double shift) const
{
    QList<QPointF> polygon;
    polygon.reserve(static_cast<qsizetype>(outline.vertices.size()) + 2);
    for (const KelWorldMap::Vertex &vertex : outline.vertices) {
        if (vertex.level <= level)
            polygon.append(m_frame.toPixel(vertex.x + shift, vertex.y));
    }
    if (outline.kind == KelWorldMap::PolarLand && !polygon.isEmpty()) {
        // Mercator never reaches the pole: below the picture is far enough.
        const double pole = std::max(m_clip.bottom(), m_frame.toPixel(0, outline.south).y()) + 1.0;
        polygon.append(QPointF(polygon.last().x(), pole));
        polygon.append(QPointF(polygon.first().x(), pole));
    }
    cutPolygon(polygon, m_clip);
    if (polygon.size() < 3)
        return;
    path.moveTo(polygon.first());
    QPointF last = polygon.first();
    for (const QPointF &point : std::as_const(polygon)) {
        if (squaredDistance(point, last) < THINNING * THINNING)
            continue;
        path.lineTo(point);
        last = point;
    }
    path.closeSubpath();
}

void KelWorldMapPainter::addLine(QPainterPath &path, const KelWorldMap::Outline &outline, int level, double shift) const
{
    const bool closed = outline.kind == KelWorldMap::Land || outline.kind == KelWorldMap::Hole;
    const KelWorldMap::Vertex *first = nullptr;
    const KelWorldMap::Vertex *previous = nullptr;
    QPointF last; // where the path ended
    bool drawing = false;
    const auto step = [&](const KelWorldMap::Vertex &vertex) {
        if (!previous) {
            first = previous = &vertex;
            return;
        }
        const QPointF from = m_frame.toPixel(previous->x + shift, previous->y);
        const QPointF to = m_frame.toPixel(vertex.x + shift, vertex.y);
        // Not a coast: here the source cut a land in two.
        const bool cut = previous->onDateLine && vertex.onDateLine && previous->x == vertex.x;
        const std::optional<QLineF> visible = cut ? std::nullopt : cutLine(QLineF(from, to), m_clip);
        previous = &vertex;
        if (!visible) {
            drawing = false;
            return;
        }
        if (!drawing || squaredDistance(last, visible->p1()) > 1.0) {
            path.moveTo(visible->p1());
            last = visible->p1();
        }
        drawing = true;
        if (squaredDistance(last, visible->p2()) >= THINNING * THINNING) {
            path.lineTo(visible->p2());
            last = visible->p2();
        }
    };
    for (const KelWorldMap::Vertex &vertex : outline.vertices) {
        if (vertex.level <= level)
            step(vertex);
    }
    if (closed && first)
        step(*first);
}

double KelWorldMapPainter::graticuleStep() const
{
    double result = STEPS[0];
    for (const double step : STEPS) {
        if (step * m_frame.pixelsPerDegree() >= GRATICULE_PIXELS * m_factor)
            result = step;
    }
    return result;
}

double KelWorldMapPainter::meridianStep() const
{
    const double step = graticuleStep();
    for (const double wide : {step, 60.0, 90.0}) {
        if (wide >= step && wide * m_frame.pixelsPerDegree() >= LABELLED_PIXELS * m_factor)
            return wide;
    }
    return 180.0;
}

QString KelWorldMapPainter::graticuleLabel(double degrees, double step, char positive, char negative)
{
    const auto seconds = std::llround(std::abs(degrees) * 3600.0);
    QString text = QString::number(seconds / 3600) + QChar(0x00b0);
    if (step < 1.0)
        text += QStringLiteral("%1").arg(seconds / 60 % 60, 2, 10, QLatin1Char('0')) + QChar(0x2032);
    if (step < 1.0 / 60)
        text += QStringLiteral("%1").arg(seconds % 60, 2, 10, QLatin1Char('0')) + QChar(0x2033);
    if (seconds != 0 && seconds != 180LL * 3600)
        text += QLatin1Char(degrees > 0 ? positive : negative);
    return text;
}

void KelWorldMapPainter::drawGraticule(QPainter &painter) const
{
    const double step = graticuleStep();
    const QPointF northWest = m_frame.toWorld(QPointF(0, 0));
    const QPointF southEast = m_frame.toWorld(QPointF(m_frame.size.width(), m_frame.size.height()));
    const double west = northWest.x() * 360.0 - 180.0;
    const double east = southEast.x() * 360.0 - 180.0;
    const double north = latitudeOf(northWest.y());
    const double south = latitudeOf(southEast.y());

    QFont font(QStringLiteral("DejaVu Sans"));
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(LABEL_PIXELS * m_factor))));
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const double gap = 4.0 * m_factor;
    const QPen line(m_colors.graticule, GRATICULE_WIDTH * m_factor);
    const QPen text(m_colors.label);

    const double meridians = meridianStep();
    for (double index = std::ceil(west / meridians); index * meridians <= east; index += 1.0) {
        const double degrees = index * meridians;
        const double x = m_frame.toPixel((degrees + 180.0) / 360.0, 0).x();
        painter.setPen(line);
        painter.drawLine(QPointF(x, 0), QPointF(x, m_frame.size.height()));
        const double longitude = degrees - 360.0 * std::floor((degrees + 180.0) / 360.0);
        const bool dateLine = std::abs(longitude + 180.0) < meridians / 2;
        const QString label = graticuleLabel(dateLine ? 180.0 : longitude, meridians, 'E', 'W');
        if (x + gap + metrics.horizontalAdvance(label) > m_frame.size.width())
            continue; // no half numbers at the edge
        painter.setPen(text);
        painter.drawText(QPointF(x + gap, LABEL_PIXELS * m_factor + gap), label);
    }
    for (double index = std::ceil(south / step); index * step <= north; index += 1.0) {
        if (std::abs(index * step) > 89.0)
            continue;
        const double y = m_frame.toPixel(0, mercator(index * step)).y();
        painter.setPen(line);
        painter.drawLine(QPointF(0, y), QPointF(m_frame.size.width(), y));
        if (y < 2.5 * LABEL_PIXELS * m_factor || y > m_frame.size.height() - OVERLAY_PIXELS * m_factor)
            continue; // there stand the longitudes and the scale bar
        painter.setPen(text);
        painter.drawText(QPointF(gap, y - gap), graticuleLabel(index * step, step, 'N', 'S'));
    }
}
