// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPathCutter.h"

#include <QLineF>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPointF>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

namespace
{

using Points = std::vector<QPointF>;

QRectF enlarged(const QRectF &rect, double margin)
{
    return rect.adjusted(-margin, -margin, margin, margin);
}

// Coordinates of 1e100 leave nothing but rounding of what is computed from them.
QPointF bounded(const QPointF &point, const QRectF &rect)
{
    return QPointF(std::clamp(point.x(), rect.left(), rect.right()), std::clamp(point.y(), rect.top(), rect.bottom()));
}

bool hasCurves(const QPainterPath &path)
{
    for (int i = 0; i < path.elementCount(); ++i) {
        if (path.elementAt(i).isCurveTo())
            return true;
    }
    return false;
}

// Calls take(points) for each subpath.
template <typename Take>
void forEachSubpath(const QPainterPath &path, Take take)
{
    Points points;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo() && !points.empty()) {
            take(points);
            points.clear();
        }
        points.push_back(element);
    }
    if (!points.empty())
        take(points);
}

bool hasCorner(const Points &line)
{
    return line.size() > 2;
}

void add(QPainterPath *path, const Points &points)
{
    path->moveTo(points.front());
    for (std::size_t i = 1; i < points.size(); ++i)
        path->lineTo(points[i]);
}

// ---- lines ----------------------------------------------------------------------------------------------------

// Where along a segment (from 0 to 1) a rectangle is entered and left.
struct Passage
{
    double entry = 0.0;
    double exit = 1.0;
};

// Narrows the passage to where position + part * way is between the limits.
bool narrow(Passage *passage, double position, double way, double least, double most)
{
    if (way == 0.0)
        return position >= least && position <= most;
    const auto [first, last] = std::minmax({(least - position) / way, (most - position) / way});
    passage->entry = std::max(passage->entry, first);
    passage->exit = std::min(passage->exit, last);
    return passage->entry <= passage->exit;
}

std::optional<Passage> passageThrough(const QRectF &rect, const QPointF &a, const QPointF &b)
{
    Passage passage;
    if (!narrow(&passage, a.x(), b.x() - a.x(), rect.left(), rect.right())
        || !narrow(&passage, a.y(), b.y() - a.y(), rect.top(), rect.bottom()))
        return std::nullopt;
    return passage;
}

// A part of a line, and how far from the line's beginning it begins and ends.
struct Part
{
    Points points;
    double start;
    double end;
};

using Parts = std::vector<Part>;

// The parts of a line that lie in the rectangle. Points in it stay as they are.
Parts partsOfLine(const Points &line, const QRectF &rect)
{
    Parts parts;
    if (line.size() == 1 && rect.contains(line.front()))
        parts.push_back({line, 0.0, 0.0});
    bool goesOn = false;
    double length = 0.0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const QPointF &a = line[i - 1];
        const QPointF &b = line[i];
        const double start = length;
        const double step = QLineF(a, b).length();
        length += step;
        const std::optional<Passage> passage = passageThrough(rect, a, b);
        if (!passage) {
            goesOn = false;
            continue;
        }
        if (!goesOn) {
            const QPointF entry = passage->entry > 0.0 ? bounded(a + (b - a) * passage->entry, rect) : a;
            parts.push_back({{entry}, start + step * passage->entry, 0.0});
        }
        goesOn = passage->exit >= 1.0;
        parts.back().points.push_back(goesOn ? b : bounded(a + (b - a) * passage->exit, rect));
        parts.back().end = start + step * passage->exit;
    }
    return parts;
}

// A closed line has a join where it begins.
void joinAtTheSeam(Parts *parts, const Points &line)
{
    if (parts->size() < 2)
        return;
    const QPointF seam = line.front();
    const Points &first = parts->front().points;
    Points &last = parts->back().points;
    if (seam != line.back() || first.front() != seam || last.back() != seam)
        return;
    last.insert(last.end(), first.begin() + 1, first.end());
    parts->erase(parts->begin());
}

// ---- dashed lines ---------------------------------------------------------------------------------------------

// Clockwise.
enum Side {
    Top,
    Right,
    Bottom,
    Left
};

Side sideOf(const QPointF &point, const QRectF &rect)
{
    const double distances[] = {point.y() - rect.top(), rect.right() - point.x(), rect.bottom() - point.y(),
                                point.x() - rect.left()};
    return static_cast<Side>(std::min_element(std::begin(distances), std::end(distances)) - std::begin(distances));
}

QPointF outward(Side side, double distance)
{
    switch (side) {
    case Top:
        return QPointF(0, -distance);
    case Right:
        return QPointF(distance, 0);
    case Bottom:
        return QPointF(0, distance);
    case Left:
        break;
    }
    return QPointF(-distance, 0);
}

// Where the side ends, clockwise.
QPointF cornerAfter(Side side, const QRectF &rect)
{
    const QPointF corners[] = {rect.topRight(), rect.bottomRight(), rect.bottomLeft(), rect.topLeft()};
    return corners[side];
}

// What is left of a length after whole periods.
double remainder(double length, double period)
{
    const double rest = std::fmod(length, period);
    return rest < 0.0 ? rest + period : rest;
}

double lengthOf(const Points &line)
{
    double length = 0.0;
    for (std::size_t i = 1; i < line.size(); ++i)
        length += QLineF(line[i - 1], line[i]).length();
    return length;
}

// Goes on from a line's last point, at the border, along the border to another point of it, on a way as long as the given one
// but for whole periods.
void addDetour(Points *line, const QPointF &to, double length, double period, const QRectF &rect)
{
    const QPointF from = line->back();
    Points border = {from};
    const Side last = sideOf(to, rect);
    Side side = sideOf(from, rect);
    for (; side != last; side = static_cast<Side>((side + 1) % 4))
        border.push_back(cornerAfter(side, rect));
    border.push_back(to);
    const double spur = remainder(length - lengthOf(border), period);
    line->push_back(from + outward(sideOf(from, rect), spur / 2));
    line->insert(line->end(), border.begin(), border.end());
}

// The parts of a line as one, as long between them as it was but for whole periods.
Points joined(const Parts &parts, double period, const QRectF &rect)
{
    Points line;
    double end = 0.0;
    for (const Part &part : parts) {
        const QPointF &begin = part.points.front();
        if (!line.empty())
            addDetour(&line, begin, part.start - end, period, rect);
        else if (part.start > 0.0)
            line = {begin + outward(sideOf(begin, rect), remainder(part.start, period)), begin};
        else
            line = {begin};
        line.insert(line.end(), part.points.begin() + 1, part.points.end());
        end = part.end;
    }
    return line;
}

// ---- areas ----------------------------------------------------------------------------------------------------

using Coordinate = double (*)(const QPointF &);

// What is left of a polygon on one side of a line along an axis. Where the polygon leaves that side it goes along the line.
Points partOfPolygon(const Points &polygon, Coordinate coordinate, double limit, bool above)
{
    const auto isKept = [&](const QPointF &point) {
        return above ? coordinate(point) >= limit : coordinate(point) <= limit;
    };
    Points part;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const QPointF &a = polygon[i == 0 ? polygon.size() - 1 : i - 1];
        const QPointF &b = polygon[i];
        if (isKept(a) != isKept(b))
            part.push_back(a + (b - a) * ((limit - coordinate(a)) / (coordinate(b) - coordinate(a))));
        if (isKept(b))
            part.push_back(b);
    }
    return part;
}

Points partOfPolygon(const Points &polygon, const QRectF &rect)
{
    const Coordinate x = [](const QPointF &point) { return point.x(); };
    const Coordinate y = [](const QPointF &point) { return point.y(); };
    Points part = partOfPolygon(polygon, x, rect.left(), true);
    part = partOfPolygon(part, x, rect.right(), false);
    part = partOfPolygon(part, y, rect.top(), true);
    part = partOfPolygon(part, y, rect.bottom(), false);
    for (QPointF &point : part)
        point = bounded(point, rect);
    return part;
}

} // namespace

KelPathCutter::KelPathCutter(const QPainter *painter, double reach, double farthest)
{
    const QPaintDevice *device = painter->device();
    const QPaintEngine *engine = painter->paintEngine();
    bool invertible = false;
    const QTransform toDevice = painter->deviceTransform();
    const QTransform fromDevice = toDevice.inverted(&invertible);
    if (!device || !engine || engine->type() != QPaintEngine::Raster || !toDevice.isAffine() || !invertible)
        return;
    const double ratio = device->devicePixelRatioF();
    const QRectF picture(0, 0, device->width() * ratio, device->height() * ratio);
    const QRectF bearable(-farthest, -farthest, 2 * farthest, 2 * farthest);
    const QRectF kept = enlarged(fromDevice.mapRect(enlarged(picture, KEPT)), reach);
    // Nothing would be gained from pens that are so wide.
    if (!bearable.contains(toDevice.mapRect(kept)))
        return;
    m_bearable = fromDevice.mapRect(bearable);
    m_kept = kept;
}

bool KelPathCutter::isToBeCut(const QPainterPath &path) const
{
    return !m_bearable.isNull() && !path.isEmpty() && !m_bearable.contains(path.controlPointRect()) && !hasCurves(path);
}

QPainterPath KelPathCutter::line(const QPainterPath &path) const
{
    if (!isToBeCut(path))
        return path;
    QPainterPath result;
    bool hadCorner = false;
    forEachSubpath(path, [&](const Points &line) {
        Parts parts = partsOfLine(line, m_kept);
        joinAtTheSeam(&parts, line);
        for (const Part &part : parts)
            add(&result, part.points);
        hadCorner = hadCorner || hasCorner(line);
    });
    // A painter paints nothing but single lines one over the other: a corner where nobody sees it keeps them one outline.
    if (hadCorner)
        add(&result, {m_kept.topLeft(), m_kept.topLeft() + QPointF(1, 0), m_kept.topLeft() + QPointF(1, 1)});
    return result;
}

QPainterPath KelPathCutter::dashedLine(const QPainterPath &path, double period) const
{
    if (!isToBeCut(path) || !(period > 0.0))
        return path;
    QPainterPath result;
    forEachSubpath(path, [&](const Points &line) {
        const Points cut = joined(partsOfLine(line, m_kept), period, m_kept);
        if (!cut.empty())
            add(&result, cut);
    });
    return result;
}

QPainterPath KelPathCutter::area(const QPainterPath &path) const
{
    if (!isToBeCut(path))
        return path;
    QPainterPath result;
    result.setFillRule(path.fillRule());
    forEachSubpath(path, [&](const Points &polygon) {
        const Points part = partOfPolygon(polygon, m_kept);
        if (!part.empty())
            add(&result, part);
    });
    return result;
}
