// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGEOPOSITIONRECT_H
#define KELGEOPOSITIONRECT_H

#include <KelGeoArc.h>
#include <KelGeoLocationGlobal.h>
#include <KelLatitudeRange.h>
#include <KelLongitudeRange.h>

#include <QString>

class KelGeoPosition;
class QDebug;
class QUrlQuery;

/// A rectangle on the globe: a latitude range and a longitude range, which may cross the date line.
///
/// A default-constructed rectangle has all bounds at the invalid 720; expandTo() and operator+ grow it from there.
/// Growing by positions never makes a rectangle cross the date line, so the bounding box of 170 and -170 spans the
/// long way round; see KelLongitudeList::effectiveRange() for the short one.
class KELGEOLOCATION_EXPORT KelGeoPositionRect
{
public:
    KelGeoPositionRect() = default;
    /// The rectangle between its south-western and its north-eastern corner; nothing is put in order.
    KelGeoPositionRect(const KelGeoPosition &southWest, const KelGeoPosition &northEast);
    /// Both ranges as they are, unchecked.
    KelGeoPositionRect(const KelLatitudeRange &latitudeRange, const KelLongitudeRange &longitudeRange);
    KelGeoPositionRect(const KelGeoPositionRect &other) = default;
    KelGeoPositionRect(KelGeoPositionRect &&other) noexcept = default;
    KelGeoPositionRect &operator=(const KelGeoPositionRect &other) = default;
    KelGeoPositionRect &operator=(KelGeoPositionRect &&other) noexcept = default;
    virtual ~KelGeoPositionRect();

    /// The rectangle between any two opposite corners, the shorter way round the globe.
    [[nodiscard]] static KelGeoPositionRect spawn(const KelGeoPosition &a, const KelGeoPosition &b);
    /// Latitudes 40 to 60, longitudes -10 to 30: the default map area.
    [[nodiscard]] static KelGeoPositionRect europeanUnion();
    /// Whether this is the default map area.
    [[nodiscard]] bool isDefault() const;

    /// Reads the four bounds from the items of @p query (keys of the two ranges); missing ones are invalid.
    [[nodiscard]] static KelGeoPositionRect parse(const QUrlQuery &query);
    /// Adds the four bounds to @p query: "latitude_max", "latitude_min", "longitude_max", "longitude_min".
    void writeTo(QUrlQuery &query) const;

    /// All four bounds are equal within the tolerance of the angles.
    [[nodiscard]] bool operator==(const KelGeoPositionRect &other) const;
    /// The opposite of equality.
    [[nodiscard]] bool operator!=(const KelGeoPositionRect &other) const { return !(*this == other); }

    /// The northern bound.
    [[nodiscard]] KelLatitude north() const noexcept { return m_latitudeRange.north(); }
    /// The southern bound.
    [[nodiscard]] KelLatitude south() const noexcept { return m_latitudeRange.south(); }
    /// The eastern bound; less than the western one across the date line.
    [[nodiscard]] KelLongitude east() const noexcept { return m_longitudeRange.east(); }
    /// The western bound.
    [[nodiscard]] KelLongitude west() const noexcept { return m_longitudeRange.west(); }
    /// From south to north.
    [[nodiscard]] KelLatitudeRange latitudeRange() const { return m_latitudeRange; }
    /// From west to east.
    [[nodiscard]] KelLongitudeRange longitudeRange() const { return m_longitudeRange; }
    /// The corner at the top left of a map.
    [[nodiscard]] KelGeoPosition northWest() const;
    /// The corner at the bottom right of a map.
    [[nodiscard]] KelGeoPosition southEast() const;
    /// The middle, also of a rectangle that crosses the date line.
    [[nodiscard]] KelGeoPosition center() const;

    /// Whether the position lies in the rectangle, bounds included.
    [[nodiscard]] bool contains(const KelGeoPosition &position) const;
    /// Whether all bounds of @p other lie in this rectangle.
    [[nodiscard]] bool contains(const KelGeoPositionRect &other) const;

    /// Whether both ranges are valid.
    [[nodiscard]] bool isValid() const;
    /// Whether all four bounds are 0.
    [[nodiscard]] bool isNull() const;

    /// The greater of height and width, in degrees, both taken absolutely.
    [[nodiscard]] KelGeoArc maxExtension() const;
    /// Whether maxExtension() is less than one degree.
    [[nodiscard]] bool isVerySmall() const;
    /// Height times width in square degrees.
    // Deliberate: not corrected for a rectangle that crosses the date line, whose width is negative.
    [[nodiscard]] double estimatedSize() const;

    /// Moves all bounds outwards by @p degrees, clamped at the poles and at -180 and +180.
    void blowUp(double degrees);
    /// A copy after blowUp().
    [[nodiscard]] KelGeoPositionRect blownUp(double degrees) const;
    /// A copy, blown up by one degree if it isVerySmall().
    [[nodiscard]] KelGeoPositionRect toReasonableSize() const;
    /// A copy, blown up by @p percent of maxExtension(); by 0.1 degree if that is 0 (a single place).
    /// An invalid rectangle, or one padded by 0 percent, comes back unchanged.
    [[nodiscard]] KelGeoPositionRect withPadding(double percent) const;

    /// Grows the rectangle to the position, if that is valid (KelRange::expandTo(), KelLongitudeRange::expandTo()).
    void expandTo(const KelGeoPosition &position);
    /// Grows the rectangle to the bounds of @p other, if that is valid.
    void expandTo(const KelGeoPositionRect &other);
    /// A copy, grown to the bounds of @p other.
    [[nodiscard]] KelGeoPositionRect operator+(const KelGeoPositionRect &other) const;

    /// "S33.50000000 - N12.00000000 ; W10.00000000 - E30.00000000", or all bounds in degrees, minutes and seconds.
    [[nodiscard]] QString toString(bool dms) const;

private:
    KelLatitudeRange m_latitudeRange;
    KelLongitudeRange m_longitudeRange;
};

/// Writes "Lat: ", the latitude range, " ; Lon:" and the longitude range.
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelGeoPositionRect &rect);

#endif
