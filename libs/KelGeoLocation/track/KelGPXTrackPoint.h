// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKPOINT_H
#define KELGPXTRACKPOINT_H

#include <KelGPXTrackElement.h>
#include <KelGeoLocationGlobal.h>
#include <KelGeoPosition.h>

#include <QDateTime>
#include <QSharedDataPointer>
#include <QString>

class KelGPXTrackPointImpl;
class KelGPXTupleWriter;
class KelGeoArc;
class QDebug;
class QDomElement;

/// One recorded position: where, how high (whole metres), when, and a description.
///
/// An elevation of 0 stands for none, as do an invalid time stamp and an empty description; toXml() leaves them out.
/// A point never changes but by assignment, and shares its data with its copies, so that it may be read from any
/// thread. A moved-from point has no data: it may only be destroyed or assigned to.
class KELGEOLOCATION_EXPORT KelGPXTrackPoint : public KelGPXTrackElement
{
public:
    /// An invalid position (720, 720), without elevation, time and description.
    KelGPXTrackPoint();
    /// All four values as they are, unchecked; the elevation in metres.
    KelGPXTrackPoint(const KelGeoPosition &position, int elevation, const QDateTime &timeStamp,
                     const QString &description);
    /// Reads a GPX point from the attributes "lat" and "lon" and the children "time" (ISO 8601), "ele" (metres, cut
    /// to a whole number toward zero; 0 if it does not fit an int) and "desc". The element's own name does not
    /// matter. Deliberate: a missing attribute reads as 1.0 degree, an unreadable one as 0.
    explicit KelGPXTrackPoint(const QDomElement &element);

    /// Shares the data.
    KelGPXTrackPoint(const KelGPXTrackPoint &other);
    /// Leaves a point behind that can only be assigned to or destroyed.
    KelGPXTrackPoint(KelGPXTrackPoint &&other) noexcept;
    /// Shares the data.
    KelGPXTrackPoint &operator=(const KelGPXTrackPoint &other);
    /// Leaves a point behind that can only be assigned to or destroyed.
    KelGPXTrackPoint &operator=(KelGPXTrackPoint &&other) noexcept;
    ~KelGPXTrackPoint() override;

    /// Where the point lies.
    [[nodiscard]] KelGeoPosition position() const;
    /// In metres.
    [[nodiscard]] int elevation() const;
    /// Invalid if unknown.
    [[nodiscard]] QDateTime timeStamp() const;
    /// Any text, mostly empty.
    [[nodiscard]] QString description() const;

    /// True if latitude and longitude are both exactly 0.0 degrees.
    [[nodiscard]] bool isNull() const;

    /// Same data, or equal in all four values; positions within the tolerance of KelGeoPosition.
    [[nodiscard]] bool operator==(const KelGPXTrackPoint &other) const;

    /// Appends a "trkpt" to `parent`: coordinates with ten significant digits as attributes, elevation, time and
    /// description as children where the point has them.
    void toXml(QDomElement &parent) const;

    /// The coordinate tuple, "longitude,latitude" or "longitude,latitude,elevation" or
    /// "longitude,latitude,elevation,time": angles by encode(), metres, milliseconds since 1970 in UTC. The elevation
    /// is there when it is not 0 or a time follows.
    [[nodiscard]] QString toKml() const;
    /// Appends toKml() to `text`.
    void appendKml(QString &text) const;

    /// Reads a coordinate tuple. The angles are read with safeDouble(), elevation and time as whole numbers in
    /// base 10; what is missing or cannot be read is 0, with two exceptions: without a fourth field the point has no
    /// time, and a fourth field that is there but unreadable is the epoch. Fields beyond the fourth are ignored.
    /// Deliberate: the time is taken as seconds since 1970, although toKml() writes milliseconds.
    [[nodiscard]] static KelGPXTrackPoint decodeKml(const QString &tuple);

    /// Decimal degrees with ten decimals, without trailing zeros. Deliberate: the point stays, 12 degrees are "12.".
    [[nodiscard]] static QString encode(const KelGeoArc &arc);

    [[nodiscard]] KelGeoPositionList allPoints() const override;
    [[nodiscard]] QList<KelGeoPositionList> chunkedPoints() const override;
    /// Always true.
    [[nodiscard]] bool isSinglePoint() const override;
    /// Its own position.
    [[nodiscard]] KelGeoPosition firstPoint() const override;
    /// Its own position.
    [[nodiscard]] KelGeoPosition lastPoint() const override;
    /// The one time stamp, also when it is invalid.
    [[nodiscard]] QList<QDateTime> allTimeStamps() const override;

private:
    friend class KelGPXReader;
    friend class KelGPXTrackSegment;

    explicit KelGPXTrackPoint(KelGPXTrackPointImpl *data);

    void writeKml(KelGPXTupleWriter &writer) const;

    QSharedDataPointer<KelGPXTrackPointImpl> d;
};

Q_DECLARE_TYPEINFO(KelGPXTrackPoint, Q_RELOCATABLE_TYPE);

/// Writes position, elevation, time and description, what there is of them.
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelGPXTrackPoint &point);

/// Equal points have equal hashes: made of elevation, time and description. The position, whose equality has a tolerance,
/// has no part in it: points that differ in nothing else share one.
[[nodiscard]] KELGEOLOCATION_EXPORT size_t qHash(const KelGPXTrackPoint &point, size_t seed = 0) noexcept;

#endif
