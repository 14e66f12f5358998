// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackSmoothing.h"

#include <algorithm>
#include <cmath>

namespace
{

// Tracks of a hundred thousand points with as many pieces leave 32 bits.
int fixPointIndex(int count, int piece, int pieces)
{
    return static_cast<int>(static_cast<qint64>(count) * piece / pieces - 1);
}

} // namespace

KelGPXTrackSmoothing::KelGPXTrackSmoothing(QPointF *points, int count, double factor, int wantedFixPoints)
    : m_points(points)
    , m_count(count)
    , m_factor(factor)
    , m_fixPoints(estimateFixPoints(wantedFixPoints, count))
{
}

void KelGPXTrackSmoothing::run()
{
    if (m_count / m_fixPoints == 1 || m_count <= 2)
        return;

    int piece = 1;
    int previousFix = 0;
    int nextFix = fixPointIndex(m_count, piece, m_fixPoints);
    for (int i = 1; i < m_count - 1; ++i) {
        if (i == nextFix) {
            ++piece;
            previousFix = i;
            nextFix = fixPointIndex(m_count, piece, m_fixPoints);
        } else {
            smoothPoint(i, previousFix, nextFix);
        }
    }
}

int KelGPXTrackSmoothing::estimateFixPoints(int wanted, int count) noexcept
{
    return std::max(std::min(wanted, count), 1);
}

double KelGPXTrackSmoothing::delta(const QPointF &a, const QPointF &b) noexcept
{
    const double dx = a.x() - b.x();
    const double dy = a.y() - b.y();
    return std::sqrt(dx * dx + dy * dy);
}

double KelGPXTrackSmoothing::partOf(double d1, double d2) noexcept
{
    return d1 / (d2 + d1);
}

QPointF KelGPXTrackSmoothing::mix(const QPointF &a, const QPointF &b, double t) noexcept
{
    return QPointF(t * a.x() + (1 - t) * b.x(), t * a.y() + (1 - t) * b.y());
}

void KelGPXTrackSmoothing::smoothPoint(int index, int previousFix, int nextFix)
{
    const QPointF point = m_points[index];
    const QPointF previous = m_points[previousFix];
    const QPointF next = m_points[nextFix];

    // The weight of an end is the distance to the other one: near the previous point, near its end of the chord.
    const double weight = partOf(delta(next, point), delta(previous, point));
    const QPointF chordPoint = mix(previous, next, weight);
    m_points[index] = mix(point, chordPoint, m_factor);
}
