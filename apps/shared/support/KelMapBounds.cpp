// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelMapBounds.h"

#include <KelGeoPosition.h>
#include <KelGeoPositionRect.h>

#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr double MERCATOR_LIMIT = 85.05;

} // namespace

std::optional<KelMapBounds> KelMapBounds::parse(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 4)
        return std::nullopt;
    std::array<double, 4> numbers{};
    for (size_t i = 0; i < numbers.size(); ++i) {
        bool ok = false;
        numbers[i] = parts.at(static_cast<qsizetype>(i)).trimmed().toDouble(&ok);
        if (!ok || !std::isfinite(numbers[i]))
            return std::nullopt;
    }
    const auto [south, west, north, east] = numbers;
    const bool inRange = south >= -90 && north <= 90 && std::abs(west) <= 180 && std::abs(east) <= 180;
    if (!inRange)
        return std::nullopt;
    const KelMapBounds bounds{std::clamp(south, -MERCATOR_LIMIT, MERCATOR_LIMIT), west,
                              std::clamp(north, -MERCATOR_LIMIT, MERCATOR_LIMIT), east};
    // +180 and -180 degrees are one meridian: no width when going east.
    if (bounds.south >= bounds.north || west == east || west - east == 360.0)
        return std::nullopt;
    return bounds;
}

KelMapBounds KelMapBounds::fromRect(const KelGeoPositionRect &rect)
{
    return {rect.south().decimalDegrees(), rect.west().decimalDegrees(), rect.north().decimalDegrees(),
            rect.east().decimalDegrees()};
}

QString KelMapBounds::toString() const
{
    return QStringLiteral("%1,%2,%3,%4")
        .arg(south, 0, 'f', 5)
        .arg(west, 0, 'f', 5)
        .arg(north, 0, 'f', 5)
        .arg(east, 0, 'f', 5);
}

KelGeoPositionRect KelMapBounds::toRect() const
{
    return {KelGeoPosition(south, west), KelGeoPosition(north, east)};
}
