// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelMapProjection.h"

#include <KelGeoPosition.h>
#include <KelGeoPositionRect.h>
#include <KelMath.h>

#include <QPoint>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double pi = 3.141592653589793;

// A plain conversion is undefined for what does not fit.
double truncatedTo32Bits(double number) noexcept
{
    constexpr double least = std::numeric_limits<int>::min();
    constexpr double greatest = std::numeric_limits<int>::max();
    if (std::isnan(number))
        return 0.0;
    return static_cast<int>(std::clamp(number, least, greatest));
}

// As 32-bit integers, with the overflow of widths beyond five million pixels defined.
int timesFullTurn(int width) noexcept
{
    return static_cast<int>(static_cast<unsigned int>(width) * 360U);
}

} // namespace

KelMapProjection::KelMapProjection(const KelGeoPositionRect &area, const QSize &size)
    : m_size(size)
{
    adjustMapData(area);
}

KelMapProjection::~KelMapProjection() = default;

void KelMapProjection::adjustMapData(const KelGeoPositionRect &area)
{
    m_south = area.south().decimalDegrees();
    m_north = area.north().decimalDegrees();
    m_west = area.west().decimalDegrees();
    m_east = area.east().decimalDegrees();
    if (m_west > m_east)
        m_east += 360.0;

    double longitudeSpan = m_east - m_west;
    const double width = longitudeSpan / 360.0;
    const double south = latitudeToNormalized(m_south);
    const double north = latitudeToNormalized(m_north);
    const double height = south - north;

    const double imageAspect = static_cast<double>(m_size.width()) / m_size.height();
    const double areaAspect = width / height;
    if (imageAspect >= areaAspect) {
        const double margin = (imageAspect * longitudeSpan / areaAspect - longitudeSpan) / 2.0;
        m_east += margin;
        m_west -= margin;
        longitudeSpan = m_east - m_west;
    } else {
        const double margin = (width / imageAspect - height) * 0.5;
        m_south = normalizedToLatitude(south + margin);
        m_north = normalizedToLatitude(north - margin);
    }

    m_worldSize = timesFullTurn(m_size.width()) / longitudeSpan;
    m_offsetX = longitudeToNormalized(m_west) * m_worldSize;
    m_offsetY = latitudeToNormalized(m_north) * m_worldSize;
}

double KelMapProjection::latitudeToNormalized(double latitude) noexcept
{
    return std::log(std::tan((90.0 - latitude) * pi / 360.0)) / (2.0 * pi) + 0.5;
}

double KelMapProjection::normalizedToLatitude(double y) noexcept
{
    return 90.0 - 360.0 * std::atan(std::exp(2.0 * (y - 0.5) * pi)) / pi;
}

double KelMapProjection::longitudeToNormalized(double longitude) noexcept
{
    return (longitude + 180.0) / 360.0;
}

double KelMapProjection::normalizedToLongitude(double x) noexcept
{
    return x * 360.0 - 180.0;
}

QPointF KelMapProjection::getPixelCoordinateByMapCoordinate(double latitude, double longitude) const noexcept
{
    const double x = m_worldSize * longitudeToNormalized(longitude) - m_offsetX;
    const double y = latitudeToNormalized(latitude) * m_worldSize - m_offsetY;
    return QPointF(truncatedTo32Bits(x), truncatedTo32Bits(y));
}

QPointF KelMapProjection::projectate(const KelGeoPosition &position) const noexcept
{
    return getPixelCoordinateByMapCoordinate(position.latitude().decimalDegrees(),
                                             position.longitude().decimalDegrees());
}

KelGeoPosition KelMapProjection::convert(const QPoint &pixel) const
{
    return KelGeoPosition(normalizedToLatitude((pixel.y() + m_offsetY) / m_worldSize),
                          normalizedToLongitude((pixel.x() + m_offsetX) / m_worldSize));
}

KelGeoPositionRect KelMapProjection::resultBoundingBox() const
{
    return KelGeoPositionRect(
        KelLatitudeRange(KelLatitude::safeLatitude(m_south), KelLatitude::safeLatitude(m_north)),
        KelLongitudeRange(KelLongitude::safeLongitude(m_west), KelLongitude::safeLongitude(m_east)));
}

bool KelMapProjection::epsilonEqual(const KelGeoArc &a, const KelGeoArc &b, double epsilon) noexcept
{
    return KelMath::epsilonEqual(a.decimalDegrees(), b.decimalDegrees(), epsilon);
}

bool KelMapProjection::epsilonEqual(const KelGeoPosition &a, const KelGeoPosition &b, double epsilon) noexcept
{
    return epsilonEqual(a.longitude(), b.longitude(), epsilon) && epsilonEqual(a.latitude(), b.latitude(), epsilon);
}
