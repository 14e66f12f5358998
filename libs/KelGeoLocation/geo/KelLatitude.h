// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELLATITUDE_H
#define KELLATITUDE_H

#include <KelGeoArc.h>
#include <KelGeoLocationGlobal.h>

/// A latitude in decimal degrees, north positive. The legal range is -90 to +90; as for every angle, other numbers
/// can be stored, and isInValidRange() tells. Zero lies in the northern hemisphere.
///
/// Comparison and arithmetic follow KelGeoArc (tolerance of a millionth of a degree) and give latitudes.
class KELGEOLOCATION_EXPORT KelLatitude : public KelGeoArc
{
public:
    KelLatitude() noexcept = default;
    /// Implicit on purpose: a number of degrees is a latitude, north positive. Any number is stored.
    KelLatitude(double decimalDegrees) noexcept
        : KelGeoArc(decimalDegrees)
    {
    }
    /// Takes over the number of any angle.
    explicit KelLatitude(const KelGeoArc &arc) noexcept
        : KelGeoArc(arc.decimalDegrees())
    {
    }

    /// Folds a number of degrees into -90 ... +90 by adding or subtracting half turns.
    ///
    /// Both ends stay as they are. Infinite numbers and NaN come back unchanged, and are not valid.
    // Deliberate: half turns, no reflection at the pole. 100 becomes -80, not 80.
    [[nodiscard]] static KelLatitude safeLatitude(double decimalDegrees) noexcept;

    /// Strictly, without tolerance.
    [[nodiscard]] bool isNorthOf(const KelLatitude &other) const noexcept { return *this > other; }
    /// Strictly, without tolerance.
    [[nodiscard]] bool isSouthOf(const KelLatitude &other) const noexcept { return *this < other; }
    /// The equator counts as northern.
    [[nodiscard]] bool isInNorthernHemisphere() const noexcept { return !isInSouthernHemisphere(); }
    /// Strictly south of the equator.
    [[nodiscard]] bool isInSouthernHemisphere() const noexcept { return isSouthOf(0.0); }
    /// Whether the latitude lies within -90 ... +90, with the tolerance of the angles at both ends.
    [[nodiscard]] bool isInValidRange() const noexcept { return *this >= -90.0 && *this <= 90.0; }

    /// Clamped to -90 ... +90.
    [[nodiscard]] KelLatitude bounded() const noexcept;
    /// Pulls a pole, and what lies beyond it, back by a hundredth of a degree (89.99), where Mercator projections
    /// are still finite. Latitudes between the poles stay as they are.
    [[nodiscard]] KelLatitude catchOutOfBound() const noexcept;

    /// "N" or "S", translated.
    [[nodiscard]] QString directionIndicator() const override;

    /// Reads decimal degrees with an optional capital N or S in front: "S12.5", "N53.1", "-7". Anything else,
    /// a lower-case or trailing letter or a degree sign included, gives an invalid latitude.
    [[nodiscard]] static KelLatitude parse(const QString &text);

    /// With @p dms false "N53.14375000", always with eight decimals; with true degrees, minutes and seconds with a
    /// word, "53° 30′ 0″ Nord" (translated), the seconds with up to six significant digits. An invalid latitude gives a
    /// null text.
    [[nodiscard]] QString toString(bool dms) const;

    /// Adds the numbers of degrees; nothing is clamped.
    KelLatitude &operator+=(const KelLatitude &other) noexcept
    {
        KelGeoArc::operator+=(other);
        return *this;
    }
    [[nodiscard]] friend KelLatitude operator+(const KelLatitude &a, const KelLatitude &b) noexcept
    {
        return a.decimalDegrees() + b.decimalDegrees();
    }
    [[nodiscard]] friend KelLatitude operator-(const KelLatitude &a, const KelLatitude &b) noexcept
    {
        return a.decimalDegrees() - b.decimalDegrees();
    }
    [[nodiscard]] friend KelLatitude operator*(const KelLatitude &latitude, double factor) noexcept
    {
        return latitude.decimalDegrees() * factor;
    }
    /// An invalid latitude for a divisor of zero.
    [[nodiscard]] friend KelLatitude operator/(const KelLatitude &latitude, double divisor) noexcept
    {
        return divisor == 0.0 ? INVALID : latitude.decimalDegrees() / divisor;
    }

    [[nodiscard]] friend bool operator==(const KelLatitude &a, const KelLatitude &b) noexcept
    {
        return std::abs(a.decimalDegrees() - b.decimalDegrees()) < TOLERANCE;
    }
    [[nodiscard]] friend bool operator!=(const KelLatitude &a, const KelLatitude &b) noexcept { return !(a == b); }
    [[nodiscard]] friend bool operator<(const KelLatitude &a, const KelLatitude &b) noexcept
    {
        return a.decimalDegrees() < b.decimalDegrees();
    }
    [[nodiscard]] friend bool operator>(const KelLatitude &a, const KelLatitude &b) noexcept
    {
        return a.decimalDegrees() > b.decimalDegrees();
    }
    [[nodiscard]] friend bool operator<=(const KelLatitude &a, const KelLatitude &b) noexcept
    {
        return a < b || a == b;
    }
    [[nodiscard]] friend bool operator>=(const KelLatitude &a, const KelLatitude &b) noexcept
    {
        return a > b || a == b;
    }
};
Q_DECLARE_TYPEINFO(KelLatitude, Q_RELOCATABLE_TYPE);

/// Writes toString(false) and a degree sign.
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelLatitude &latitude);

#endif
