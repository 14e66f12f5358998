// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelMapGeometry.h"

#include <KelGeoPosition.h>
#include <KelGeoPositionImpl.h>

#include <QPoint>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace
{

constexpr double HIGHEST_LATITUDE = 89.9;

} // namespace

KelMapGeometry::KelMapGeometry(const KelGeoPositionRect &area, const QSize &size)
    : m_projection(area, size)
    , m_size(size)
{
    // The corners as the projection has fitted them tell its scale and offset in full precision.
    const KelGeoPosition northWest = m_projection.convert(QPoint(0, 0));
    const KelGeoPosition southEast = m_projection.convert(QPoint(size.width(), size.height()));
    const double west = m_projection.longitudeToNormalized(northWest.longitude().decimalDegrees());
    const double east = m_projection.longitudeToNormalized(southEast.longitude().decimalDegrees());
    const double north = m_projection.latitudeToNormalized(northWest.latitude().decimalDegrees());
    m_frame.size = size;
    m_frame.worldSize = size.width() / (east - west);
    m_frame.origin = QPointF(-west * m_frame.worldSize, -north * m_frame.worldSize);
}

bool KelMapGeometry::isFinite() const noexcept
{
    return std::isfinite(m_frame.worldSize) && std::isfinite(m_frame.origin.x()) && std::isfinite(m_frame.origin.y());
}

QPointF KelMapGeometry::toPixel(const KelGeoPosition &position) const
{
    return toPixel(position.latitude().decimalDegrees(), position.longitude().decimalDegrees());
}

QPointF KelMapGeometry::toPixel(double latitude, double longitude) const
{
    return m_frame.toPixel(
        m_projection.longitudeToNormalized(longitude),
        m_projection.latitudeToNormalized(std::clamp(latitude, -HIGHEST_LATITUDE, HIGHEST_LATITUDE)));
}

double KelMapGeometry::pixelsPerKilometre() const
{
    const double middle = m_frame.toWorld(QPointF(0, m_size.height() / 2.0)).y();
    const double latitude = m_projection.normalizedToLatitude(middle) * std::numbers::pi / 180.0;
    return m_frame.worldSize / (2.0 * std::numbers::pi * KelGeoPositionImpl::EARTHRADIUS * std::cos(latitude));
}
