// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELDISTANCE_H
#define KELDISTANCE_H

#include <KelCoreGlobal.h>

#include <QString>

class KelDistanceUnit;
class QDebug;

/// A length as one number. Whether it counts pixels (line widths), kilometres or pixels per kilometre is agreed between
/// those who pass it on; arithmetic and comparison use the bare number and compare exactly. Negative, infinite and NaN
/// values are kept and behave as doubles do.
class KELCORE_EXPORT KelDistance
{
public:
    /// The null distance, 0.
    constexpr KelDistance() noexcept = default;

    /// Implicit on purpose: a number is a distance.
    constexpr KelDistance(double value) noexcept
        : m_value(value)
    {
    }

    /// The bare number.
    [[nodiscard]] constexpr double value() const noexcept
    {
        return m_value;
    }

    /// Another name of value().
    [[nodiscard]] constexpr double toDouble() const noexcept
    {
        return m_value;
    }

    /// True for exactly 0.
    [[nodiscard]] constexpr bool isNull() const noexcept
    {
        return m_value == 0.0;
    }

    /// The distance as text in the unit: its value divided by the unit's factor, with the given number of decimals and
    /// a point, and, if showUnit, a blank and the unit's symbol: KelDistance(10) in pixels with one decimal is
    /// "10.0 px". The unknown unit has no symbol and adds nothing.
    [[nodiscard]] QString describe(const KelDistanceUnit &unit, int decimals, bool showUnit) const;

    /// Adds the bare numbers.
    constexpr KelDistance &operator+=(const KelDistance &other) noexcept
    {
        m_value += other.m_value;
        return *this;
    }

    /// Subtracts the bare numbers.
    constexpr KelDistance &operator-=(const KelDistance &other) noexcept
    {
        m_value -= other.m_value;
        return *this;
    }

    friend constexpr KelDistance operator+(const KelDistance &a, const KelDistance &b) noexcept
    {
        return KelDistance(a.m_value + b.m_value);
    }

    friend constexpr KelDistance operator-(const KelDistance &a, const KelDistance &b) noexcept
    {
        return KelDistance(a.m_value - b.m_value);
    }

    friend constexpr KelDistance operator*(const KelDistance &a, double factor) noexcept
    {
        return KelDistance(a.m_value * factor);
    }

    friend constexpr KelDistance operator*(double factor, const KelDistance &a) noexcept
    {
        return KelDistance(factor * a.m_value);
    }

    /// A number divides a distance into a distance; division by 0 gives an infinite one.
    friend constexpr KelDistance operator/(const KelDistance &a, double divisor) noexcept
    {
        return KelDistance(a.m_value / divisor);
    }

    /// The ratio of two distances is a plain number; division by the null distance gives infinity or NaN.
    friend constexpr double operator/(const KelDistance &a, const KelDistance &b) noexcept
    {
        return a.m_value / b.m_value;
    }

    friend constexpr bool operator==(const KelDistance &a, const KelDistance &b) noexcept
    {
        return a.m_value == b.m_value;
    }

    friend constexpr bool operator!=(const KelDistance &a, const KelDistance &b) noexcept
    {
        return a.m_value != b.m_value;
    }

    friend constexpr bool operator<(const KelDistance &a, const KelDistance &b) noexcept
    {
        return a.m_value < b.m_value;
    }

    friend constexpr bool operator>(const KelDistance &a, const KelDistance &b) noexcept
    {
        return a.m_value > b.m_value;
    }

    friend constexpr bool operator<=(const KelDistance &a, const KelDistance &b) noexcept
    {
        return a.m_value <= b.m_value;
    }

    friend constexpr bool operator>=(const KelDistance &a, const KelDistance &b) noexcept
    {
        return a.m_value >= b.m_value;
    }

private:
    double m_value = 0.0;
};

/// Writes the number, which has no unit.
KELCORE_EXPORT QDebug operator<<(QDebug debug, const KelDistance &distance);

/// Equal distances have equal hashes.
[[nodiscard]] KELCORE_EXPORT size_t qHash(const KelDistance &distance, size_t seed = 0) noexcept;

#endif
