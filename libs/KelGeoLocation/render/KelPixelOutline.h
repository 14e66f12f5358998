// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPIXELOUTLINE_H
#define KELPIXELOUTLINE_H

#include <QRect>

#include <cstddef>
#include <vector>

class QPainterPath;
class QPointF;

/// The closed polygons that a raster painter makes of a painter path: curves flattened, moved, and rounded to whole
/// 64ths of a pixel, all exactly as QPainter does it.
///
/// Private to the library.
class KelPixelOutline
{
public:
    /// In 64ths of a pixel.
    struct Point
    {
        int x;
        int y;
    };

    /// The outline of a path that is moved by \a offset. Coordinates are below 1e7 then. Curves of which nothing lies
    /// in \a seen (in pixels) may be straight lines between their ends.
    KelPixelOutline(const QPainterPath &path, const QPointF &offset, const QRect &seen);

    /// Calls line(Point, Point) for each line of each polygon, the closing ones included.
    template<typename Line>
    void forEachLine(Line line) const
    {
        std::size_t first = 0;
        for (const std::size_t end : m_ends) {
            for (std::size_t i = first + 1; i < end; ++i)
                line(m_points[i - 1], m_points[i]);
            if (end > first)
                line(m_points[end - 1], m_points[first]);
            first = end;
        }
    }

    [[nodiscard]] std::size_t size() const { return m_points.size(); }

    /// The pixels that the outline may touch.
    [[nodiscard]] QRect pixels() const;

private:
    std::vector<Point> m_points;
    std::vector<std::size_t> m_ends;
};

#endif
