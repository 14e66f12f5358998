// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGEOPOSITION_H
#define KELGEOPOSITION_H

#include <KelGeoLocationGlobal.h>
#include <KelLatitude.h>
#include <KelLongitude.h>

#include <QPointF>
#include <QSharedDataPointer>
#include <QString>
#include <QTypeInfo>

#include <utility>

class KelGeoPositionImpl;
class QDebug;
class QDomElement;
class QUrlQuery;

/// A point on the globe: a latitude and a longitude in decimal degrees. Distances are in kilometres, on a sphere of
/// 6370 km radius.
///
/// The coordinates are stored as they come. A position is valid when both are valid angles (within -360 ... +360)
/// and it is not exactly (0, 0), which devices and programs write when they know no position. What could not be read
/// is the default position, (720, 720).
///
/// Positions are implicitly shared: copies are cheap, and a position is detached before it changes. Several threads
/// may read copies of one position. A position that was moved from may only be assigned to or destroyed.
///
/// Equality compares both coordinates with the tolerance of the angles (a millionth of a degree); equal positions
/// therefore need not have the same hash.
class KELGEOLOCATION_EXPORT KelGeoPosition
{
public:
    /// distance() from or to an invalid position: a thousand earth radii, farther than any real place.
    static constexpr double UNREACHABLE_KM = 6370000.0;

    /// (720, 720), which is invalid.
    KelGeoPosition();
    /// Both angles as they are, unchecked.
    KelGeoPosition(const KelLatitude &latitude, const KelLongitude &longitude);
    /// Both in decimal degrees, north and east positive, unchecked.
    KelGeoPosition(double latitude, double longitude);
    /// Positive numbers with their hemispheres: (53.1, 'N', 8.2, 'E'). Any character other than 'N' negates the
    /// latitude, any other than 'E' the longitude.
    KelGeoPosition(double latitude, char latitudeHemisphere, double longitude, char longitudeHemisphere);
    /// Shares the data until one of the two changes.
    KelGeoPosition(const KelGeoPosition &other);
    /// Leaves a position behind that can only be assigned to or destroyed.
    KelGeoPosition(KelGeoPosition &&other) noexcept;
    /// Shares the data until one of the two changes.
    KelGeoPosition &operator=(const KelGeoPosition &other);
    /// Leaves a position behind that can only be assigned to or destroyed.
    KelGeoPosition &operator=(KelGeoPosition &&other) noexcept;
    virtual ~KelGeoPosition();

    /// Exchanges the data, without a copy.
    void swap(KelGeoPosition &other) noexcept { d.swap(other.d); }

    /// (0, 0), which is invalid; where sums start from.
    [[nodiscard]] static KelGeoPosition null();

    /// North is positive.
    [[nodiscard]] KelLatitude latitude() const noexcept;
    /// East is positive.
    [[nodiscard]] KelLongitude longitude() const noexcept;
    /// Stores any latitude, unchecked.
    void setLatitude(const KelLatitude &latitude);
    /// Stores any longitude, unchecked.
    void setLongitude(const KelLongitude &longitude);
    /// Pulls a latitude at or beyond a pole back to 89.99 degrees (KelLatitude::catchOutOfBound()).
    void catchLatitude();

    /// Whether both coordinates lie within -360 ... +360 and are not both exactly 0.
    // Deliberate: (0, 0) is invalid, a position merely close to it is not.
    [[nodiscard]] bool isValid() const noexcept;

    /// Both coordinates are equal within the tolerance of the angles.
    [[nodiscard]] bool operator==(const KelGeoPosition &other) const noexcept;
    /// The opposite of equality.
    [[nodiscard]] bool operator!=(const KelGeoPosition &other) const noexcept { return !(*this == other); }
    /// Orders by latitude, and by longitude where the latitudes are equal within the tolerance.
    [[nodiscard]] bool operator<(const KelGeoPosition &other) const noexcept;
    /// Orders as operator<() does.
    [[nodiscard]] bool operator>(const KelGeoPosition &other) const noexcept;

    /// KelLatitude::isNorthOf() of this latitude.
    [[nodiscard]] bool isNorthOf(const KelLatitude &other) const noexcept { return latitude().isNorthOf(other); }
    /// The same, for the other position's latitude.
    [[nodiscard]] bool isNorthOf(const KelGeoPosition &other) const noexcept { return isNorthOf(other.latitude()); }
    /// KelLatitude::isSouthOf() of this latitude.
    [[nodiscard]] bool isSouthOf(const KelLatitude &other) const noexcept { return latitude().isSouthOf(other); }
    /// The same, for the other position's latitude.
    [[nodiscard]] bool isSouthOf(const KelGeoPosition &other) const noexcept { return isSouthOf(other.latitude()); }
    /// The shorter way round the globe (KelLongitude::isEastOf()).
    [[nodiscard]] bool isEastOf(const KelLongitude &other) const noexcept { return longitude().isEastOf(other); }
    /// The same, for the other position's longitude.
    [[nodiscard]] bool isEastOf(const KelGeoPosition &other) const noexcept { return isEastOf(other.longitude()); }
    /// The shorter way round the globe (KelLongitude::isWestOf()).
    [[nodiscard]] bool isWestOf(const KelLongitude &other) const noexcept { return longitude().isWestOf(other); }
    /// The same, for the other position's longitude.
    [[nodiscard]] bool isWestOf(const KelGeoPosition &other) const noexcept { return isWestOf(other.longitude()); }

    /// As the latitude is.
    [[nodiscard]] bool isInNorthernHemisphere() const noexcept { return latitude().isInNorthernHemisphere(); }
    /// As the latitude is.
    [[nodiscard]] bool isInSouthernHemisphere() const noexcept { return latitude().isInSouthernHemisphere(); }
    /// As the longitude is.
    [[nodiscard]] bool isInEasternHemisphere() const noexcept { return longitude().isInEasternHemisphere(); }
    /// As the longitude is.
    [[nodiscard]] bool isInWesternHemisphere() const noexcept { return longitude().isInWesternHemisphere(); }

    /// Of latitude + longitude as they are: equal within the tolerance is not enough. (8, 53) and (53, 8) share it.
    [[nodiscard]] size_t hashValue() const noexcept;
    [[nodiscard]] friend size_t qHash(const KelGeoPosition &position, size_t seed = 0) noexcept
    {
        return position.hash(seed);
    }

    /// Adds latitudes and longitudes separately, nothing is folded. With operator/ this forms averages.
    [[nodiscard]] KelGeoPosition operator+(const KelGeoPosition &other) const;
    /// Divides both coordinates; a divisor of 0 gives (720, 720).
    [[nodiscard]] KelGeoPosition operator/(double divisor) const;
    /// See operator+().
    KelGeoPosition &operator+=(const KelGeoPosition &other);
    /// See operator/().
    KelGeoPosition &operator/=(double divisor);

    /// Great-circle distance in kilometres (haversine formula, sphere of 6370 km radius), also across the date line.
    /// UNREACHABLE_KM when either position is invalid.
    [[nodiscard]] double distance(const KelGeoPosition &other) const noexcept;

    /// Degrees of latitude that @p km kilometres make: a nautical mile is an arc minute.
    [[nodiscard]] KelLatitude latitudeDeviation(double km) const noexcept;
    /// Degrees of longitude that @p km kilometres make at this latitude. Close to the poles the number grows without
    /// limit.
    [[nodiscard]] KelLongitude longitudeDeviation(double km) const noexcept;
    /// This position moved by kilometres, negative ones to the south. The result is neither folded nor clamped.
    [[nodiscard]] KelGeoPosition moveNorthBy(double km) const;
    /// This position moved by kilometres, negative ones to the west. The result is not wrapped at the date line.
    [[nodiscard]] KelGeoPosition moveEastBy(double km) const;
    /// The same position with its longitude wrapped into -180 ... +180; the latitude stays as it is.
    [[nodiscard]] KelGeoPosition normalized() const;

    /// x is the longitude, y the latitude, in degrees.
    [[nodiscard]] QPointF toPointF() const noexcept;

    /// With @p dms false "N53.14375000; E8.21400000"; with true degrees, minutes and seconds of both coordinates,
    /// with "<br>" between them (for tool tips and other rich text). Where a coordinate is invalid the former is
    /// used, with an empty text for that coordinate.
    [[nodiscard]] QString toString(bool dms) const;

    /// Sets the attributes "latitude" and "longitude" to decimal degrees; an invalid position sets nothing.
    void writeToXml(QDomElement &element) const;
    /// Reads the attributes prefix + "latitude" and prefix + "longitude". A missing one gives -720 (invalid), an
    /// unreadable one 0.
    [[nodiscard]] static KelGeoPosition fromXml(const QDomElement &element, const QString &prefix = QString());

    /// Adds the items "latitude" and "longitude", each with sixteen decimals.
    void writeTo(QUrlQuery &query) const;

    /// Reads two decimal angles separated by white space, "N53.1 E8.2" (KelLatitude::parse(),
    /// KelLongitude::parse()). Anything else gives the default position.
    [[nodiscard]] static KelGeoPosition parse(const QString &text);
    /// Reads two angles of degrees, minutes and seconds separated by a semicolon, "53,8,30 N; 8,12,0 E"
    /// (KelGeoArc::fromString()); further parts are ignored. Anything else gives the default position.
    [[nodiscard]] static KelGeoPosition fromString(const QString &text);

private:
    [[nodiscard]] size_t hash(size_t seed) const noexcept;

    QSharedDataPointer<KelGeoPositionImpl> d;
};
Q_DECLARE_SHARED(KelGeoPosition)

/// Writes "Lat53.14375; Lon8.214", with up to eight significant digits.
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelGeoPosition &position);

#endif
