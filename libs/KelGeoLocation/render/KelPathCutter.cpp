// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPathCutter.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPointF>
#include <QTransform>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace
{

// What is kept around the picture. Less would turn the edges of lines that are cut, more would be slow again.
double keptOf(double farthest)
{
    return farthest < KelPathCutter::FARTHEST ? farthest / 8 : farthest / 128;
}

using Points = std::vector<QPointF>;

QRectF grown(const QRectF &rect, double margin)
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

// The parts of a line that lie in the rectangle. Points in it stay as they are.
std::vector<Points> partsOfLine(const Points &line, const QRectF &rect)
{
    std::vector<Points> parts;
    bool goesOn = false;
    if (line.size() == 1 && rect.contains(line.front()))
        parts.push_back(line);
    for (std::size_t i = 1; i < line.size(); ++i) {
        const QPointF &a = line[i - 1];
        const QPointF &b = line[i];
        const std::optional<Passage> passage = passageThrough(rect, a, b);
        if (!passage) {
            goesOn = false;
            continue;
        }
        if (!goesOn)
            parts.push_back({passage->entry > 0.0 ? bounded(a + (b - a) * passage->entry, rect) : a});
        goesOn = passage->exit >= 1.0;
        parts.back().push_back(goesOn ? b : bounded(a + (b - a) * passage->exit, rect));
    }
    return parts;
}

// A closed line has a join where it begins.
void joinAtTheSeam(std::vector<Points> *parts, const Points &line)
{
    const QPointF seam = line.front();
    if (parts->size() < 2 || seam != line.back() || parts->front().front() != seam || parts->back().back() != seam)
        return;
    Points &last = parts->back();
    last.insert(last.end(), parts->front().begin() + 1, parts->front().end());
    parts->erase(parts->begin());
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
    const QRectF kept = grown(fromDevice.mapRect(grown(picture, keptOf(farthest))), reach);
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
        std::vector<Points> parts = partsOfLine(line, m_kept);
        joinAtTheSeam(&parts, line);
        for (const Points &part : parts)
            add(&result, part);
        hadCorner = hadCorner || hasCorner(line);
    });
    // A painter paints nothing but single lines one over the other: a corner where nobody sees it keeps them one outline.
    if (hadCorner)
        add(&result, {m_kept.topLeft(), m_kept.topLeft() + QPointF(1, 0), m_kept.topLeft() + QPointF(1, 1)});
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
