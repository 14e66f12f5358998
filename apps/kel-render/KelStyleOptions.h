// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELSTYLEOPTIONS_H
#define KELSTYLEOPTIONS_H

#include <KelPenStyle.h>

#include <QColor>

#include <optional>

class KelGPXTrackConfiguration;

/// What the command line says about the look of tracks; whatever is not said stays as it is.
struct KelStyleOptions
{
    std::optional<QColor> lineColor;
    std::optional<double> lineWidth; ///< pixels at scale factor 1
    std::optional<QColor> fillColor;
    std::optional<double> haloWidth; ///< pixels at scale factor 1
    std::optional<KelPenStyle> penStyle;
    std::optional<int> displayOptions; ///< bits of KelGPXTrackDisplayOptionsEnum
    std::optional<int> markerShape;    ///< a value of KelGPXMarkerShapeEnum
    std::optional<int> trackShape;     ///< a value of KelGPXTrackShapeEnum
    std::optional<int> smoothing;      ///< percent
    std::optional<int> smoothingSteps;

    /// Puts what was said into the configuration.
    void applyTo(KelGPXTrackConfiguration &configuration) const;
};

#endif
