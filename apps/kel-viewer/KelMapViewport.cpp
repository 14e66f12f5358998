// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelMapViewport.h"

#include <KelGeoPositionRect.h>
#include <KelMapProjection.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double SMALLEST_WORLD = 128.0;
constexpr double LARGEST_WORLD = 256.0 * (1 << 22);
constexpr double LARGEST_FITTED_WORLD = 256.0 * (1 << 17);
// A single place would fit at any scale: enough of its surroundings to see where it lies.
constexpr double PLACE_WORLD = 256.0 * (1 << 9);
constexpr double PLACE_EXTENT = 1e-7; // of the world: about four metres
constexpr double WIDEST_FIT_LATITUDE = 85.0511;
constexpr double EQUATOR_KILOMETRES = 2.0 * 3.141592653589793 * 6370.0;

/// Only its conversions between degrees and the unit square are used, which do not depend on area or size.
const KelMapProjection &mercator()
{
    static const KelMapProjection projection(KelGeoPositionRect::europeanUnion(), QSize(100, 100));
    return projection;
}

QPointF toUnitSquare(const KelGeoPosition &position)
{
    const double latitude = position.latitude().catchOutOfBound().decimalDegrees();
    return {mercator().longitudeToNormalized(position.longitude().decimalDegrees()),
            mercator().latitudeToNormalized(latitude)};
}

} // namespace

KelMapViewport::KelMapViewport(const QSize &size)
    : m_size(size.expandedTo(QSize(1, 1)))
{
    m_worldSize = std::min(m_size.width(), m_size.height());
    normalize();
}

void KelMapViewport::setSize(const QSize &size)
{
    m_size = size.expandedTo(QSize(1, 1));
}

double KelMapViewport::pixelsPerKilometre() const
{
    const double latitude = mercator().normalizedToLatitude(m_centre.y());
    return m_worldSize / (EQUATOR_KILOMETRES * std::cos(KelLatitude(latitude).radians()));
}

QPointF KelMapViewport::project(const KelGeoPosition &position) const
{
    const QPointF unit = toUnitSquare(position) - m_centre;
    return {unit.x() * m_worldSize + m_size.width() / 2.0, unit.y() * m_worldSize + m_size.height() / 2.0};
}

KelGeoPosition KelMapViewport::unproject(const QPointF &pixel) const
{
    const double x = m_centre.x() + (pixel.x() - m_size.width() / 2.0) / m_worldSize;
    const double y = m_centre.y() + (pixel.y() - m_size.height() / 2.0) / m_worldSize;
    return KelGeoPosition(KelLatitude(mercator().normalizedToLatitude(y)),
                          KelLongitude(KelLongitude::safeLongitude(mercator().normalizedToLongitude(x))));
}

QPointF KelMapViewport::worldOrigin() const
{
    return QPointF(m_size.width() / 2.0, m_size.height() / 2.0) - m_centre * m_worldSize;
}

void KelMapViewport::pan(const QPointF &pixels)
{
    m_centre -= pixels / m_worldSize;
    normalize();
}

void KelMapViewport::zoomAt(const QPointF &pixel, double factor)
{
    const QPointF fromMiddle = pixel - QPointF(m_size.width() / 2.0, m_size.height() / 2.0);
    const QPointF fixed = m_centre + fromMiddle / m_worldSize;
    m_worldSize = std::clamp(m_worldSize * factor, SMALLEST_WORLD, LARGEST_WORLD);
    m_centre = fixed - fromMiddle / m_worldSize;
    normalize();
}

void KelMapViewport::fit(const KelGeoPositionRect &area, double margin)
{
    if (!area.isValid()) {
        *this = KelMapViewport(m_size);
        return;
    }
    const double north = std::min(area.north().decimalDegrees(), WIDEST_FIT_LATITUDE);
    const double south = std::max(area.south().decimalDegrees(), -WIDEST_FIT_LATITUDE);
    const QPointF topLeft = toUnitSquare(KelGeoPosition(KelLatitude(north), area.west()));
    QPointF bottomRight = toUnitSquare(KelGeoPosition(KelLatitude(south), area.east()));
    if (bottomRight.x() < topLeft.x())
        bottomRight.rx() += 1.0;

    m_centre = (topLeft + bottomRight) / 2.0;
    const QPointF extent = bottomRight - topLeft;
    const double share = 1.0 - 2.0 * margin;
    const double byWidth = m_size.width() * share / std::max(extent.x(), 1e-9);
    const double byHeight = m_size.height() * share / std::max(extent.y(), 1e-9);
    const bool isPlace = extent.x() < PLACE_EXTENT && extent.y() < PLACE_EXTENT;
    m_worldSize = std::clamp(std::min(byWidth, byHeight), SMALLEST_WORLD, isPlace ? PLACE_WORLD : LARGEST_FITTED_WORLD);
    normalize();
}

KelMapViewport KelMapViewport::scaled(double factor) const
{
    KelMapViewport result(*this);
    result.m_size = QSize(qRound(m_size.width() * factor), qRound(m_size.height() * factor)).expandedTo(QSize(1, 1));
    result.m_worldSize = m_worldSize * factor;
    return result;
}

QTransform KelMapViewport::transformFrom(const KelMapViewport &older) const
{
    const double factor = m_worldSize / older.m_worldSize;
    QPointF moved = older.m_centre - m_centre;
    moved.rx() -= std::round(moved.x());
    QTransform result;
    result.translate(m_size.width() / 2.0 + moved.x() * m_worldSize, m_size.height() / 2.0 + moved.y() * m_worldSize);
    result.scale(factor, factor);
    result.translate(-older.m_size.width() / 2.0, -older.m_size.height() / 2.0);
    return result;
}

void KelMapViewport::normalize()
{
    m_centre.rx() -= std::floor(m_centre.x());
    m_centre.ry() = std::clamp(m_centre.y(), 0.0, 1.0);
}
