// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMAPPROJECTION_H
#define KELMAPPROJECTION_H

#include <KelGeoLocationGlobal.h>

#include <QPointF>
#include <QSize>

class KelGeoArc;
class KelGeoPosition;
class KelGeoPositionRect;
class QPoint;

/// Maps positions to the pixels of one map image and back, by the spherical Mercator projection.
///
/// In its normalised form the world is a square of side 1, x from west to east, y from north to south; the square
/// ends near 85.0511 degrees north and south. The requested area is fitted into the image without distortion: it is
/// widened in one direction until its shape is that of the image. Pixels have their origin at the top left.
///
/// Areas must be valid, sizes not empty; otherwise the projection yields infinite or undefined coordinates, but
/// never fails. Latitudes at or beyond the poles project to infinity, see KelLatitude::catchOutOfBound().
///
/// The projecting functions may be called from several threads at once.
class KELGEOLOCATION_EXPORT KelMapProjection
{
public:
    /// Fits the area into an image of that size.
    KelMapProjection(const KelGeoPositionRect &area, const QSize &size);
    KelMapProjection(const KelMapProjection &other) = default;
    KelMapProjection(KelMapProjection &&other) noexcept = default;
    KelMapProjection &operator=(const KelMapProjection &other) = default;
    KelMapProjection &operator=(KelMapProjection &&other) noexcept = default;
    virtual ~KelMapProjection();

    /// Fits another area to the same image size.
    void adjustMapData(const KelGeoPositionRect &area);

    /// y in the normalised world of a latitude in degrees: 0.5 at the equator.
    [[nodiscard]] static double latitudeToNormalized(double latitude) noexcept;
    /// The reverse, always between -90 and +90 degrees; y is not limited to 0 ... 1.
    [[nodiscard]] static double normalizedToLatitude(double y) noexcept;
    /// x in the normalised world of a longitude in degrees: 0 at -180, 1 at +180.
    [[nodiscard]] static double longitudeToNormalized(double longitude) noexcept;
    /// The reverse, not wrapped: 1.25 gives 270 degrees.
    [[nodiscard]] static double normalizedToLongitude(double x) noexcept;

    /// The pixel of a position given in degrees; both coordinates are whole numbers, truncated toward zero. What is
    /// too large for a 32-bit integer becomes the nearest one, and what is no number becomes 0.
    [[nodiscard]] QPointF getPixelCoordinateByMapCoordinate(double latitude, double longitude) const noexcept;
    /// The same for a position.
    [[nodiscard]] QPointF projectate(const KelGeoPosition &position) const noexcept;
    /// The position of a pixel. Longitudes are not wrapped: beyond the date line they exceed 180.
    [[nodiscard]] KelGeoPosition convert(const QPoint &pixel) const;

    /// The area that the image shows, folded into the legal ranges of latitude and longitude.
    [[nodiscard]] KelGeoPositionRect resultBoundingBox() const;

    /// Whether two angles differ by no more than @p epsilon degrees.
    [[nodiscard]] static bool epsilonEqual(const KelGeoArc &a, const KelGeoArc &b, double epsilon) noexcept;
    /// Whether both coordinates differ by no more than @p epsilon degrees.
    [[nodiscard]] static bool epsilonEqual(const KelGeoPosition &a, const KelGeoPosition &b, double epsilon) noexcept;

private:
    QSize m_size;
    // Edges after fitting, in degrees; the eastern one may exceed 180.
    double m_south = 0.0;
    double m_north = 0.0;
    double m_west = 0.0;
    double m_east = 0.0;
    // Pixels of the western and of the northern edge in the whole world, and the side of that world.
    double m_offsetX = 0.0;
    double m_offsetY = 0.0;
    double m_worldSize = 0.0;
};

#endif
