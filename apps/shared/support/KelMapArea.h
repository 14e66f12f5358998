// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMAPAREA_H
#define KELMAPAREA_H

#include <KelGeoPositionRect.h>

#include <QMarginsF>
#include <QSize>

class KelGPXTrackElement;
class KelLongitudeRange;

/// Chooses the map area that shows given tracks.
class KelMapArea
{
public:
    KelMapArea() = delete;

    /// The area whose middle part, the picture without the margins (in pixels), is filled by the tracks. The
    /// area has the picture's shape; its east may exceed 180 degrees. A single place gets about 20 km around it.
    /// Invalid without any valid position.
    [[nodiscard]] static KelGeoPositionRect aroundTracks(const KelGPXTrackElement &tracks, const QSize &size,
                                                         const QMarginsF &margins);

    /// Bounding box of the valid positions, the short way round the date line. Where the tracks are spread around
    /// the globe, the widest sector that no track enters is left out. Invalid without any valid position.
    [[nodiscard]] static KelGeoPositionRect boundingBox(const KelGPXTrackElement &tracks);
};

#endif
