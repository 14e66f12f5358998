// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPathPainter.h"

#include "KelOutlineFiller.h"
#include "KelPixelOutline.h"

#include <KelConcurrent.h>
#include <KelIntRange.h>

#include <QBrush>
#include <QColor>
#include <QList>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <QPen>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QThread>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace
{

// Shorter paths are painted as a whole and in one thread.
constexpr int FEWEST_FOR_STRIPES = 250;

constexpr int STRIPES_PER_CORE = 2;
constexpr int LEAST_ROWS = 16;

// Pixels; more than rounding and the roundness of joins add to half a pen's width.
constexpr double MARGIN = 2.0;

// Segments before and behind those near a stripe. A join looks at the line before it, and where lines meet without a
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

// The path's points; nothing for paths of which parts might look different.
std::optional<Polyline> polylineOf(const QPainterPath &path)
{
    const int count = path.elementCount();
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

// ---- strokes --------------------------------------------------------------------------------------------------

using Segments = std::vector<int>;

// Sides of a box, clockwise.
enum Side { Top,
            Right,
            Bottom,
            Left };

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

// The parts of the whole path that come near a box, as a path that looks the same in there.
class PartialStroke
{
public:
    PartialStroke(const Polyline &polyline, const QRectF &box)
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
        return m_path;
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
    }

    const QPointF &point(int index) const { return m_polyline.points[static_cast<std::size_t>(index)]; }

    const Polyline &m_polyline;
    QRectF m_box;
    QPainterPath m_path;
    std::vector<Run> m_runs;
};

Segments segmentsNear(const QRectF &box, const Polyline &polyline)
{
    Segments result;
    for (const Subpath &subpath : polyline.subpaths) {
        for (int i = subpath.first; i < subpath.last; ++i) {
            const QPointF *points = polyline.points.data() + i;
            if (touches(points[0], points[1], box))
                result.push_back(i);
        }
    }
    return result;
}

// Plain pens of the kind the renderers make.
bool isRound(const QPen &pen)
{
    return pen.style() == Qt::SolidLine && pen.capStyle() == Qt::RoundCap && pen.joinStyle() == Qt::RoundJoin
        && !pen.isCosmetic() && pen.brush().style() == Qt::SolidPattern && pen.widthF() > THINNEST_PEN
        && pen.widthF() < THICKEST_PEN;
}

bool isNear(const QPainterPath &path, const QPointF &offset)
{
    const QRectF bounds = path.controlPointRect().translated(offset);
    return bounds.left() > -FARTHEST_COORDINATE && bounds.right() < FARTHEST_COORDINATE
        && bounds.top() > -FARTHEST_COORDINATE && bounds.bottom() < FARTHEST_COORDINATE;
}

// A path of nothing but single lines is painted as lines, not as an outline.
bool hasCorner(const QPainterPath &path)
{
    for (int i = 2; i < path.elementCount(); ++i) {
        if (path.elementAt(i - 1).isLineTo() && path.elementAt(i).isLineTo())
            return true;
    }
    return false;
}

// Stripes are painted in parallel and have whole rows.
QList<QRect> stripesOf(const QSize &size)
{
    const int most = std::max(1, size.height() / LEAST_ROWS);
    const int count = std::min(most, STRIPES_PER_CORE * QThread::idealThreadCount());
    QList<QRect> stripes;
    for (const KelIntRange &rows : KelIntRange(0, size.height() - 1).splitEvenly(count))
        stripes.append(QRect(QPoint(0, rows.min()), QPoint(size.width() - 1, rows.max())));
    return stripes;
}

} // namespace

KelPathPainter::KelPathPainter(QImage *image, QPainter::RenderHints hints)
    : m_bits(image->bits())
    , m_size(image->size())
    , m_bytesPerLine(image->bytesPerLine())
    , m_hints(hints)
{
}

bool KelPathPainter::stroke(const QPainterPath &path, const QPen &pen, const QPointF &offset)
{
    if (!isRound(pen) || !hasCorner(path) || !isNear(path, offset) || !KelOutlineFiller::paintsAsQPainter())
        return false;
    if (path.elementCount() < FEWEST_FOR_STRIPES) {
        const QRect whole(QPoint(), m_size);
        const KelPixelOutline outline(QPainterPathStroker(pen).createStroke(path), offset, whole);
        return fillStripes(
            {whole}, [&outline](const QRect &) -> const KelPixelOutline & { return outline; },
            pen.color(), Qt::WindingFill);
    }
    const std::optional<Polyline> polyline = polylineOf(path);
    if (!polyline)
        return false;
    const double reach = pen.widthF() / 2 + MARGIN;
    const auto outlineIn = [&](const QRect &stripe) {
        const QRectF box = grown(QRectF(stripe).translated(-offset), reach);
        const QPainterPath part = PartialStroke(*polyline, box).path(segmentsNear(box, *polyline));
        return KelPixelOutline(QPainterPathStroker(pen).createStroke(part), offset, stripe);
    };
    return fillStripes(stripesOf(m_size), outlineIn, pen.color(), Qt::WindingFill);
}

bool KelPathPainter::fill(const QPainterPath &path, const QBrush &brush, const QPointF &offset)
{
    if (brush.style() != Qt::SolidPattern || path.isEmpty() || !isNear(path, offset)
        || !KelOutlineFiller::paintsAsQPainter())
        return false;
    const QRect whole(QPoint(), m_size);
    const KelPixelOutline outline(path, offset, whole);
    return fillStripes(
        path.elementCount() < FEWEST_FOR_STRIPES ? QList<QRect>{whole} : stripesOf(m_size),
        [&outline](const QRect &) -> const KelPixelOutline & { return outline; }, brush.color(),
        path.fillRule());
}

template<typename OutlineIn>
bool KelPathPainter::fillStripes(const QList<QRect> &stripes, OutlineIn outlineIn, const QColor &color,
                                 Qt::FillRule rule)
{
    const auto smoothness =
        m_hints.testFlag(QPainter::Antialiasing) ? KelOutlineFiller::Antialiased : KelOutlineFiller::Aliased;
    const auto fillerOf = [&](const QRect &stripe) {
        return std::make_shared<const KelOutlineFiller>(outlineIn(stripe), stripe, m_size, smoothness);
    };
    // Nothing is painted before it is known that all of it can be.
    const auto fillers = KelConcurrent::blockingMapped(stripes, fillerOf);
    if (!std::all_of(fillers.begin(), fillers.end(), [](const auto &filler) { return filler->isExact(); }))
        return false;
    KelConcurrent::blockingMap(fillers,
                               [&](const auto &filler) { filler->paint(m_bits, m_bytesPerLine, color, rule); });
    return true;
}
