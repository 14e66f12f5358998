// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPixelOutline.h"

#include <QPainterPath>
#include <QPointF>
#include <QRectF>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr double PARTS_OF_PIXEL = 64.0;
constexpr int PART_BITS = 6;

// How QPainter flattens curves: halved until flat, though not more often than this.
constexpr double FLATNESS = 0.25;
constexpr int MOST_HALVINGS = 9;

// Bezier curves: both ends with the control points between them.
using Curve = std::array<QPointF, 4>;

QPointF middle(const QPointF &a, const QPointF &b)
{
    return (a + b) * 0.5;
}

// Twice the area between the chord and the line from the start to a point.
double areaBeside(const QPointF &chord, const QPointF &start, const QPointF &point)
{
    return std::abs(chord.x() * (start.y() - point.y()) - chord.y() * (start.x() - point.x()));
}

double manhattanDistance(const QPointF &a, const QPointF &b)
{
    return std::abs(a.x() - b.x()) + std::abs(a.y() - b.y());
}

bool isFlat(const Curve &curve)
{
    const QPointF chord = curve[3] - curve[0];
    const double length = std::abs(chord.x()) + std::abs(chord.y());
    if (length > 1.0)
        return areaBeside(chord, curve[0], curve[1]) + areaBeside(chord, curve[0], curve[2]) < FLATNESS * length;
    // The order of the additions is QPainter's; sums of doubles depend on it.
    return manhattanDistance(curve[0], curve[1]) + std::abs(curve[0].x() - curve[2].x())
        + std::abs(curve[0].y() - curve[2].y())
        < FLATNESS;
}

template<typename Append>
void flatten(const Curve &curve, int halvings, const Append &append)
{
    if (halvings == 0 || isFlat(curve)) {
        append(curve[3]);
        return;
    }
    const QPointF center = middle(curve[1], curve[2]);
    const QPointF begin = middle(curve[0], curve[1]);
    const QPointF end = middle(curve[2], curve[3]);
    const QPointF beforeSplit = middle(begin, center);
    const QPointF behindSplit = middle(center, end);
    const QPointF split = middle(beforeSplit, behindSplit);
    flatten(Curve{curve[0], begin, beforeSplit, split}, halvings - 1, append);
    flatten(Curve{split, behindSplit, end, curve[3]}, halvings - 1, append);
}

bool isOutside(const Curve &curve, const QRectF &area)
{
    const auto [left, right] = std::minmax({curve[0].x(), curve[1].x(), curve[2].x(), curve[3].x()});
    const auto [top, bottom] = std::minmax({curve[0].y(), curve[1].y(), curve[2].y(), curve[3].y()});
    return right < area.left() || left > area.right() || bottom < area.top() || top > area.bottom();
}

} // namespace

KelPixelOutline::KelPixelOutline(const QPainterPath &path, const QPointF &offset, const QRect &seen)
{
    const QRectF area = QRectF(seen).translated(-offset).adjusted(-2, -2, 2, 2);
    const auto append = [&](const QPointF &point) {
        m_points.push_back(
            {qRound((point.x() + offset.x()) * PARTS_OF_PIXEL), qRound((point.y() + offset.y()) * PARTS_OF_PIXEL)});
    };
    const int count = path.elementCount();
    m_points.reserve(static_cast<std::size_t>(count));
    QPointF last;
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element &element = path.elementAt(i);
        if (element.isMoveTo() && !m_points.empty())
            m_ends.push_back(m_points.size());
        if (element.isCurveTo()) {
            const Curve curve{last, element, path.elementAt(i + 1), path.elementAt(i + 2)};
            i += 2;
            last = curve[3];
            flatten(curve, isOutside(curve, area) ? 0 : MOST_HALVINGS, append);
        } else {
            last = element;
            append(last);
        }
    }
    m_ends.push_back(m_points.size());
}

QRect KelPixelOutline::pixels() const
{
    if (m_points.empty())
        return QRect();
    Point least = m_points.front();
    Point most = least;
    for (const Point &point : m_points) {
        least = {std::min(least.x, point.x), std::min(least.y, point.y)};
        most = {std::max(most.x, point.x), std::max(most.y, point.y)};
    }
    return QRect(QPoint(least.x >> PART_BITS, least.y >> PART_BITS), QPoint(most.x >> PART_BITS, most.y >> PART_BITS));
}
