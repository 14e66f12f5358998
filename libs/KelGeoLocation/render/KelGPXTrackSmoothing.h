// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKSMOOTHING_H
#define KELGPXTRACKSMOOTHING_H

#include <KelGeoLocationGlobal.h>

#include <QPointF>

/// Smooths the screen points of one track in place.
///
/// The track is cut into pieces of equal point count. The ends of the pieces are fix points and never move;
/// every other point is drawn toward the straight chord between the two fix points of its piece. It is a
/// straightening toward chords, not a moving average: few pieces turn a noisy track into a few calm lines.
///
/// A smoothing is a worker for one run(). It does not own the array, which must outlive it; it allocates nothing
/// and needs one pass. Several smoothings may work on different arrays at the same time.
class KELGEOLOCATION_EXPORT KelGPXTrackSmoothing
{
public:
    /// \a points are \a count points owned by the caller; none when \a count is not above 0. \a factor is the weight that a smoothed point keeps of its
    /// own position: 1.0 leaves the track as it is, 0.0 puts every point on its chord. \a wantedFixPoints is the
    /// number of pieces, see estimateFixPoints().
    KelGPXTrackSmoothing(QPointF *points, int count, double factor, int wantedFixPoints);

    KelGPXTrackSmoothing(const KelGPXTrackSmoothing &) = default;
    KelGPXTrackSmoothing(KelGPXTrackSmoothing &&) noexcept = default;
    KelGPXTrackSmoothing &operator=(const KelGPXTrackSmoothing &) = default;
    KelGPXTrackSmoothing &operator=(KelGPXTrackSmoothing &&) noexcept = default;
    virtual ~KelGPXTrackSmoothing() = default;

    /// Smooths the array. With n points and F pieces the fix points are index 0 and n·k / F − 1 for k = 1 .. F
    /// (integer division), so the first and the last point stay where they are. Nothing happens when n / F is 1
    /// or when there are at most two points.
    void run();

    /// The smaller of \a wanted and \a count, but at least 1.
    [[nodiscard]] static int estimateFixPoints(int wanted, int count) noexcept;

    /// Euclidean distance in pixels.
    [[nodiscard]] static double delta(const QPointF &a, const QPointF &b) noexcept;

    /// \a d1 / (\a d2 + \a d1): not a number when both are 0.
    [[nodiscard]] static double partOf(double d1, double d2) noexcept;

    /// t·a + (1 − t)·b, per coordinate.
    [[nodiscard]] static QPointF mix(const QPointF &a, const QPointF &b, double t) noexcept;

    /// Moves the point \a index toward the chord between the points \a previousFix and \a nextFix. The chord point
    /// divides the chord in the ratio of the point's distances to both ends. A point that lies on both ends has no
    /// such ratio and becomes not-a-number; callers pass distinct positions. The indices must lie in the array.
    void smoothPoint(int index, int previousFix, int nextFix);

private:
    QPointF *m_points;
    int m_count;
    double m_factor;
    int m_fixPoints;
};

#endif
