// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMAPGEOMETRY_H
#define KELMAPGEOMETRY_H

#include "KelWorldMapFrame.h"

#include <KelGeoPositionRect.h>
#include <KelMapProjection.h>

#include <QPointF>
#include <QSize>

class KelGeoPosition;

/// The map area of one picture, fitted by KelMapProjection, with pixels that are not cut to whole numbers: lines stay
/// smooth, and PDF and SVG can be enlarged.
class KelMapGeometry
{
public:
    /// The area may cross the date line and its east may exceed 180 degrees. The projection widens it to the
    /// picture's shape.
    KelMapGeometry(const KelGeoPositionRect &area, const QSize &size);

    [[nodiscard]] QSize size() const noexcept { return m_size; }
    [[nodiscard]] const KelWorldMapFrame &frame() const noexcept { return m_frame; }

    /// False where the picture would reach so far beyond the poles, several worlds, that no latitude tells its edges.
    [[nodiscard]] bool isFinite() const noexcept;

    /// Pixel of a position. One copy of the world: longitudes of ±180 are one worldWidth() apart. Positions at the
    /// poles are drawn back to 89.9 degrees.
    [[nodiscard]] QPointF toPixel(const KelGeoPosition &position) const;
    [[nodiscard]] QPointF toPixel(double latitude, double longitude) const;

    /// Width of the whole world, pixels.
    [[nodiscard]] double worldWidth() const noexcept { return m_frame.worldSize; }
    /// Length of one kilometre at the latitude in the picture's middle, pixels.
    [[nodiscard]] double pixelsPerKilometre() const;

private:
    KelMapProjection m_projection;
    QSize m_size;
    KelWorldMapFrame m_frame;
};

#endif
