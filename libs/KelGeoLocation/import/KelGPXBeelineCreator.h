// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXBEELINECREATOR_H
#define KELGPXBEELINECREATOR_H

#include <KelGeoLocationGlobal.h>
#include <KelGeoPosition.h>

#include <QList>

class KelGPXTrack;
class KelGPXTrackPoint;
class KelGeoPositionList;
class KelLongitude;
class QString;

/// Makes a track along the great circle between two positions, the line of a direct flight.
///
/// Tracks are drawn as straight lines on the map, so points are put in, by halving the way again and again, until
/// neighbours are less than 200 km apart or lie on one meridian (which the map draws straight).
///
/// Points are looked for between 80° south and 80° north; a way that passes nearer to a pole is bent at 80°.
///
/// Both positions should be valid; mind that KelGeoPosition takes exactly (0, 0) for invalid. Between other positions
/// there is no sensible way, but an answer all the same: halving that comes to no end, because longitudes are infinite,
/// no numbers or far out of range, is given up and leaves just the two positions.
class KELGEOLOCATION_EXPORT KelGPXBeelineCreator
{
public:
    /// Computes nothing yet.
    KelGPXBeelineCreator(const KelGeoPosition &start, const KelGeoPosition &end);
    virtual ~KelGPXBeelineCreator();
    KelGPXBeelineCreator(const KelGPXBeelineCreator &) = default;
    KelGPXBeelineCreator(KelGPXBeelineCreator &&) noexcept = default;
    KelGPXBeelineCreator &operator=(const KelGPXBeelineCreator &) = default;
    KelGPXBeelineCreator &operator=(KelGPXBeelineCreator &&) noexcept = default;

    /// A track of one segment and shape "linestring", described as "Fluglinie" (translated).
    [[nodiscard]] KelGPXTrack createBeeline(const QString &name) const;

    /// Start, createIntermediatePoints(), end.
    [[nodiscard]] KelGeoPositionList createPoints() const;

    /// The points between start and end in the order of travel: none when the two are less than 200 km apart or have
    /// the same longitude; otherwise those of the first half, the point where the great circle crosses the middle
    /// longitude, and those of the second half.
    [[nodiscard]] KelGeoPositionList createIntermediatePoints() const;

    /// One point per position, in order, with elevation 0, the current time (asked anew for each) and no description.
    [[nodiscard]] QList<KelGPXTrackPoint> positions2trackPoints(const KelGeoPositionList &positions) const;

    /// The longitude half way between start and end, the shorter way round: 180 between 170 and -170.
    [[nodiscard]] KelLongitude findLogicalCenterLongitude() const;

    /// The position on that meridian, within ±80 degrees, from which the distances to start and end add up to the
    /// least: there the meridian meets the great circle. Found by halving the range of latitudes twenty times, which
    /// is 160 / 2^20 degrees.
    [[nodiscard]] KelGeoPosition estimateOptimalLatitude(const KelLongitude &longitude) const;

private:
    [[nodiscard]] bool appendIntermediatePoints(int depth, KelGeoPositionList &points) const;

    KelGeoPosition m_start;
    KelGeoPosition m_end;
};

#endif
