// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelLatitude.h"

#include <KelDebugText.h>

#include <QCoreApplication>
#include <QObject>

#include <cmath>

namespace
{

constexpr double pole = 90.0;
constexpr double halfTurn = 180.0;
constexpr double distanceFromPole = 0.01;

} // namespace

KelLatitude KelLatitude::safeLatitude(double decimalDegrees) noexcept
{
    if (!std::isfinite(decimalDegrees) || std::abs(decimalDegrees) <= pole)
        return decimalDegrees;
    // Taking half turns off one by one is exact in every step, and so is the remainder; the latter also ends
    // for numbers that are so large that a half turn is lost on them. Adding 0.0 makes a zero positive, which
    // it would be in a sum.
    const double rest = std::fmod(decimalDegrees, halfTurn) + 0.0;
    if (rest > pole)
        return rest - halfTurn;
    if (rest < -pole)
        return rest + halfTurn;
    return rest;
}

KelLatitude KelLatitude::bounded() const noexcept
{
    if (*this < -pole)
        return -pole;
    if (*this > pole)
        return pole;
    return *this;
}

KelLatitude KelLatitude::catchOutOfBound() const noexcept
{
    if (*this <= -pole)
        return -pole + distanceFromPole;
    if (*this >= pole)
        return pole - distanceFromPole;
    return *this;
}

QString KelLatitude::directionIndicator() const
{
    return isInNorthernHemisphere() ? QCoreApplication::translate("KelLatitude", "N", "short for 'north'")
                                    : QCoreApplication::translate("KelLatitude", "S", "short for 'south'");
}

KelLatitude KelLatitude::parse(const QString &text)
{
    double sign = 1.0;
    QString number = text;
    if (text.startsWith(QLatin1Char('N'))) {
        number.remove(0, 1);
    } else if (text.startsWith(QLatin1Char('S'))) {
        sign = -1.0;
        number.remove(0, 1);
    }
    bool ok = false;
    const double value = number.toDouble(&ok);
    return ok ? value * sign : INVALID;
}

QString KelLatitude::toString(bool dms) const
{
    if (!isValid())
        return QString();
    if (!dms)
        return directionIndicator() + QString::number(std::abs(decimalDegrees()), 'f', 8);
    const QString format = isInNorthernHemisphere()
        ? QObject::tr("%1° %2′ %3″ Nord", "Coordinate / Nautical Bearing  Latitude  Breite")
        : QObject::tr("%1° %2′ %3″ Süd", "Coordinate / Nautical Bearing  Latitude  Breite");
    return format.arg(std::abs(degree())).arg(std::abs(minute())).arg(std::abs(secondF()));
}

QDebug operator<<(QDebug debug, const KelLatitude &latitude)
{
    return KelDebugText::write(debug, latitude.toString(false) + QChar(0x00b0));
}
