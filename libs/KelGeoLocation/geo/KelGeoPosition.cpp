// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGeoPosition.h"

#include <KelDebugText.h>
#include <KelGeoPositionImpl.h>

#include <QDomElement>
#include <QHashFunctions>
#include <QRegularExpression>
#include <QStringList>
#include <QUrlQuery>

#include <algorithm>
#include <cmath>

namespace
{

const QLatin1String latitudeName("latitude");
const QLatin1String longitudeName("longitude");
const QLatin1String missingCoordinate("-720.0");

double sineSquare(double angle) noexcept
{
    const double sine = std::sin(angle);
    return sine * sine;
}

double readCoordinate(const QDomElement &element, const QString &name)
{
    return element.attribute(name, missingCoordinate).toDouble();
}

// New data that nobody else knows: its first handle need not be counted atomically.
QSharedDataPointer<KelGeoPositionImpl> firstHandle(KelGeoPositionImpl *data) noexcept
{
    data->ref.storeRelaxed(1);
    return QSharedDataPointer<KelGeoPositionImpl>(data, QAdoptSharedDataTag());
}

// Part of what distance() costs, hence no call.
inline bool isValidPosition(const KelGeoPositionImpl &data) noexcept
{
    return data.latitude.isValid() && data.longitude.isValid() && !(data.latitude.isNull() && data.longitude.isNull());
}

KelGeoPosition validOrDefault(const KelLatitude &latitude, const KelLongitude &longitude)
{
    // The angles are tested, not the position: a text that says (0, 0) means it.
    return latitude.isValid() && longitude.isValid() ? KelGeoPosition(latitude, longitude) : KelGeoPosition();
}

} // namespace

KelGeoPosition::KelGeoPosition()
    : d(firstHandle(new KelGeoPositionImpl))
{
}

KelGeoPosition::KelGeoPosition(const KelLatitude &latitude, const KelLongitude &longitude)
    : d(firstHandle(new KelGeoPositionImpl(latitude, longitude)))
{
}

KelGeoPosition::KelGeoPosition(double latitude, double longitude)
    : d(firstHandle(new KelGeoPositionImpl(latitude, longitude)))
{
}

KelGeoPosition::KelGeoPosition(double latitude, char latitudeHemisphere, double longitude, char longitudeHemisphere)
    : KelGeoPosition(latitudeHemisphere == 'N' ? latitude : -latitude,
                     longitudeHemisphere == 'E' ? longitude : -longitude)
{
}

KelGeoPosition::KelGeoPosition(const KelGeoPosition &other) = default;
KelGeoPosition::KelGeoPosition(KelGeoPosition &&other) noexcept = default;
KelGeoPosition &KelGeoPosition::operator=(const KelGeoPosition &other) = default;
KelGeoPosition &KelGeoPosition::operator=(KelGeoPosition &&other) noexcept = default;

KelGeoPosition::~KelGeoPosition()
{
    // Most positions are the only handle of their data, and the last one need not count down.
    if (d.constData() && d.constData()->ref.loadAcquire() == 1)
        delete d.take();
}

KelGeoPosition KelGeoPosition::null()
{
    return KelGeoPosition(0.0, 0.0);
}

KelLatitude KelGeoPosition::latitude() const noexcept
{
    return d->latitude;
}

KelLongitude KelGeoPosition::longitude() const noexcept
{
    return d->longitude;
}

void KelGeoPosition::setLatitude(const KelLatitude &latitude)
{
    d->latitude = latitude;
}

void KelGeoPosition::setLongitude(const KelLongitude &longitude)
{
    d->longitude = longitude;
}

void KelGeoPosition::catchLatitude()
{
    setLatitude(latitude().catchOutOfBound());
}

bool KelGeoPosition::isValid() const noexcept
{
    return isValidPosition(*d);
}

bool KelGeoPosition::operator==(const KelGeoPosition &other) const noexcept
{
    return d == other.d || (d->latitude == other.d->latitude && d->longitude == other.d->longitude);
}

bool KelGeoPosition::operator<(const KelGeoPosition &other) const noexcept
{
    return d->latitude == other.d->latitude ? d->longitude < other.d->longitude : d->latitude < other.d->latitude;
}

bool KelGeoPosition::operator>(const KelGeoPosition &other) const noexcept
{
    return d->latitude == other.d->latitude ? d->longitude > other.d->longitude : d->latitude > other.d->latitude;
}

size_t KelGeoPosition::hashValue() const noexcept
{
    return hash(0);
}

size_t KelGeoPosition::hash(size_t seed) const noexcept
{
    return ::qHash(d->latitude.decimalDegrees() + d->longitude.decimalDegrees(), seed);
}

KelGeoPosition KelGeoPosition::operator+(const KelGeoPosition &other) const
{
    return KelGeoPosition(d->latitude + other.d->latitude, d->longitude + other.d->longitude);
}

KelGeoPosition KelGeoPosition::operator/(double divisor) const
{
    return KelGeoPosition(d->latitude / divisor, d->longitude / divisor);
}

KelGeoPosition &KelGeoPosition::operator+=(const KelGeoPosition &other)
{
    return *this = *this + other;
}

KelGeoPosition &KelGeoPosition::operator/=(double divisor)
{
    return *this = *this / divisor;
}

double KelGeoPosition::distance(const KelGeoPosition &other) const noexcept
{
    const KelGeoPositionImpl &here = *d;
    const KelGeoPositionImpl &there = *other.d;
    if (!isValidPosition(here) || !isValidPosition(there))
        return UNREACHABLE_KM;

    const double deltaPhi = here.latitude.absDistance(there.latitude).radians();
    const double deltaLambda = here.longitude.absDistance(there.longitude).radians();
    const double chord = sineSquare(deltaPhi * 0.5)
        + sineSquare(deltaLambda * 0.5) * std::cos(here.latitude.radians()) * std::cos(there.latitude.radians());
    // Rounding can carry exact antipodes a little beyond 1, and the root of 1 - a would be no number.
    const double a = std::min(chord, 1.0);
    const double c = 2.0 * std::atan2(std::sqrt(a), std::sqrt(1.0 - a));
    return c * KelGeoPositionImpl::EARTHRADIUS;
}

KelLatitude KelGeoPosition::latitudeDeviation(double km) const noexcept
{
    return km == 0.0 ? 0.0 : km / KelGeoPositionImpl::ARCMINUTELENGTH / 60.0;
}

KelLongitude KelGeoPosition::longitudeDeviation(double km) const noexcept
{
    if (km == 0.0)
        return 0.0;
    const double phi = d->latitude.decimalDegrees() * KelGeoPositionImpl::PI / 180.0;
    return km / (std::cos(phi) * KelGeoPositionImpl::_2PiR);
}

KelGeoPosition KelGeoPosition::moveNorthBy(double km) const
{
    return KelGeoPosition(d->latitude + latitudeDeviation(km), d->longitude);
}

KelGeoPosition KelGeoPosition::moveEastBy(double km) const
{
    return KelGeoPosition(d->latitude, d->longitude + longitudeDeviation(km));
}

KelGeoPosition KelGeoPosition::normalized() const
{
    return KelGeoPosition(d->latitude, d->longitude.normalized());
}

QPointF KelGeoPosition::toPointF() const noexcept
{
    return QPointF(d->longitude.decimalDegrees(), d->latitude.decimalDegrees());
}

QString KelGeoPosition::toString(bool dms) const
{
    const bool full = dms && d->latitude.isValid() && d->longitude.isValid();
    const QLatin1String separator(full ? "<br>" : "; ");
    return d->latitude.toString(full) + separator + d->longitude.toString(full);
}

void KelGeoPosition::writeToXml(QDomElement &element) const
{
    if (!isValid())
        return;
    element.setAttribute(latitudeName, d->latitude.decimalDegrees());
    element.setAttribute(longitudeName, d->longitude.decimalDegrees());
}

KelGeoPosition KelGeoPosition::fromXml(const QDomElement &element, const QString &prefix)
{
    return KelGeoPosition(readCoordinate(element, prefix + latitudeName),
                          readCoordinate(element, prefix + longitudeName));
}

void KelGeoPosition::writeTo(QUrlQuery &query) const
{
    d->latitude.writeTo(query, latitudeName);
    d->longitude.writeTo(query, longitudeName);
}

KelGeoPosition KelGeoPosition::parse(const QString &text)
{
    static const QRegularExpression whiteSpace(QStringLiteral("\\s+"));

    const QStringList parts = text.trimmed().split(whiteSpace, Qt::KeepEmptyParts);
    if (parts.size() != 2)
        return KelGeoPosition();
    return validOrDefault(KelLatitude::parse(parts.at(0)), KelLongitude::parse(parts.at(1)));
}

KelGeoPosition KelGeoPosition::fromString(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(';'), Qt::KeepEmptyParts, Qt::CaseSensitive);
    if (parts.size() < 2)
        return KelGeoPosition();
    return validOrDefault(KelLatitude(KelGeoArc::fromString(parts.at(0).trimmed())),
                          KelLongitude(KelGeoArc::fromString(parts.at(1).trimmed())));
}

QDebug operator<<(QDebug debug, const KelGeoPosition &position)
{
    const auto number = [](const KelGeoArc &arc) { return QString::number(arc.decimalDegrees(), 'g', 8); };
    return KelDebugText::write(debug, QLatin1String("Lat") + number(position.latitude()) + QLatin1String("; Lon")
                                          + number(position.longitude()));
}
