// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELWORLDMAPFRAME_H
#define KELWORLDMAPFRAME_H

#include <QPointF>
#include <QSizeF>

/// Where the world lies on a picture: the Mercator world is a square of worldSize pixels whose north-west corner
/// (180° west, 85.05° north) is at origin; it repeats to the east and the west.
struct KelWorldMapFrame
{
    QSizeF size;            ///< of the picture, pixels
    double worldSize = 1.0; ///< side of the world, pixels
    QPointF origin;         ///< pixel of the world's north-west corner

    /// Pixel of a place in units of the world's side, x from 180° west to the east, y from north to south.
    [[nodiscard]] QPointF toPixel(double x, double y) const noexcept
    {
        return {origin.x() + x * worldSize, origin.y() + y * worldSize};
    }
    /// The reverse.
    [[nodiscard]] QPointF toWorld(const QPointF &pixel) const noexcept { return (pixel - origin) / worldSize; }
    /// Length of one degree of longitude, pixels.
    [[nodiscard]] double pixelsPerDegree() const noexcept { return worldSize / 360.0; }
};

#endif
