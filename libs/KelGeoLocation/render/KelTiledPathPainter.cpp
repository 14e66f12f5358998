// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTiledPathPainter.h"

#include <KelConcurrent.h>
#include <KelIntRange.h>

#include <QBrush>
#include <QList>
#include <QPainterPath>
#include <QPen>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QThread>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace
{

// Shorter paths are painted at once.
constexpr int FEWEST_ELEMENTS = 200;

// Tiles with no more than so many segments, or narrower than so many pixels, are not divided further.
constexpr std::size_t FEW_SEGMENTS = 24;
constexpr int SMALLEST_TILE = 24;

// Two halves that together have more than so many times the work of the whole are not worth it: segments are long and
// lie in both.
constexpr double WORTH_DIVIDING = 1.6;

// An area is painted in a reduced form when that has so much less points.
constexpr double WORTH_REDUCING = 0.75;

constexpr int STRIPES_PER_CORE = 4;

// Pixels; more than rounding and the roundness of joins add to half a pen's width.
constexpr double MARGIN = 2.0;

// Segments before and behind those near a tile. A join looks at the line before it, and where lines meet without a
// join at the one before that.
constexpr int CONTEXT = 2;

// Half of where the rasterizer begins to cut paths, which moves their edges; it is nearer where pointers are short.
constexpr double FARTHEST_COORDINATE = sizeof(void *) == 8 ? 4.0e6 : 1.6e4;

// The painter has ways of its own for pens up to a pixel.
constexpr double THINNEST_PEN = 1.01;
constexpr double THICKEST_PEN = 2000.0;

struct Subpath
{
    int first;
    int last;
    bool closed;
};

struct Polyline
{
    std::vector<QPointF> points;
    std::vector<Subpath> subpaths;
};

// Points that the painter takes for equal without being so: what becomes of them depends on the order of things.
bool isNearlyEqual(const QPointF &a, const QPointF &b)
{
    return a == b && (a.x() != b.x() || a.y() != b.y());
}

// False where it is not clear whether the line returns to its beginning.
bool endSubpath(Polyline *polyline, int first)
{
    if (first < 0)
        return true;
    const int last = static_cast<int>(polyline->points.size()) - 1;
    if (first == last) {
        polyline->points.pop_back();
        return true;
    }
    const QPointF &begin = polyline->points[static_cast<std::size_t>(first)];
    const QPointF &end = polyline->points.back();
    polyline->subpaths.push_back({first, last, begin == end});
    return !isNearlyEqual(begin, end);
}

// The path's points; nothing for paths that tiles cannot repeat.
std::optional<Polyline> polylineOf(const QPainterPath &path, const QPointF &offset)
{
    const int count = path.elementCount();
    if (count < FEWEST_ELEMENTS)
        return std::nullopt;
    const QRectF bounds = path.controlPointRect().translated(offset);
    if (!(bounds.left() > -FARTHEST_COORDINATE && bounds.right() < FARTHEST_COORDINATE
          && bounds.top() > -FARTHEST_COORDINATE && bounds.bottom() < FARTHEST_COORDINATE))
        return std::nullopt;

    Polyline polyline;
    polyline.points.reserve(static_cast<std::size_t>(count));
    int first = -1;
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element &element = path.elementAt(i);
        const QPointF point = element;
        if (element.isMoveTo()) {
            if (!endSubpath(&polyline, first))
                return std::nullopt;
            first = static_cast<int>(polyline.points.size());
        } else if (!element.isLineTo()) {
            return std::nullopt;
        } else {
            const QPointF &previous = polyline.points.back();
            if (isNearlyEqual(point, previous))
                return std::nullopt;
            if (point == previous)
                continue;
        }
        polyline.points.push_back(point);
    }
    if (!endSubpath(&polyline, first))
        return std::nullopt;
    return polyline;
}

QRectF grown(const QRectF &rect, double margin)
{
    return rect.adjusted(-margin, -margin, margin, margin);
}

// Whether the segment comes into the box; boxes are larger than need be, so rounding does not matter.
bool touches(const QPointF &a, const QPointF &b, const QRectF &box)
{
    const double left = box.left();
    const double right = box.right();
    const double top = box.top();
    const double bottom = box.bottom();
    if ((a.x() < left && b.x() < left) || (a.x() > right && b.x() > right) || (a.y() < top && b.y() < top)
        || (a.y() > bottom && b.y() > bottom))
        return false;
    const double dx = b.x() - a.x();
    const double dy = b.y() - a.y();
    const double distance = dx * ((top + bottom) / 2 - a.y()) - dy * ((left + right) / 2 - a.x());
    return std::abs(distance) <= ((right - left) * std::abs(dy) + (bottom - top) * std::abs(dx)) / 2;
}

std::pair<QRect, QRect> halves(const QRect &tile)
{
    QRect first = tile;
    QRect second = tile;
    if (tile.width() > tile.height()) {
        first.setWidth(tile.width() / 2);
        second.setLeft(first.right() + 1);
    } else {
        first.setHeight(tile.height() / 2);
        second.setTop(first.bottom() + 1);
    }
    return {first, second};
}

bool isSmall(const QRect &tile)
{
    return std::max(tile.width(), tile.height()) < 2 * SMALLEST_TILE;
}

bool isWorthDividing(std::size_t whole, std::size_t first, std::size_t second)
{
    return static_cast<double>(first + second) <= WORTH_DIVIDING * static_cast<double>(whole);
}

bool isWorthReducing(std::size_t whole, std::size_t part)
{
    return static_cast<double>(part) <= WORTH_REDUCING * static_cast<double>(whole);
}

// A painter for the tiles of one stripe of the image.
class TilePainter
{
public:
    TilePainter(QImage image, QPainter::RenderHints hints, const QPointF &offset)
        : m_image(std::move(image))
        , m_painter(&m_image)
        , m_offset(offset)
    {
        m_painter.setRenderHints(hints);
    }

    // The area of a tile, in the coordinates of the path.
    QRectF inPath(const QRect &tile) const { return QRectF(tile).translated(-m_offset); }

    QPainter &clippedTo(const QRect &tile)
    {
        m_painter.resetTransform();
        m_painter.setClipRect(tile);
        m_painter.translate(m_offset);
        return m_painter;
    }

private:
    QImage m_image;
    QPainter m_painter;
    QPointF m_offset;
};

// ---- strokes --------------------------------------------------------------------------------------------------

using Segments = std::vector<int>;

// Sides of a box, clockwise.
enum Side { Top, Right, Bottom, Left };

Side sideOf(const QPointF &outside, const QRectF &box)
{
    if (outside.y() < box.top())
        return Top;
    if (outside.x() > box.right())
        return Right;
    return outside.y() > box.bottom() ? Bottom : Left;
}

QPointF onSide(const QPointF &point, Side side, const QRectF &box)
{
    const double x = std::clamp(point.x(), box.left(), box.right());
    const double y = std::clamp(point.y(), box.top(), box.bottom());
    switch (side) {
    case Top:
        return QPointF(x, box.top());
    case Right:
        return QPointF(box.right(), y);
    case Bottom:
        return QPointF(x, box.bottom());
    case Left:
        break;
    }
    return QPointF(box.left(), y);
}

QPointF cornerBehind(Side side, const QRectF &box)
{
    switch (side) {
    case Top:
        return box.topRight();
    case Right:
        return box.bottomRight();
    case Bottom:
        return box.bottomLeft();
    case Left:
        break;
    }
    return box.topLeft();
}

// Goes from the path's end, outside of the box, around the box to another point outside.
void lineAround(QPainterPath *path, const QPointF &to, const QRectF &box)
{
    const QPointF from = path->currentPosition();
    const QRectF way = grown(box, MARGIN);
    const Side last = sideOf(to, box);
    Side side = sideOf(from, box);
    path->lineTo(onSide(from, side, way));
    while (side != last) {
        path->lineTo(cornerBehind(side, way));
        side = static_cast<Side>((side + 1) % 4);
    }
    path->lineTo(onSide(to, last, way));
    path->lineTo(to);
}

// The parts of the whole path that come near one tile, as a path that looks the same in there.
class TileStroke
{
public:
    TileStroke(const Polyline &polyline, const QRectF &box)
        : m_polyline(polyline)
        , m_box(box)
    {
    }

    QPainterPath path(const Segments &segments)
    {
        auto segment = segments.begin();
        for (const Subpath &subpath : m_polyline.subpaths) {
            if (segment == segments.end())
                break;
            const auto end = std::lower_bound(segment, segments.end(), subpath.last);
            if (segment != end)
                addSubpath(subpath, segment, end);
            segment = end;
        }
        if (!m_hasCorner)
            addUnseenCorner();
        return std::move(m_path);
    }

private:
    // First and last segment.
    struct Run
    {
        int first;
        int last;
    };

    void addSubpath(const Subpath &subpath, Segments::const_iterator begin, Segments::const_iterator end)
    {
        const int lastSegment = subpath.last - 1;
        m_runs.clear();
        const bool seam = subpath.closed && (*begin == subpath.first || *(end - 1) == lastSegment);
        if (seam)
            m_runs.push_back({subpath.first, std::min(subpath.first + CONTEXT - 1, lastSegment)});
        for (; begin != end; ++begin)
            addRun({std::max(*begin - CONTEXT, subpath.first), std::min(*begin + CONTEXT, lastSegment)});
        if (seam)
            addRun({std::max(lastSegment - CONTEXT + 1, subpath.first), lastSegment});

        // The seam of a closed line is painted with a join there, and between the same two lines. So the line stays
        // closed, with a detour in place of its other parts.
        const bool detour = seam && m_runs.size() > 1;
        for (std::size_t i = detour ? 1 : 0; i + (detour ? 1 : 0) < m_runs.size(); ++i)
            moveAlong(m_runs[i]);
        if (detour) {
            moveAlong(m_runs.front());
            lineAround(&m_path, point(m_runs.back().first), m_box);
            lineAlong(m_runs.back());
        }
    }

    void addRun(const Run &run)
    {
        if (!m_runs.empty() && run.first <= m_runs.back().last + 1)
            m_runs.back().last = std::max(m_runs.back().last, run.last);
        else
            m_runs.push_back(run);
    }

    void moveAlong(const Run &run)
    {
        m_path.moveTo(point(run.first));
        lineAlong(run);
    }

    void lineAlong(const Run &run)
    {
        for (int i = run.first; i <= run.last; ++i)
            m_path.lineTo(point(i + 1));
        m_hasCorner = m_hasCorner || run.last > run.first;
    }

    // The painter treats paths of nothing but single lines as lines.
    void addUnseenCorner()
    {
        const QPointF corner = m_box.topLeft() - QPointF(MARGIN, MARGIN);
        m_path.moveTo(corner);
        m_path.lineTo(corner - QPointF(MARGIN, 0));
        m_path.lineTo(corner - QPointF(MARGIN, MARGIN));
    }

    const QPointF &point(int index) const { return m_polyline.points[static_cast<std::size_t>(index)]; }

    const Polyline &m_polyline;
    QRectF m_box;
    QPainterPath m_path;
    std::vector<Run> m_runs;
    bool m_hasCorner = false;
};

class StrokeTiles
{
public:
    StrokeTiles(const Polyline &polyline, const QPen &pen, TilePainter *painter)
        : m_polyline(polyline)
        , m_pen(pen)
        , m_reach(pen.widthF() / 2 + MARGIN)
        , m_painter(painter)
    {
    }

    Segments near(const QRect &tile, const Segments &candidates) const
    {
        const QRectF box = reached(tile);
        Segments result;
        result.reserve(candidates.size());
        for (const int segment : candidates) {
            const QPointF *points = m_polyline.points.data() + segment;
            if (touches(points[0], points[1], box))
                result.push_back(segment);
        }
        return result;
    }

    void paint(const QRect &tile, const Segments &segments)
    {
        if (segments.empty())
            return;
        if (segments.size() > FEW_SEGMENTS && !isSmall(tile)) {
            const auto [first, second] = halves(tile);
            const Segments inFirst = near(first, segments);
            const Segments inSecond = near(second, segments);
            if (isWorthDividing(segments.size(), inFirst.size(), inSecond.size())) {
                paint(first, inFirst);
                paint(second, inSecond);
                return;
            }
        }
        m_painter->clippedTo(tile).strokePath(TileStroke(m_polyline, reached(tile)).path(segments), m_pen);
    }

private:
    QRectF reached(const QRect &tile) const { return grown(m_painter->inPath(tile), m_reach); }

    const Polyline &m_polyline;
    QPen m_pen;
    double m_reach;
    TilePainter *m_painter;
};

Segments allSegments(const Polyline &polyline)
{
    Segments segments;
    segments.reserve(polyline.points.size());
    for (const Subpath &subpath : polyline.subpaths) {
        for (int i = subpath.first; i < subpath.last; ++i)
            segments.push_back(i);
    }
    return segments;
}

// Plain pens of the kind the renderers make.
bool isRound(const QPen &pen)
{
    return pen.style() == Qt::SolidLine && pen.capStyle() == Qt::RoundCap && pen.joinStyle() == Qt::RoundJoin
        && !pen.isCosmetic() && pen.brush().style() == Qt::SolidPattern && pen.widthF() > THINNEST_PEN
        && pen.widthF() < THICKEST_PEN;
}

// A path of nothing but single lines is painted as lines, not as an outline.
bool hasCorner(const Polyline &polyline)
{
    return std::any_of(polyline.subpaths.begin(), polyline.subpaths.end(),
                       [](const Subpath &subpath) { return subpath.last - subpath.first > 1; });
}

// ---- areas ----------------------------------------------------------------------------------------------------

enum Outside { ToTheLeft = 1, ToTheRight = 2, Above = 4, Below = 8 };

int outside(const QPointF &point, const QRectF &box)
{
    return (point.x() < box.left() ? ToTheLeft : 0) | (point.x() > box.right() ? ToTheRight : 0)
        | (point.y() < box.top() ? Above : 0) | (point.y() > box.bottom() ? Below : 0);
}

// Painter paths leave out a point that is nearly the one before, so there must be another one between the two.
void appendPoint(Polyline *polyline, const QPointF *point)
{
    if (isNearlyEqual(*point, polyline->points.back()))
        polyline->points.push_back(point[-1]);
    polyline->points.push_back(*point);
}

// Appends one ring without the details that the image does not show: a part of it that stays on one side of the box is as
// good as a straight line between its ends. A ring that does so as a whole is nothing.
void appendReduced(Polyline *reduced, const QPointF *begin, const QPointF *end, const QRectF &box)
{
    std::vector<QPointF> &points = reduced->points;
    const std::size_t first = points.size();
    // All from the last point taken up to the candidate lie on the common sides.
    points.push_back(*begin);
    const QPointF *candidate = begin;
    int common = outside(*begin, box);
    for (const QPointF *point = begin + 1; point != end; ++point) {
        const int code = outside(*point, box);
        if ((common & code) != 0) {
            common &= code;
        } else {
            if (candidate != begin)
                appendPoint(reduced, candidate);
            common = outside(*candidate, box) & code;
        }
        candidate = point;
    }
    appendPoint(reduced, candidate);
    if (points.size() - first < 3) {
        points.resize(first);
        return;
    }
    reduced->subpaths.push_back({static_cast<int>(first), static_cast<int>(points.size()) - 1, true});
}

Polyline reduced(const Polyline &rings, const QRectF &box)
{
    Polyline result;
    for (const Subpath &ring : rings.subpaths)
        appendReduced(&result, rings.points.data() + ring.first, rings.points.data() + ring.last + 1, box);
    return result;
}

QPainterPath pathOf(const Polyline &polyline, Qt::FillRule rule)
{
    QPainterPath result;
    result.reserve(static_cast<int>(polyline.points.size()));
    result.setFillRule(rule);
    for (const Subpath &subpath : polyline.subpaths) {
        const QPointF *points = polyline.points.data();
        result.moveTo(points[subpath.first]);
        for (int i = subpath.first + 1; i <= subpath.last; ++i)
            result.lineTo(points[i]);
    }
    return result;
}

// Ends every ring where it began.
Polyline closed(const Polyline &polyline)
{
    Polyline result;
    result.points.reserve(polyline.points.size() + polyline.subpaths.size());
    for (const Subpath &subpath : polyline.subpaths) {
        const int first = static_cast<int>(result.points.size());
        result.points.insert(result.points.end(), polyline.points.begin() + subpath.first,
                             polyline.points.begin() + subpath.last + 1);
        if (!subpath.closed)
            result.points.push_back(polyline.points[static_cast<std::size_t>(subpath.first)]);
        result.subpaths.push_back({first, static_cast<int>(result.points.size()) - 1, true});
    }
    return result;
}

// Stripes are painted in parallel and have whole rows.
QList<QRect> stripesOf(const QSize &size)
{
    const int most = std::max(1, size.height() / (2 * SMALLEST_TILE));
    const int count = std::min(most, STRIPES_PER_CORE * QThread::idealThreadCount());
    QList<QRect> stripes;
    for (const KelIntRange &rows : KelIntRange(0, size.height() - 1).splitEvenly(count))
        stripes.append(QRect(QPoint(0, rows.min()), QPoint(size.width() - 1, rows.max())));
    return stripes;
}

} // namespace

KelTiledPathPainter::KelTiledPathPainter(QImage *image, QPainter::RenderHints hints)
    : m_bits(image->bits())
    , m_size(image->size())
    , m_bytesPerLine(image->bytesPerLine())
    , m_format(image->format())
    , m_hints(hints)
{
}

bool KelTiledPathPainter::stroke(const QPainterPath &path, const QPen &pen, const QPointF &offset)
{
    if (!isRound(pen))
        return false;
    const std::optional<Polyline> polyline = polylineOf(path, offset);
    if (!polyline || !hasCorner(*polyline))
        return false;

    const Segments segments = allSegments(*polyline);
    KelConcurrent::blockingMap(stripesOf(m_size), [&](const QRect &stripe) {
        TilePainter painter(image(), m_hints, offset);
        StrokeTiles tiles(*polyline, pen, &painter);
        tiles.paint(stripe, tiles.near(stripe, segments));
    });
    return true;
}

bool KelTiledPathPainter::fill(const QPainterPath &path, const QBrush &brush, const QPointF &offset)
{
    if (brush.style() != Qt::SolidPattern)
        return false;
    const std::optional<Polyline> polyline = polylineOf(path, offset);
    if (!polyline)
        return false;

    const Polyline rings = closed(*polyline);
    TilePainter painter(image(), m_hints, offset);
    const QRect whole(QPoint(), m_size);
    const Polyline seen = reduced(rings, grown(painter.inPath(whole), MARGIN));
    if (!isWorthReducing(rings.points.size(), seen.points.size()))
        return false;
    painter.clippedTo(whole).fillPath(pathOf(seen, path.fillRule()), brush);
    return true;
}

QImage KelTiledPathPainter::image() const
{
    return QImage(m_bits, m_size.width(), m_size.height(), m_bytesPerLine, m_format);
}
