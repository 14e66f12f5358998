// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELDISTANCEUNIT_H
#define KELDISTANCEUNIT_H

#include <KelCoreGlobal.h>

#include <QString>

class QDebug;

/// The units of KelDistanceUnit.
enum class KelDistanceUnitEnum {
    Unknown = 0,      ///< a bare number
    Pixel = 1,        ///< length on a picture
    Kilometre = 2,    ///< length on the ground
    Metre = 4,        ///< shown only
    NauticalMile = 8, ///< shown only
};

/// A unit in which a KelDistance is shown. Lengths on a picture are counted in pixels, lengths on the ground in
/// kilometres; the other units are shown only.
class KELCORE_EXPORT KelDistanceUnit
{
public:
    /// Implicit on purpose: the enumerators are the units.
    KelDistanceUnit(KelDistanceUnitEnum unit = KelDistanceUnitEnum::Unknown) noexcept;

    /// From the number of a unit; a number that belongs to none gives the unknown unit.
    explicit KelDistanceUnit(int number) noexcept;

    /// The enumerator of this unit.
    [[nodiscard]] KelDistanceUnitEnum value() const noexcept
    {
        return m_unit;
    }

    /// "px", "km", "m" or "NM"; empty for the unknown unit.
    [[nodiscard]] QString symbol() const;

    /// How much one of this unit counts in a KelDistance: 1 for pixel, kilometre and the unknown unit, 0.001 for the
    /// metre, 1.852 for the nautical mile.
    [[nodiscard]] double factor() const noexcept;

    friend bool operator==(const KelDistanceUnit &a, const KelDistanceUnit &b) noexcept
    {
        return a.m_unit == b.m_unit;
    }

    friend bool operator!=(const KelDistanceUnit &a, const KelDistanceUnit &b) noexcept
    {
        return a.m_unit != b.m_unit;
    }

private:
    KelDistanceUnitEnum m_unit;
};

/// Writes symbol(), or "unknown".
KELCORE_EXPORT QDebug operator<<(QDebug debug, const KelDistanceUnit &unit);

/// Equal units have equal hashes.
[[nodiscard]] KELCORE_EXPORT size_t qHash(const KelDistanceUnit &unit, size_t seed = 0) noexcept;

#endif
