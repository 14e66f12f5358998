// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGeoPositionRect.h"

#include <KelDebugText.h>
#include <KelGeoPosition.h>

#include <QUrlQuery>

namespace
{

constexpr double verySmall = 1.0;
constexpr double reasonableMargin = 1.0;
constexpr double marginAroundSinglePlace = 0.1;

} // namespace

KelGeoPositionRect::KelGeoPositionRect(const KelGeoPosition &southWest, const KelGeoPosition &northEast)
    : m_latitudeRange(southWest.latitude(), northEast.latitude())
    , m_longitudeRange(southWest.longitude(), northEast.longitude())
{
}

KelGeoPositionRect::KelGeoPositionRect(const KelLatitudeRange &latitudeRange, const KelLongitudeRange &longitudeRange)
    : m_latitudeRange(latitudeRange)
    , m_longitudeRange(longitudeRange)
{
}

KelGeoPositionRect::~KelGeoPositionRect() = default;

KelGeoPositionRect KelGeoPositionRect::spawn(const KelGeoPosition &a, const KelGeoPosition &b)
{
    return KelGeoPositionRect(KelLatitudeRange::spawn(a.latitude(), b.latitude()),
                              KelLongitudeRange::spawn(a.longitude(), b.longitude()));
}

KelGeoPositionRect KelGeoPositionRect::europeanUnion()
{
    return KelGeoPositionRect(KelLatitudeRange(40.0, 60.0), KelLongitudeRange(-10.0, 30.0));
}

bool KelGeoPositionRect::isDefault() const
{
    return *this == europeanUnion();
}

KelGeoPositionRect KelGeoPositionRect::parse(const QUrlQuery &query)
{
    return KelGeoPositionRect(KelLatitudeRange::parse(query), KelLongitudeRange::parse(query));
}

void KelGeoPositionRect::writeTo(QUrlQuery &query) const
{
    m_latitudeRange.writeTo(query);
    m_longitudeRange.writeTo(query);
}

bool KelGeoPositionRect::operator==(const KelGeoPositionRect &other) const
{
    return m_latitudeRange == other.m_latitudeRange && m_longitudeRange == other.m_longitudeRange;
}

KelGeoPosition KelGeoPositionRect::northWest() const
{
    return KelGeoPosition(north(), west());
}

KelGeoPosition KelGeoPositionRect::southEast() const
{
    return KelGeoPosition(south(), east());
}

KelGeoPosition KelGeoPositionRect::center() const
{
    return KelGeoPosition((south() + north()) / 2.0, m_longitudeRange.center());
}

bool KelGeoPositionRect::contains(const KelGeoPosition &position) const
{
    return m_latitudeRange.contains(position.latitude()) && m_longitudeRange.contains(position.longitude());
}

bool KelGeoPositionRect::contains(const KelGeoPositionRect &other) const
{
    return m_latitudeRange.contains(other.south()) && m_latitudeRange.contains(other.north())
        && m_longitudeRange.contains(other.m_longitudeRange);
}

bool KelGeoPositionRect::isValid() const
{
    return m_longitudeRange.isValid() && m_latitudeRange.isValid();
}

bool KelGeoPositionRect::isNull() const
{
    return east() == west() && north() == south() && east() == 0.0 && north() == 0.0;
}

KelGeoArc KelGeoPositionRect::maxExtension() const
{
    const KelGeoArc latitudeExtent = north().absDistance(south());
    const KelGeoArc longitudeExtent = east().absDistance(west());
    return longitudeExtent > latitudeExtent ? longitudeExtent : latitudeExtent;
}

bool KelGeoPositionRect::isVerySmall() const
{
    return maxExtension() < verySmall;
}

double KelGeoPositionRect::estimatedSize() const
{
    return m_latitudeRange.height().decimalDegrees() * m_longitudeRange.width().decimalDegrees();
}

void KelGeoPositionRect::blowUp(double degrees)
{
    m_latitudeRange.blowUp(degrees);
    m_longitudeRange.blowUp(degrees);
}

KelGeoPositionRect KelGeoPositionRect::blownUp(double degrees) const
{
    KelGeoPositionRect result(*this);
    result.blowUp(degrees);
    return result;
}

KelGeoPositionRect KelGeoPositionRect::toReasonableSize() const
{
    return isVerySmall() ? blownUp(reasonableMargin) : *this;
}

KelGeoPositionRect KelGeoPositionRect::withPadding(double percent) const
{
    if (!isValid() || percent == 0.0)
        return *this;
    const KelGeoArc extension = maxExtension();
    if (extension == 0.0)
        return blownUp(marginAroundSinglePlace);
    return blownUp(extension.decimalDegrees() * percent / 100.0);
}

void KelGeoPositionRect::expandTo(const KelGeoPosition &position)
{
    if (!position.isValid())
        return;
    m_latitudeRange.expandTo(position.latitude());
    m_longitudeRange.expandTo(position.longitude());
}

void KelGeoPositionRect::expandTo(const KelGeoPositionRect &other)
{
    if (!other.isValid())
        return;
    m_latitudeRange.expandTo(other.north());
    m_latitudeRange.expandTo(other.south());
    // East before west: the order decides what a rectangle that crosses the date line becomes.
    m_longitudeRange.expandTo(other.east());
    m_longitudeRange.expandTo(other.west());
}

KelGeoPositionRect KelGeoPositionRect::operator+(const KelGeoPositionRect &other) const
{
    KelGeoPositionRect result(*this);
    result.expandTo(other);
    return result;
}

QString KelGeoPositionRect::toString(bool dms) const
{
    return m_latitudeRange.toString(dms) + QLatin1String(" ; ") + m_longitudeRange.toString(dms);
}

QDebug operator<<(QDebug debug, const KelGeoPositionRect &rect)
{
    return KelDebugText::write(debug, QLatin1String("Lat: ") + rect.latitudeRange().toString(false)
                                          + QLatin1String(" ; Lon:") + rect.longitudeRange().toString(false));
}
