// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelStyleOptions.h"

#include <KelDistance.h>
#include <KelGPXTrackConfiguration.h>

void KelStyleOptions::applyTo(KelGPXTrackConfiguration &configuration) const
{
    if (lineColor)
        configuration.setLineColor(*lineColor);
    if (lineWidth)
        configuration.setLineWidth(KelDistance(*lineWidth));
    if (fillColor)
        configuration.setFillColor(*fillColor);
    if (haloWidth)
        configuration.setHaloWidth(KelDistance(*haloWidth));
    if (penStyle)
        configuration.setPenStyle(*penStyle);
    if (displayOptions)
        configuration.setCurrentDisplayOptions(static_cast<KelGPXTrackDisplayOptionsEnum>(*displayOptions));
    if (markerShape)
        configuration.setMarkerShape(static_cast<KelGPXMarkerShapeEnum>(*markerShape));
    if (trackShape)
        configuration.setTrackShape(static_cast<KelGPXTrackShapeEnum>(*trackShape));
    if (smoothing)
        configuration.setSmoothingStrength(*smoothing);
    if (smoothingSteps)
        configuration.setSmoothingSteps(*smoothingSteps);
}
