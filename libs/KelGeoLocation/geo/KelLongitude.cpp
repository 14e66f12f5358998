// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelLongitude.h"

#include <KelDebugText.h>

#include <QCoreApplication>
#include <QObject>

#include <cmath>

namespace
{

constexpr double dateLine = 180.0;
constexpr double wholeTurn = 360.0;

} // namespace

KelLongitude KelLongitude::safeLongitude(double decimalDegrees) noexcept
{
    if (!std::isfinite(decimalDegrees) || std::abs(decimalDegrees) <= dateLine)
        return decimalDegrees;
    // Taking whole turns off one by one is exact in every step, and so is the remainder; the latter also ends
    // for numbers that are so large that a turn is lost on them. Adding 0.0 makes a zero positive, which it
    // would be in a sum.
    const double rest = std::fmod(decimalDegrees, wholeTurn) + 0.0;
    if (rest > dateLine)
        return rest - wholeTurn;
    if (rest < -dateLine)
        return rest + wholeTurn;
    return rest;
}

KelLongitude KelLongitude::bounded() const noexcept
{
    if (*this < -dateLine)
        return -dateLine;
    if (*this > dateLine)
        return dateLine;
    return *this;
}

QString KelLongitude::directionIndicator() const
{
    return isInWesternHemisphere() ? QCoreApplication::translate("KelLongitude", "W", "short for 'west'")
                                   : QCoreApplication::translate("KelLongitude", "E", "short for 'east'");
}

KelLongitude KelLongitude::parse(const QString &text)
{
    double sign = 1.0;
    QString number = text;
    if (text.startsWith(QLatin1Char('E'))) {
        number.remove(0, 1);
    } else if (text.startsWith(QLatin1Char('W'))) {
        sign = -1.0;
        number.remove(0, 1);
    }
    bool ok = false;
    const double value = number.toDouble(&ok);
    return ok ? value * sign : INVALID;
}

QString KelLongitude::toString(bool dms) const
{
    if (!isValid())
        return QString();
    if (!dms)
        return directionIndicator() + QString::number(std::abs(decimalDegrees()), 'f', 8);
    const QString format = isInWesternHemisphere()
        ? QObject::tr("%1° %2′ %3″ West", "Coordinate / Nautilal Bearing   Longitude/Länge")
        : QObject::tr("%1° %2′ %3″ Ost", "Coordinate / Nautilal Bearing   Longitude/Länge");
    return format.arg(std::abs(degree())).arg(std::abs(minute())).arg(std::abs(secondF()));
}

QDebug operator<<(QDebug debug, const KelLongitude &longitude)
{
    return KelDebugText::write(debug, longitude.toString(false));
}
