// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKASPECT_H
#define KELGPXTRACKASPECT_H

#include <QFlags>

/// What can differ between two configured tracks so that a host has to draw again. Everything else (fill colour,
/// halo, shape, marker, options, pen, smoothing) is not told apart.
enum KelGPXTrackAspectFlag {
    AspectNone = 0,      ///< nothing that asks for drawing again
    AspectLineWidth = 1, ///< the width of the line
    AspectLineColor = 2, ///< the colour of the line
    AspectTrack = 4      ///< the track itself
};
/// Any combination of KelGPXTrackAspectFlag.
Q_DECLARE_FLAGS(KelGPXTrackAspect, KelGPXTrackAspectFlag)
Q_DECLARE_OPERATORS_FOR_FLAGS(KelGPXTrackAspect)

#endif
