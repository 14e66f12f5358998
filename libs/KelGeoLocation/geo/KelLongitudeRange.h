// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELLONGITUDERANGE_H
#define KELLONGITUDERANGE_H

#include <KelGeoLocationGlobal.h>
#include <KelLongitude.h>
#include <KelRange.h>

#include <QString>

class QDebug;
class QUrlQuery;

/// A sector between a western and an eastern longitude, both included.
///
/// The sector runs from west eastwards to east. When the western bound is numerically greater than the eastern one
/// it crosses the date line: west 170, east -170 covers 170 ... 180 and -180 ... -170. A default-constructed range is
/// unset (both bounds 720) and becomes a single longitude by expandTo().
class KELGEOLOCATION_EXPORT KelLongitudeRange : public KelRange<KelLongitude>
{
public:
    /// Keys of the bounds in the query of a URL: "longitude_min" and "longitude_max".
    static const QString QUERY_ITEM_WEST;
    /// \copydoc QUERY_ITEM_WEST
    static const QString QUERY_ITEM_EAST;

    KelLongitudeRange() = default;
    /// Both bounds as they are, unchecked; west greater than east crosses the date line.
    KelLongitudeRange(const KelLongitude &west, const KelLongitude &east)
        : KelRange<KelLongitude>(west, east)
    {
    }
    /// Takes over the bounds of any range of longitudes.
    explicit KelLongitudeRange(const KelRange<KelLongitude> &range)
        : KelRange<KelLongitude>(range)
    {
    }

    /// The range between two longitudes the shorter way round the globe: 170 and -170 give the range across the date
    /// line. Two longitudes exactly half a turn apart are swapped: -90 and 90 give west 90, east -90.
    [[nodiscard]] static KelLongitudeRange spawn(const KelLongitude &a, const KelLongitude &b);
    /// Reads both bounds by KelLongitude::parse(); nothing is checked.
    [[nodiscard]] static KelLongitudeRange parse(const QString &west, const QString &east);
    /// Reads both bounds from the items of @p query; a missing one is invalid.
    [[nodiscard]] static KelLongitudeRange parse(const QUrlQuery &query);

    /// Where the sector begins.
    [[nodiscard]] KelLongitude west() const noexcept { return min(); }
    /// Where the sector ends.
    [[nodiscard]] KelLongitude east() const noexcept { return max(); }
    /// Whether west is greater than east (strictly).
    [[nodiscard]] bool crossesDateLine() const noexcept { return west() > east(); }
    /// East minus west, in degrees.
    // Deliberate: not adjusted, so a range that crosses the date line has a negative width.
    [[nodiscard]] KelLongitude width() const noexcept { return east() - west(); }
    /// Whether the sector is narrower than half a turn. (Half a turn exactly does not count.)
    [[nodiscard]] bool coversNoMoreThanHalfOfTheEarth() const noexcept;

    /// Moves both bounds outwards by @p margin degrees, clamped at -180 and +180, not wrapped.
    void blowUp(const KelLongitude &margin);

    /// The middle of the sector, across the date line where the range crosses it; -180 < center <= 180 then.
    [[nodiscard]] KelLongitude center() const override;
    /// Whether both bounds lie within -180 ... +180 (with the tolerance of the angles), in any order.
    [[nodiscard]] bool isValid() const override;
    /// Whether @p longitude lies in the sector, bounds included.
    [[nodiscard]] bool contains(const KelLongitude &longitude) const override;
    /// Whether both bounds of @p other lie in the sector.
    [[nodiscard]] bool contains(const KelRange<KelLongitude> &other) const override;
    /// Must not be called: ends the process with a fatal message. Test the bounds by contains() instead.
    // Deliberate: disabled, since the test of the base class is wrong for sectors.
    [[nodiscard]] bool intersects(const KelRange<KelLongitude> &other) const override;

    /// Grows the range to @p longitude. A range that does not cross the date line never starts to cross it: the
    /// greater or lesser bound moves. A crossing one moves its western bound to an eastern longitude, and its
    /// eastern bound to a western one.
    void expandTo(const KelLongitude &longitude) override;

    /// Adds both bounds to @p query, the eastern one first.
    void writeTo(QUrlQuery &query) const;
    /// "W10.00000000 - E30.00000000", or both bounds in degrees, minutes and seconds (KelLongitude::toString()).
    [[nodiscard]] QString toString(bool dms) const;
};

/// Writes toString(false).
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelLongitudeRange &range);

#endif
