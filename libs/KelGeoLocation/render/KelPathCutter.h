// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPATHCUTTER_H
#define KELPATHCUTTER_H

#include <QPainterPath>
#include <QRectF>

class QPainter;

/// Cuts off what lies so far outside of a picture that painters get slow and inexact there: a few hundred wide lines
/// that go some million pixels beyond it keep a raster painter busy for minutes.
///
/// Nothing is cut as long as a path stays within some distance, and nothing for devices that have no pixels. What is
/// cut looks the same but for the rounding of edges that come from so far away.
///
/// Private to the library.
class KelPathCutter
{
public:
    /// Pixels from the picture's left and upper edge. Half of where rasterizers begin to cut paths in their own way, which
    /// moves their edges; it is nearer where pointers are short.
    static constexpr double FARTHEST = sizeof(void *) == 8 ? 4.0e6 : 1.6e4;

    /// For what QPainter paints itself: each wide line that goes that far takes it milliseconds, farther ones take longer.
    static constexpr double FARTHEST_FOR_PAINTERS = 16384.0;

    /// Pixels that are kept around the picture.
    static constexpr double KEPT = 2048.0;

    /// For paths as \a painter has them now, painted with what reaches \a reach beyond them (half the width of a pen with
    /// round caps and joins, in the path's units). Those that go more than \a farthest pixels away are cut.
    KelPathCutter(const QPainter *painter, double reach, double farthest = FARTHEST);

    /// The path, or what is near the picture of a far one, for a solid pen. What was closed and is cut is open. Paths with
    /// curves are left as they are.
    [[nodiscard]] QPainterPath line(const QPainterPath &path) const;

    /// The same for a pen whose dashes and gaps repeat after \a period, in the path's units. Where the line is far away, a
    /// detour around the picture takes its place, as long as it was but for whole periods: dashes stay where they are.
    [[nodiscard]] QPainterPath dashedLine(const QPainterPath &path, double period) const;

    /// The path, or what is near the picture of a far one, for filling. Paths with curves are left as they are.
    [[nodiscard]] QPainterPath area(const QPainterPath &path) const;

private:
    [[nodiscard]] bool isToBeCut(const QPainterPath &path) const;

    QRectF m_bearable; // of the path's coordinates; null if nothing is cut
    QRectF m_kept;
};

#endif
