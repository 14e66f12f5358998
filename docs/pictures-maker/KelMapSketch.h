// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMAPSKETCH_H
#define KELMAPSKETCH_H

#include "KelWorldMapFrame.h"

#include <KelGPXTrackRenderer.h>
#include <KelGeoPositionRect.h>

#include <QImage>

/// Tracks on the built-in map of the world, or on a plain ground.
class KelMapSketch : public KelGPXTrackRenderer
{
public:
    enum Ground {
        World,
        Plain
    };

    /// The area is widened to the shape of the picture.
    KelMapSketch(const KelGPXTrackSelection &tracks, const KelGeoPositionRect &area, const QSize &size, Ground ground);

    [[nodiscard]] QPointF projectPosition(const KelGeoPosition &position) const override;

    [[nodiscard]] QImage map() const;
    /// The map with the tracks as configured.
    [[nodiscard]] QImage picture() const;
    /// Pixels of one kilometre in the middle of the picture.
    [[nodiscard]] double pixelsPerKilometre() const;

    /// The picture on the chequered ground that stands for transparency.
    [[nodiscard]] static QImage chequered(const QImage &picture);

private:
    KelWorldMapFrame m_frame;
    double m_pixelsPerKilometre;
    Ground m_ground;
};

#endif
