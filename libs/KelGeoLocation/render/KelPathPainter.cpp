// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPathPainter.h"

#include "KelDashedLine.h"
#include "KelPathCutter.h"
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
constexpr double PEN_MARGIN = 2.0;

// Segments before and behind those near a stripe. A join looks at the line before it, and where lines meet without a
// join at the one before that.
constexpr int CONTEXT = 2;

// Segments that two pieces have in common: in the middle the ends of neither piece count. Those around a seam have some
// more, as a choice where to cut.
constexpr int COMMON = 2 * CONTEXT + 1;
constexpr int SEAM_CONTEXT = COMMON + 4;

// The painter has ways of its own for pens up to a pixel.
constexpr double THINNEST_PEN = 1.01;
constexpr double THICKEST_PEN = 2000.0;

// Of rows and columns. Beyond, the right side of the image is no number of the aliased rasterizer any more.
constexpr int LARGEST_SIZE = 32767;

// Pixels. Memory for a stripe is some times that; only large images need more stripes for it.
constexpr qint64 LARGEST_STRIPE = 4'000'000;

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

// Consecutive segments of one subpath.
struct Run
{
    int first;
    int last;

    int count() const { return last - first + 1; }
};

using Runs = std::vector<Run>;

void addRun(Runs *runs, const Run &run)
{
    if (!runs->empty() && run.first <= runs->back().last + 1)
        runs->back().last = std::max(runs->back().last, run.last);
    else
        runs->push_back(run);
}

// The segments of a subpath that come near a box, with their context. Where the seam of a closed line comes near, they
// begin and end with the segments around it.
Runs runsNear(const QRectF &box, const std::vector<QPointF> &points, const Subpath &subpath)
{
    const int lastSegment = subpath.last - 1;
    const auto isNear = [&](int segment) {
        const QPointF *ends = points.data() + segment;
        return touches(ends[0], ends[1], box);
    };
    Runs runs;
    const bool seam = subpath.closed && (isNear(subpath.first) || isNear(lastSegment));
    if (seam)
        runs.push_back({subpath.first, std::min(subpath.first + SEAM_CONTEXT - 1, lastSegment)});
    for (int i = subpath.first; i <= lastSegment; ++i) {
        if (isNear(i))
            addRun(&runs, {std::max(i - CONTEXT, subpath.first), std::min(i + CONTEXT, lastSegment)});
    }
    if (seam)
        addRun(&runs, {std::max(lastSegment - SEAM_CONTEXT + 1, subpath.first), lastSegment});
    return runs;
}

// Far enough from each other not to be taken for one by any rounding.
bool areApart(const QPointF &a, const QPointF &b)
{
    return (a - b).manhattanLength() > 1e-3;
}

// Also where the path would leave the point out, because it is that before or nearly so: parts of dashes may be that short.
void addLine(QPainterPath *path, const QPointF &end)
{
    if (path->currentPosition() == end) {
        path->lineTo(end + QPointF(1, 0));
        path->setElementPositionAt(path->elementCount() - 1, end.x(), end.y());
    } else {
        path->lineTo(end);
    }
}

// Cuts the parts of lines that come near a box into pieces and calls take(path, sign) for each.
//
// Where a line is cut, the outlines of both pieces would show ends. So both have some segments in common, and the outline
// of these alone, which has the very same ends, is taken away again: what is left is the outline of the line that was
// never cut. In the same way a closed line is cut out around its seam, where Qt paints a join: it is closed by a detour
// right across, and the detour with the segments at its ends is taken away. Pieces must not end where they begin, because
// Qt would close them.
template<typename Take>
class StrokePieces
{
public:
    StrokePieces(const QRectF &box, int segmentsPerPiece, Take take)
        : m_box(box)
        , m_most(std::max(segmentsPerPiece, 2 * SEAM_CONTEXT))
        , m_take(std::move(take))
    {
    }

    void add(const std::vector<QPointF> &points, const Subpath &subpath)
    {
        m_points = points.data();
        Runs runs = runsNear(m_box, points, subpath);
        if (runs.empty())
            return;
        const Run whole{subpath.first, subpath.last - 1};
        const bool seam = subpath.closed && runs.front().first == whole.first && runs.back().last == whole.last;
        if (seam && (whole.count() <= m_most || !cutOutSeam(whole, &runs))) {
            addPath(&m_added, whole);
            return;
        }
        for (const Run &run : runs)
            addOpen(run);
    }

    // Most dashes are short and taken as they are.
    void addDash(const std::vector<QPointF> &points)
    {
        const Run whole{0, static_cast<int>(points.size()) - 2};
        const QPointF &first = points.front();
        const QPointF &last = points.back();
        if (whole.count() > m_most && !isNearlyEqual(first, last)) {
            add(points, {whole.first, whole.last + 1, first == last});
        } else {
            m_points = points.data();
            addPath(&m_added, whole);
        }
    }

    void finish()
    {
        pass(&m_added, KelOutlineFiller::Added);
        pass(&m_takenAway, KelOutlineFiller::TakenAway);
        m_count = 0;
    }

private:
    const QPointF &point(int index) const { return m_points[index]; }
    const QPointF &begin(const Run &run) const { return point(run.first); }
    const QPointF &end(const Run &run) const { return point(run.last + 1); }
    bool isOpen(const Run &run) const { return areApart(begin(run), end(run)); }

    void pass(QPainterPath *path, KelOutlineFiller::Sign sign)
    {
        if (!path->isEmpty())
            m_take(*path, sign);
        path->clear();
    }

    void lineAlong(QPainterPath *path, const Run &run)
    {
        for (int i = run.first; i <= run.last; ++i)
            addLine(path, point(i + 1));
        m_count += run.count();
    }

    void addPath(QPainterPath *path, const Run &run)
    {
        path->moveTo(begin(run));
        lineAlong(path, run);
        if (m_count >= m_most)
            finish();
    }

    void addDetour(QPainterPath *path, const Run &head, const Run &tail)
    {
        path->moveTo(begin(head));
        lineAlong(path, head);
        path->lineTo(begin(tail));
        lineAlong(path, tail);
    }

    void addOpen(const Run &run)
    {
        Run rest = run;
        while (rest.count() > m_most + COMMON) {
            const std::optional<Run> common = commonSegments(rest);
            if (!common)
                break;
            addPath(&m_added, {rest.first, common->last});
            addPath(&m_takenAway, *common);
            rest.first = common->first;
        }
        addPath(&m_added, rest);
    }

    // Of a first piece and the rest of a run. None in lines that come back to their beginning all the time.
    std::optional<Run> commonSegments(const Run &run) const
    {
        for (int last = run.first + m_most - 1; last < run.last; ++last) {
            const Run common{last - COMMON + 1, last};
            if (isOpen(common) && isOpen({run.first, last}) && isOpen({common.first, run.last}))
                return common;
        }
        return std::nullopt;
    }

    // Adds the seam and leaves open runs. False, and nothing is added, where that cannot be.
    bool cutOutSeam(const Run &whole, Runs *runs)
    {
        for (int more = 0; more < SEAM_CONTEXT - COMMON; ++more) {
            // The way beyond the seam up to the detour, and that from the detour back to the seam.
            const Run head{whole.first, whole.first + COMMON};
            const Run tail{whole.last - COMMON - more, whole.last};
            const Run headCommon{head.last - COMMON + 1, head.last};
            const Run tailCommon{tail.first, tail.first + COMMON - 1};
            Runs rest = *runs;
            rest.front().first = headCommon.first;
            rest.back().last = tailCommon.last;
            if (!areApart(end(head), begin(tail)) || !areApart(begin(headCommon), end(tailCommon))
                || !isOpen(rest.front()) || !isOpen(rest.back()))
                continue;
            addDetour(&m_added, head, tail);
            addDetour(&m_takenAway, headCommon, tailCommon);
            *runs = std::move(rest);
            return true;
        }
        return false;
    }

    const QRectF m_box;
    const int m_most;
    const QPointF *m_points = nullptr;
    Take m_take;
    QPainterPath m_added;
    QPainterPath m_takenAway;
    int m_count = 0;
};

// Plain pens of the kind the renderers make.
bool isRound(const QPen &pen)
{
    return pen.capStyle() == Qt::RoundCap && pen.joinStyle() == Qt::RoundJoin
        && !pen.isCosmetic() && pen.brush().style() == Qt::SolidPattern && pen.widthF() > THINNEST_PEN
        && pen.widthF() < THICKEST_PEN;
}

bool isNear(const QPainterPath &path, const QPointF &offset)
{
    const QRectF bounds = path.controlPointRect().translated(offset);
    return bounds.left() > -KelPathCutter::FARTHEST && bounds.right() < KelPathCutter::FARTHEST
        && bounds.top() > -KelPathCutter::FARTHEST && bounds.bottom() < KelPathCutter::FARTHEST;
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

QRect pixelsOf(const QPainterPath &path, const QPointF &offset, double margin)
{
    return grown(path.controlPointRect().translated(offset), margin).toAlignedRect();
}

} // namespace

KelPathPainter::KelPathPainter(QImage *image, QPainter::RenderHints hints, int segmentsPerPiece)
    : m_bits(image->bits())
    , m_size(image->size())
    , m_bytesPerLine(image->bytesPerLine())
    , m_smoothness(hints.testFlag(QPainter::Antialiasing) ? KelOutlineFiller::Antialiased : KelOutlineFiller::Aliased)
    , m_segmentsPerPiece(segmentsPerPiece)
{
}

bool KelPathPainter::isPaintable(const QPainterPath &path, const QPointF &offset) const
{
    return m_size.width() <= LARGEST_SIZE && m_size.height() <= LARGEST_SIZE && isNear(path, offset)
        && KelOutlineFiller::paintsAsQPainter();
}

// Stripes are painted in parallel and have whole rows.
QList<QRect> KelPathPainter::stripes() const
{
    const qint64 pixels = qint64(m_size.width()) * m_size.height();
    const int needed = static_cast<int>(pixels / LARGEST_STRIPE) + 1;
    const int wanted = std::max(needed, STRIPES_PER_CORE * QThread::idealThreadCount());
    const int most = std::max(1, m_size.height() / LEAST_ROWS);
    QList<QRect> result;
    for (const KelIntRange &rows : KelIntRange(0, m_size.height() - 1).splitEvenly(std::min(most, wanted)))
        result.append(QRect(QPoint(0, rows.min()), QPoint(m_size.width() - 1, rows.max())));
    return result;
}

// Many tracks have the same color.
QRgb KelPathPainter::premultiplied(const QColor &color)
{
    if (m_color != color.rgba64()) {
        m_premultiplied = KelOutlineFiller::premultiplied(color);
        m_color = color.rgba64();
    }
    return m_premultiplied;
}

bool KelPathPainter::stroke(const QPainterPath &path, const QPen &pen, const QPointF &offset)
{
    if (!isRound(pen) || !isPaintable(path, offset))
        return false;
    if (pen.style() != Qt::SolidLine)
        return strokeDashes(path, pen, offset);
    if (!hasCorner(path))
        return false;
    if (path.elementCount() < FEWEST_FOR_STRIPES) {
        const QRect whole(QPoint(), m_size);
        const KelPixelOutline outline(QPainterPathStroker(pen).createStroke(path), offset, whole);
        const auto fillerIn = [&](const QRect &stripe) {
            return std::make_shared<KelOutlineFiller>(outline, stripe, m_size, m_smoothness);
        };
        return fillStripes({whole}, fillerIn, pen.color(), Qt::WindingFill);
    }
    const std::optional<Polyline> polyline = polylineOf(path);
    if (!polyline)
        return false;
    const auto addTo = [&](auto *pieces, const QRectF &) {
        for (const Subpath &subpath : polyline->subpaths)
            pieces->add(polyline->points, subpath);
    };
    return strokePieces(stripes(), path, pen, offset, addTo);
}

bool KelPathPainter::strokeDashes(const QPainterPath &path, const QPen &pen, const QPointF &offset)
{
    if (!KelDashedLine::isPossible(pen, m_size) || !KelDashedLine::isPossible(path))
        return false;
    const QRect whole(QPoint(), m_size);
    const KelDashedLine dashes(path, pen, QRectF(whole).translated(-offset));
    QPen solid(pen);
    solid.setStyle(Qt::SolidLine);
    const auto addTo = [&](auto *pieces, const QRectF &box) {
        dashes.forEachDashIn(box, [&](const std::vector<QPointF> &points) { pieces->addDash(points); });
    };
    const bool areMany = dashes.hasMoreThan(FEWEST_FOR_STRIPES);
    return strokePieces(areMany ? stripes() : QList<QRect>{whole}, path, solid, offset, addTo);
}

template<typename AddTo>
bool KelPathPainter::strokePieces(const QList<QRect> &stripes, const QPainterPath &path, const QPen &pen,
                                  const QPointF &offset, AddTo addTo)
{
    const double reach = pen.widthF() / 2 + PEN_MARGIN;
    const QRect pixels = pixelsOf(path, offset, reach);
    const auto fillerIn = [&](const QRect &stripe) {
        const QRect part = stripe & pixels;
        auto filler = std::make_shared<KelOutlineFiller>(part, m_size, m_smoothness, KelOutlineFiller::Many);
        if (part.isEmpty())
            return filler;
        const QPainterPathStroker stroker(pen);
        const auto take = [&](const QPainterPath &piece, KelOutlineFiller::Sign sign) {
            filler->add(KelPixelOutline(stroker.createStroke(piece), offset, stripe), sign);
        };
        const QRectF box = grown(QRectF(stripe).translated(-offset), reach);
        StrokePieces pieces(box, m_segmentsPerPiece, take);
        addTo(&pieces, box);
        pieces.finish();
        return filler;
    };
    return fillStripes(stripes, fillerIn, pen.color(), Qt::WindingFill);
}

bool KelPathPainter::fill(const QPainterPath &path, const QBrush &brush, const QPointF &offset)
{
    if (brush.style() != Qt::SolidPattern || path.isEmpty() || !isPaintable(path, offset))
        return false;
    const QRect whole(QPoint(), m_size);
    const KelPixelOutline outline(path, offset, whole);
    const auto fillerIn = [&](const QRect &stripe) {
        return std::make_shared<KelOutlineFiller>(outline, stripe, m_size, m_smoothness);
    };
    return fillStripes(path.elementCount() < FEWEST_FOR_STRIPES ? QList<QRect>{whole} : stripes(), fillerIn, brush.color(),
                       path.fillRule());
}

template<typename FillerIn>
bool KelPathPainter::fillStripes(const QList<QRect> &stripes, FillerIn fillerIn, const QColor &color, Qt::FillRule rule)
{
    const QRgb pixel = premultiplied(color);
    if (m_smoothness == KelOutlineFiller::Antialiased) {
        KelConcurrent::blockingMap(
            stripes, [&](const QRect &stripe) { fillerIn(stripe)->paint(m_bits, m_bytesPerLine, pixel, rule); });
        return true;
    }
    // Nothing is painted before it is known that all of it can be.
    const auto fillers = KelConcurrent::blockingMapped(stripes, fillerIn);
    if (!std::all_of(fillers.begin(), fillers.end(), [](const auto &filler) { return filler->isExact(); }))
        return false;
    KelConcurrent::blockingMap(fillers,
                               [&](const auto &filler) { filler->paint(m_bits, m_bytesPerLine, pixel, rule); });
    return true;
}
