// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGEOPOSITIONLIST_H
#define KELGEOPOSITIONLIST_H

#include <KelGeoLocationGlobal.h>
#include <KelGeoPosition.h>

#include <QList>
#include <QPainterPath>

#include <initializer_list>

class KelGeoPositionRect;
class KelLatitudeList;
class KelLongitudeList;

/// Positions in the order in which they are drawn: a track's polyline, a shape's outline.
class KELGEOLOCATION_EXPORT KelGeoPositionList : public QList<KelGeoPosition>
{
public:
    KelGeoPositionList() = default;
    /// Those positions, in that order.
    KelGeoPositionList(std::initializer_list<KelGeoPosition> positions);
    /// The same positions as a list of this class.
    explicit KelGeoPositionList(const QList<KelGeoPosition> &positions);
    KelGeoPositionList(const KelGeoPositionList &other) = default;
    KelGeoPositionList(KelGeoPositionList &&other) noexcept = default;
    KelGeoPositionList &operator=(const KelGeoPositionList &other) = default;
    KelGeoPositionList &operator=(KelGeoPositionList &&other) noexcept = default;
    virtual ~KelGeoPositionList();

    /// The smallest rectangle around all valid positions that does not cross the date line; the default rectangle
    /// (invalid) if there is none.
    [[nodiscard]] KelGeoPositionRect boundingBox() const;
    /// The middle of the bounding box.
    [[nodiscard]] KelGeoPosition center() const;
    /// The arithmetic mean of latitudes and of longitudes; (720, 720) for an empty list.
    [[nodiscard]] KelGeoPosition average() const;
    /// The latitudes of all positions, in order.
    [[nodiscard]] KelLatitudeList latitudes() const;
    /// The longitudes of all positions, in order.
    [[nodiscard]] KelLongitudeList longitudes() const;
    /// A line through all positions in degrees, x being the longitude and y the latitude.
    [[nodiscard]] QPainterPath toPainterPath() const;

    /// Drops stray positions: keeps those whose distance from the average() is at most @p factor times their distance
    /// from the center(). With @p invert the others are kept instead. A list of fewer than @p minimumCount positions
    /// comes back unchanged.
    [[nodiscard]] KelGeoPositionList filterStrayPositions(double factor, bool invert, int minimumCount) const;
};

#endif
