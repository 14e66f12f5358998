// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELLONGITUDE_H
#define KELLONGITUDE_H

#include <KelGeoArc.h>
#include <KelGeoLocationGlobal.h>

/// A longitude in decimal degrees, east positive. The legal range is -180 to +180; as for every angle, other
/// numbers can be stored, and isInValidRange() tells. +180 and -180 are the same meridian, yet two legal numbers
/// that are not equal.
///
/// East and west are decided the shorter way round the globe, so that 179 lies west of -179. Longitudes exactly half
/// a turn apart are neither. Therefore 0, +180 and -180 count as eastern.
///
/// Comparison and arithmetic follow KelGeoArc (tolerance of a millionth of a degree) and give longitudes.
class KELGEOLOCATION_EXPORT KelLongitude : public KelGeoArc
{
public:
    KelLongitude() noexcept = default;
    /// Implicit on purpose: a number of degrees is a longitude, east positive. Any number is stored.
    KelLongitude(double decimalDegrees) noexcept
        : KelGeoArc(decimalDegrees)
    {
    }
    /// Takes over the number of any angle.
    explicit KelLongitude(const KelGeoArc &arc) noexcept
        : KelGeoArc(arc.decimalDegrees())
    {
    }

    /// Wraps a number of degrees into -180 ... +180 by adding or subtracting whole turns.
    ///
    /// Both ends stay as they are. Infinite numbers and NaN come back unchanged, and are not valid.
    [[nodiscard]] static KelLongitude safeLongitude(double decimalDegrees) noexcept;
    /// safeLongitude() of the stored number.
    [[nodiscard]] KelLongitude normalized() const noexcept { return safeLongitude(decimalDegrees()); }

    /// Whether the way from @p other eastwards to this longitude is shorter than half a turn. The same number and
    /// those exactly half a turn apart are neither east nor west of each other. A difference below 0 is raised by
    /// one turn only: longitudes are expected to be in their legal range.
    [[nodiscard]] bool isEastOf(const KelLongitude &other) const noexcept
    {
        double difference = decimalDegrees() - other.decimalDegrees();
        if (difference < 0.0)
            difference += 360.0;
        return 0.0 < difference && difference < 180.0;
    }
    /// The mirror image of isEastOf().
    [[nodiscard]] bool isWestOf(const KelLongitude &other) const noexcept { return other.isEastOf(*this); }
    /// 0, +180 and -180 count as eastern.
    [[nodiscard]] bool isInEasternHemisphere() const noexcept { return !isInWesternHemisphere(); }
    /// Deliberate: -180 is no western longitude, since half a turn from 0 is neither east nor west of it.
    [[nodiscard]] bool isInWesternHemisphere() const noexcept { return isWestOf(0.0); }
    /// Whether the longitude lies within -180 ... +180, with the tolerance of the angles at both ends.
    [[nodiscard]] bool isInValidRange() const noexcept { return *this >= -180.0 && *this <= 180.0; }

    /// Clamped to -180 ... +180, not wrapped.
    [[nodiscard]] KelLongitude bounded() const noexcept;

    /// "E" or "W", translated.
    [[nodiscard]] QString directionIndicator() const override;

    /// Reads decimal degrees with an optional capital E or W in front: "W12.5", "E8.2", "-7". Anything else,
    /// a lower-case or trailing letter or a degree sign included, gives an invalid longitude.
    [[nodiscard]] static KelLongitude parse(const QString &text);

    /// With @p dms false "E8.21400000", always with eight decimals; with true degrees, minutes and seconds with a
    /// word, "8° 30′ 0″ Ost" (translated), the seconds with up to six significant digits. An invalid longitude gives a
    /// null text.
    [[nodiscard]] QString toString(bool dms) const;

    /// Adds the numbers of degrees; nothing is wrapped.
    KelLongitude &operator+=(const KelLongitude &other) noexcept
    {
        KelGeoArc::operator+=(other);
        return *this;
    }
    [[nodiscard]] friend KelLongitude operator+(const KelLongitude &a, const KelLongitude &b) noexcept
    {
        return a.decimalDegrees() + b.decimalDegrees();
    }
    [[nodiscard]] friend KelLongitude operator-(const KelLongitude &a, const KelLongitude &b) noexcept
    {
        return a.decimalDegrees() - b.decimalDegrees();
    }
    [[nodiscard]] friend KelLongitude operator*(const KelLongitude &longitude, double factor) noexcept
    {
        return longitude.decimalDegrees() * factor;
    }
    /// An invalid longitude for a divisor of zero.
    [[nodiscard]] friend KelLongitude operator/(const KelLongitude &longitude, double divisor) noexcept
    {
        return divisor == 0.0 ? INVALID : longitude.decimalDegrees() / divisor;
    }

    [[nodiscard]] friend bool operator==(const KelLongitude &a, const KelLongitude &b) noexcept
    {
        return std::abs(a.decimalDegrees() - b.decimalDegrees()) < TOLERANCE;
    }
    [[nodiscard]] friend bool operator!=(const KelLongitude &a, const KelLongitude &b) noexcept { return !(a == b); }
    [[nodiscard]] friend bool operator<(const KelLongitude &a, const KelLongitude &b) noexcept
    {
        return a.decimalDegrees() < b.decimalDegrees();
    }
    [[nodiscard]] friend bool operator>(const KelLongitude &a, const KelLongitude &b) noexcept
    {
        return a.decimalDegrees() > b.decimalDegrees();
    }
    [[nodiscard]] friend bool operator<=(const KelLongitude &a, const KelLongitude &b) noexcept
    {
        return a < b || a == b;
    }
    [[nodiscard]] friend bool operator>=(const KelLongitude &a, const KelLongitude &b) noexcept
    {
        return a > b || a == b;
    }
};
Q_DECLARE_TYPEINFO(KelLongitude, Q_RELOCATABLE_TYPE);

/// Writes toString(false).
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelLongitude &longitude);

#endif
