// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDashedLine.h"

#include <QLineF>
#include <QList>
#include <QPainterPath>
#include <QPen>
#include <QPointF>
#include <QRectF>
#include <QSize>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace
{

// A longer part of a line has no dashes; nor has a picture that is larger, which is none of ours (with some distance).
constexpr double MOST_PATTERNS = 10000.0;
constexpr double MOST_PATTERNS_OF_PICTURE = 9990.0;

// A rectangle as the painter sees it: without its border.
class Frame
{
public:
    Frame(const QRectF &rect, double margin)
        : m_left(rect.left() - margin)
        , m_top(rect.top() - margin)
        , m_right(rect.right() + margin)
        , m_bottom(rect.bottom() + margin)
    {
    }

    // Whether the rectangle around both points does.
    bool overlaps(const QPointF &a, const QPointF &b) const
    {
        return std::max(a.x(), b.x()) > m_left && std::min(a.x(), b.x()) < m_right && std::max(a.y(), b.y()) > m_top
            && std::min(a.y(), b.y()) < m_bottom;
    }

    // Whether the line from one to the other does.
    bool touches(const QPointF &a, const QPointF &b) const
    {
        if (!overlaps(a, b))
            return false;
        if (a.x() == b.x() || a.y() == b.y())
            return true;
        const QPointF &upper = a.y() > b.y() ? b : a;
        const QPointF &lower = a.y() > b.y() ? a : b;
        const QPointF way = lower - upper;
        const bool toTheRight = way.x() > 0;
        const QPointF left = QPointF(m_left, toTheRight ? m_bottom : m_top) - upper;
        const QPointF right = QPointF(m_right, toTheRight ? m_top : m_bottom) - upper;
        const double besideLeft = left.x() * way.y() - left.y() * way.x();
        const double besideRight = right.x() * way.y() - right.y() * way.x();
        return (besideLeft < 0 && besideRight > 0) || (besideLeft > 0 && besideRight < 0);
    }

private:
    double m_left;
    double m_top;
    double m_right;
    double m_bottom;
};

// Of a line, from its begin.
struct Interval
{
    double from;
    double to;

    bool isEmpty() const { return from > to; }
    bool contains(double begin, double end) const { return end >= from && begin <= to; }
};

// From 0 to 1.
Interval partBetween(double begin, double end, double least, double most)
{
    if (begin == end)
        return begin >= least && begin <= most ? Interval{0, 1} : Interval{1, 0};
    const double atLeast = (least - begin) / (end - begin);
    const double atMost = (most - begin) / (end - begin);
    return {std::max(0.0, std::min(atLeast, atMost)), std::min(1.0, std::max(atLeast, atMost))};
}

// Roundings do not matter: boxes are larger than need be.
Interval partInBox(const QLineF &line, double length, const QRectF &box)
{
    const Interval x = partBetween(line.x1(), line.x2(), box.left(), box.right());
    const Interval y = partBetween(line.y1(), line.y2(), box.top(), box.bottom());
    const Interval both{std::max(x.from, y.from), std::min(x.to, y.to)};
    if (x.isEmpty() || y.isEmpty() || both.isEmpty())
        return {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    return {both.from * length, both.to * length};
}

// Goes along the lines of a path, from one dash to the next.
class Walk
{
public:
    Walk(const KelDashedLine::Pattern &pattern, const Frame &frame, const QRectF &box, const KelDashedLine::Take &take)
        : m_pattern(pattern)
        , m_frame(frame)
        , m_box(box)
        , m_take(take)
    {
    }

    void moveTo(const QPointF &point)
    {
        finish();
        m_index = 0;
        m_used = 0;
        m_position = 0;
        m_start = 0;
        m_isOpen = false;
        m_point = point;
        m_begin = point;
    }

    void lineTo(const QPointF &point)
    {
        const QLineF line(m_point, point);
        const double length = line.length();
        const double stop = m_start + length;
        const bool isOutside = !m_frame.touches(m_point, point);
        if (isOutside || length * m_pattern.perLength > MOST_PATTERNS)
            passOver(point, length, stop, isOutside);
        else
            dashAlong(line, length, stop);
        m_start = stop;
        m_point = point;
    }

    void finish()
    {
        if (m_isSeen)
            m_take(m_dash);
        m_isSeen = false;
        m_dash.clear();
    }

private:
    // To the end of the dash or gap, which is returned, or to that of the line, where that comes first.
    double advance(double length, double stop)
    {
        const double dash = m_pattern.lengths[m_index];
        const double end = m_position + dash - m_used - m_start;
        if (end > length) {
            m_used = dash - (end - length);
            m_position = stop;
        } else {
            m_used = 0;
            m_position = end + m_start;
            m_index = m_index + 1 == static_cast<std::size_t>(m_pattern.count) ? 0 : m_index + 1;
        }
        return end;
    }

    void passOver(const QPointF &end, double length, double stop, bool isOutside)
    {
        const double rest = length - std::floor(length * m_pattern.perLength) * m_pattern.sum;
        for (int i = 0; i < m_pattern.count && m_position < stop; ++i)
            advance(rest, stop);
        m_position = stop;
        if (isOutside)
            m_isOpen = false;
        else
            addUndashed(end);
        m_begin = end;
    }

    void dashAlong(const QLineF &line, double length, double stop)
    {
        const Interval inBox = partInBox(line, length, m_box);
        double from = 0;
        QPointF begin = m_begin;
        bool isBeginKnown = true;
        while (m_position < stop) {
            const bool isDash = m_index % 2 == 0;
            const bool isContinued = m_used > 0;
            const double to = advance(length, stop);
            const bool isSeen = inBox.contains(from, to);
            // Where there is room for a whole pattern, another dash follows and nobody asks for this one any more.
            const bool isNeeded = isSeen || isContinued || stop - m_position <= m_pattern.sum;
            if (isNeeded) {
                if (!isBeginKnown)
                    begin = line.pointAt(from / length);
                const QPointF end = to > length ? line.p2() : line.pointAt(to / length);
                if (isDash)
                    add(begin, end, isContinued, isSeen);
                begin = end;
            }
            isBeginKnown = isNeeded;
            from = to;
        }
        m_begin = begin;
    }

    void add(const QPointF &begin, const QPointF &end, bool isContinued, bool isSeen)
    {
        if (!m_frame.overlaps(begin, end)) {
            m_isOpen = false;
            return;
        }
        if (!isContinued || !m_isOpen)
            open(begin);
        m_dash.push_back(end);
        m_isSeen = m_isSeen || isSeen;
    }

    // Continues what was painted last, over a gap if need be.
    void addUndashed(const QPointF &end)
    {
        if (!m_isOpen)
            open(m_begin);
        m_isSeen = m_isSeen || !partInBox(QLineF(m_dash.back(), end), 1, m_box).isEmpty();
        m_dash.push_back(end);
    }

    void open(const QPointF &begin)
    {
        finish();
        m_dash.push_back(begin);
        m_isOpen = true;
    }

    const KelDashedLine::Pattern &m_pattern;
    const Frame &m_frame;
    const QRectF m_box;
    const KelDashedLine::Take &m_take;

    std::size_t m_index = 0; // of the dash or gap
    double m_used = 0;       // what earlier lines have of it
    double m_position = 0;
    double m_start = 0; // of the line
    QPointF m_point;    // the same
    QPointF m_begin;    // of the dash or gap, or of what the line has of it
    bool m_isOpen = false;

    std::vector<QPointF> m_dash;
    bool m_isSeen = false;
};

} // namespace

KelDashedLine::Pattern::Pattern(const QPen &pen)
{
    for (const double length : pen.dashPattern()) {
        const double dash = length * pen.widthF();
        lengths[static_cast<std::size_t>(count++)] = dash;
        sum += dash;
        longest = std::max(longest, dash);
    }
    perLength = 1 / sum;
}

bool KelDashedLine::isPossible(const QPen &pen, const QSize &picture)
{
    const bool isPlain = pen.style() == Qt::DashLine || pen.style() == Qt::DotLine || pen.style() == Qt::DashDotLine
        || pen.style() == Qt::DashDotDotLine;
    return isPlain && pen.dashOffset() == 0.0
        && std::max(picture.width(), picture.height()) < MOST_PATTERNS_OF_PICTURE * Pattern(pen).sum;
}

bool KelDashedLine::isPossible(const QPainterPath &line)
{
    const int count = line.elementCount();
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element &element = line.elementAt(i);
        if (element.isMoveTo())
            continue;
        const QPointF end = element;
        const QPointF begin = line.elementAt(i - 1);
        if (!element.isLineTo() || (begin == end && (begin.x() != end.x() || begin.y() != end.y())))
            return false;
    }
    return true;
}

KelDashedLine::KelDashedLine(const QPainterPath &line, const QPen &pen, const QRectF &picture)
    : m_line(line)
    , m_pattern(pen)
    , m_picture(picture)
    , m_margin(std::max(pen.widthF(), pen.miterLimit()) * m_pattern.longest)
{
}

bool KelDashedLine::hasMoreThan(double dashes) const
{
    const Frame frame(m_picture, m_margin);
    const double longest = m_picture.width() + m_picture.height();
    double found = 0;
    for (int i = 1; i < m_line.elementCount() && found <= dashes; ++i) {
        const QLineF line(m_line.elementAt(i - 1), m_line.elementAt(i));
        if (m_line.elementAt(i).isLineTo() && frame.touches(line.p1(), line.p2()))
            found += 1 + std::min(line.length(), longest) * m_pattern.perLength * m_pattern.count / 2;
    }
    return found > dashes;
}

void KelDashedLine::forEachDashIn(const QRectF &box, const Take &take) const
{
    const Frame frame(m_picture, m_margin);
    Walk walk(m_pattern, frame, box, take);
    for (int i = 0; i < m_line.elementCount(); ++i) {
        const QPainterPath::Element &element = m_line.elementAt(i);
        if (element.isMoveTo())
            walk.moveTo(element);
        else
            walk.lineTo(element);
    }
    walk.finish();
}
