// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDistanceUnit.h"

#include <algorithm>
#include <array>

#include <QDebug>
#include <QHashFunctions>

namespace
{

struct Unit
{
    KelDistanceUnitEnum value;
    const char *symbol;
    double factor;
};

constexpr std::array Units = {
    Unit{KelDistanceUnitEnum::Unknown, "", 1.0},
    Unit{KelDistanceUnitEnum::Pixel, "px", 1.0},
    Unit{KelDistanceUnitEnum::Kilometre, "km", 1.0},
    Unit{KelDistanceUnitEnum::Metre, "m", 0.001},
    Unit{KelDistanceUnitEnum::NauticalMile, "NM", 1.852},
};

const Unit &find(KelDistanceUnitEnum value)
{
    const auto it = std::find_if(Units.begin(), Units.end(), [value](const Unit &unit) { return unit.value == value; });
    return it == Units.end() ? Units.front() : *it;
}

} // namespace

KelDistanceUnit::KelDistanceUnit(KelDistanceUnitEnum unit) noexcept
    : m_unit(find(unit).value)
{
}

KelDistanceUnit::KelDistanceUnit(int number) noexcept
    : KelDistanceUnit(static_cast<KelDistanceUnitEnum>(number))
{
}

QString KelDistanceUnit::symbol() const
{
    return QLatin1String(find(m_unit).symbol);
}

double KelDistanceUnit::factor() const noexcept
{
    return find(m_unit).factor;
}

QDebug operator<<(QDebug debug, const KelDistanceUnit &unit)
{
    const QDebugStateSaver saver(debug);
    debug.nospace().noquote() << (unit.value() == KelDistanceUnitEnum::Unknown ? QStringLiteral("unknown") : unit.symbol());
    return debug;
}

size_t qHash(const KelDistanceUnit &unit, size_t seed) noexcept
{
    return ::qHash(static_cast<int>(unit.value()), seed);
}
