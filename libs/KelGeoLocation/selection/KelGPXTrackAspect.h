// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKASPECT_H
#define KELGPXTRACKASPECT_H

#include <QFlags>

/// What can differ between two configured tracks so that a host has to draw again. Everything else (fill colour,
/// halo, shape, marker, options, pen, smoothing) is not told apart.
enum KelGPXTrackAspectFlag {
    AspectNone = 0,
    AspectLineWidth = 1,
    AspectLineColor = 2,
    AspectTrack = 4 ///< the track itself
};
Q_DECLARE_FLAGS(KelGPXTrackAspect, KelGPXTrackAspectFlag)
Q_DECLARE_OPERATORS_FOR_FLAGS(KelGPXTrackAspect)

#endif
