// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELDASHEDLINE_H
#define KELDASHEDLINE_H

#include <QRectF>

#include <array>
#include <functional>
#include <vector>

class QPainterPath;
class QPen;
class QPointF;
class QSize;

/// The dashes of a line, where QPainter would put them, to the last bit: the same sums and products in the same order.
///
/// They are handed out one after the other and never held, so that no memory is needed however many there are. A line
/// that leaves the picture keeps its dashes where QPainter has them: of a part that lies outside of the picture only the
/// rest of the last pattern is counted, and that no further than once through the pattern; a part that is so long that
/// there were more than 10,000 patterns on it is one dash.
///
/// Private to the library.
class KelDashedLine
{
public:
    /// Whether the dashes of such a pen on such a picture can be told: Qt's own patterns, which begin with the line, and
    /// no picture that is so large that QPainter would paint a pale line instead.
    [[nodiscard]] static bool isPossible(const QPen &pen, const QSize &picture);

    /// The same for paths: straight lines whose ends QPainter does not take for equal.
    [[nodiscard]] static bool isPossible(const QPainterPath &line);

    /// What is given has to be possible; \a picture is the rectangle of the picture in the coordinates of the line. The
    /// line has to live as long as this.
    KelDashedLine(const QPainterPath &line, const QPen &pen, const QRectF &picture);

    /// Whether there are more than so many dashes in the picture, roughly counted.
    [[nodiscard]] bool hasMoreThan(double dashes) const;

    /// Two points or more, which may be equal.
    using Take = std::function<void(const std::vector<QPointF> &points)>;

    /// Calls take(points) for each dash that comes into \a box, and maybe for some that come near it. Dashes are open lines.
    /// Those that lie outside of the picture, by more than a pen's width, may be left out.
    void forEachDashIn(const QRectF &box, const Take &take) const;

    struct Pattern
    {
        explicit Pattern(const QPen &pen);

        std::array<double, 6> lengths{}; // of dashes and of the gaps behind them
        int count = 0;
        double sum = 0;
        double longest = 0;
        double perLength = 0;
    };

private:
    const QPainterPath &m_line;
    Pattern m_pattern;
    QRectF m_picture;
    double m_margin; // around it, beyond which lines are not followed
};

#endif
