// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGEOARC_H
#define KELGEOARC_H

#include <KelGeoLocationGlobal.h>

#include <QString>
#include <QTypeInfo>

#include <cmath>

class QDebug;
class QUrlQuery;
class QVariant;

/// An angle in decimal degrees; north and east are positive, south and west negative.
///
/// The number is stored as it comes, nothing is folded into a range. A value is valid from -360 to +360, both
/// included. INVALID (720) marks what could not be read or computed; a default-constructed angle holds it, too.
/// Arithmetic does not look at validity: 720 + 1 is 721.
///
/// Two angles are equal when they differ by less than TOLERANCE (a millionth of a degree, some ten centimetres on
/// the ground). `<` and `>` compare the plain numbers, `<=` and `>=` include the equal ones. So 89.9999995 is less
/// than 90 and equal to 90 at the same time, and equality is not transitive. No hash can follow such an equality, so there
/// is no qHash() for angles and for ranges and rectangles of them; QMap and sorting work.
///
/// The subclasses KelLatitude and KelLongitude know about hemispheres, their legal ranges and compass letters.
class KELGEOLOCATION_EXPORT KelGeoArc
{
public:
    /// Marks an angle that could not be read or computed.
    static constexpr double INVALID = 720.0;
    /// Angles that differ by less than this many degrees are equal.
    static constexpr double TOLERANCE = 1e-6;

    KelGeoArc() noexcept = default;
    /// Implicit on purpose: a number of degrees is an angle. Any number is stored.
    KelGeoArc(double decimalDegrees) noexcept
        : m_decimalDegrees(decimalDegrees)
    {
    }
    KelGeoArc(const KelGeoArc &other) noexcept = default;
    KelGeoArc(KelGeoArc &&other) noexcept = default;
    KelGeoArc &operator=(const KelGeoArc &other) noexcept = default;
    KelGeoArc &operator=(KelGeoArc &&other) noexcept = default;
    virtual ~KelGeoArc() = default;

    /// The letter of the compass direction; empty for a bare angle.
    [[nodiscard]] virtual QString directionIndicator() const;

    /// The stored number of degrees, INVALID for the invalid angle.
    [[nodiscard]] double decimalDegrees() const noexcept { return m_decimalDegrees; }
    /// The same as decimalDegrees().
    [[nodiscard]] double degreeF() const noexcept { return m_decimalDegrees; }
    /// Stores any number of degrees, unchecked.
    void setDecimalDegrees(double decimalDegrees) noexcept { m_decimalDegrees = decimalDegrees; }

    /// Sets the angle from its parts, which all carry the same sign: -0.5 degrees are (0, -30, 0.0). The parts are
    /// added up as they are, sixty minutes and more included.
    void setDegree(int degree, int minute, double second) noexcept;

    /// Whole degrees, truncated toward zero. What does not fit a 32-bit integer gives its end (plus or minus
    /// 2147483647), NaN gives 0; the same holds for the minutes that minute() is the remainder of.
    [[nodiscard]] int degree() const noexcept;
    /// Whole minutes within the degree, -59 to 59, with the sign of the angle.
    [[nodiscard]] int minute() const noexcept;
    /// Minutes within the degree with their fraction, never negative.
    [[nodiscard]] double minuteF() const noexcept;
    /// Seconds within the minute with their fraction and with the sign of the angle. The rounding of decimal
    /// degrees shows here: 1 degree 40 minutes may split into 39 minutes and 59.999... seconds.
    [[nodiscard]] double secondF() const noexcept;

    /// The stored number of degrees in radians.
    [[nodiscard]] double radians() const noexcept { return m_decimalDegrees * 0.017453292519943295; }
    /// The angle of a number of radians.
    [[nodiscard]] static KelGeoArc fromRadians(double radians) noexcept;

    /// Whether the angle lies within -360 ... +360 degrees, both included, without tolerance.
    [[nodiscard]] bool isValid() const noexcept { return -360.0 <= m_decimalDegrees && m_decimalDegrees <= 360.0; }
    /// Whether the angle is exactly 0 degrees.
    [[nodiscard]] bool isNull() const noexcept { return m_decimalDegrees == 0.0; }

    /// |this - other|, not reduced: 179 and -179 degrees are 358 degrees apart.
    [[nodiscard]] KelGeoArc absDistance(const KelGeoArc &other) const noexcept
    {
        return std::abs(m_decimalDegrees - other.m_decimalDegrees);
    }

    /// Adds the numbers of degrees; nothing is wrapped or clamped.
    KelGeoArc &operator+=(const KelGeoArc &other) noexcept
    {
        m_decimalDegrees += other.m_decimalDegrees;
        return *this;
    }
    [[nodiscard]] friend KelGeoArc operator+(const KelGeoArc &a, const KelGeoArc &b) noexcept
    {
        return a.m_decimalDegrees + b.m_decimalDegrees;
    }
    [[nodiscard]] friend KelGeoArc operator-(const KelGeoArc &a, const KelGeoArc &b) noexcept
    {
        return a.m_decimalDegrees - b.m_decimalDegrees;
    }
    [[nodiscard]] friend KelGeoArc operator*(const KelGeoArc &arc, double factor) noexcept
    {
        return arc.m_decimalDegrees * factor;
    }
    /// INVALID for a divisor of zero.
    [[nodiscard]] friend KelGeoArc operator/(const KelGeoArc &arc, double divisor) noexcept
    {
        return divisor == 0.0 ? INVALID : arc.m_decimalDegrees / divisor;
    }

    [[nodiscard]] friend bool operator==(const KelGeoArc &a, const KelGeoArc &b) noexcept
    {
        return std::abs(a.m_decimalDegrees - b.m_decimalDegrees) < TOLERANCE;
    }
    [[nodiscard]] friend bool operator!=(const KelGeoArc &a, const KelGeoArc &b) noexcept { return !(a == b); }
    [[nodiscard]] friend bool operator<(const KelGeoArc &a, const KelGeoArc &b) noexcept
    {
        return a.m_decimalDegrees < b.m_decimalDegrees;
    }
    [[nodiscard]] friend bool operator>(const KelGeoArc &a, const KelGeoArc &b) noexcept
    {
        return a.m_decimalDegrees > b.m_decimalDegrees;
    }
    [[nodiscard]] friend bool operator<=(const KelGeoArc &a, const KelGeoArc &b) noexcept { return a < b || a == b; }
    [[nodiscard]] friend bool operator>=(const KelGeoArc &a, const KelGeoArc &b) noexcept { return a > b || a == b; }

    /// The decimal degrees with sixteen decimals and their sign, without a letter: "8.2142857142857135".
    [[nodiscard]] QString toString() const;

    /// A variant that holds the decimal degrees.
    [[nodiscard]] QVariant toVariant() const;
    /// The variant's number; INVALID for an empty (null) variant. A variant that holds no number reads as 0.
    [[nodiscard]] static KelGeoArc fromVariant(const QVariant &variant);

    /// Adds an item with the sixteen-decimal text to @p query, for latitudes and longitudes as well.
    void writeTo(QUrlQuery &query, const QString &key) const;

    /// The angle for people. @p format "d" gives "53.144° N" (degrees with @p precision decimals), "dm"
    /// "53° 8.625' N" (minutes with the decimals), anything else 53° 8' 37.5" N (seconds with the decimals).
    /// The numbers are absolute. The letter is that of directionIndicator() and therefore empty for a bare angle,
    /// whose text ends with a blank and does not tell its sign. Nothing is folded, an invalid angle is written too.
    [[nodiscard]] QString humanReadable(const QString &format, int precision) const;

    /// Reads degrees, minutes and seconds separated by commas: "53°,8',30\" N" or "53, 8, 30 N".
    ///
    /// Fewer than three parts give INVALID, further ones are ignored. Degrees and minutes must be whole numbers,
    /// seconds may have a fraction; a part that is no such number counts as 0. An S or W anywhere in the text, in
    /// either case, makes the angle negative, an N or E makes it positive; with both it ends positive. Letters other
    /// than these spoil the part in which they stand. Use parse() of the subclasses for decimal degrees.
    [[nodiscard]] static KelGeoArc fromString(const QString &text);

    /// The absolute angle as the three rationals of an EXIF position: "53/1 8/1 3750000/100000".
    [[nodiscard]] QString toExifRational() const;

private:
    double m_decimalDegrees = INVALID;
};
Q_DECLARE_TYPEINFO(KelGeoArc, Q_RELOCATABLE_TYPE);

/// Writes toString().
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelGeoArc &arc);

#endif
