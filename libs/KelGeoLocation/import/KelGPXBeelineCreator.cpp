// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXBeelineCreator.h"

#include <KelGPXTrack.h>
#include <KelGPXTrackPoint.h>
#include <KelGPXTrackSegment.h>
#include <KelGeoPositionList.h>
#include <KelLongitudeRange.h>

#include <QCoreApplication>
#include <QDateTime>

namespace
{

constexpr double FINE_ENOUGH_KM = 200.0;
/// Deliberate: nearer to the poles the map projection is of no use, so ways over them are bent here.
constexpr double LATITUDE_LIMIT = 80.0;
constexpr int BISECTION_ROUNDS = 20;

// Halving ends by itself between places on the globe: after 29 halvings any two longitudes are equal within their
// tolerance, and then at most a few hundred points have been found. Between invalid positions every half is as long as
// its whole. The bounds lie beyond what a real way needs.
constexpr int DEEPEST_HALVING = 64;
constexpr qsizetype MOST_POINTS = 8192;

} // namespace

KelGPXBeelineCreator::KelGPXBeelineCreator(const KelGeoPosition &start, const KelGeoPosition &end)
    : m_start(start)
    , m_end(end)
{
}

KelGPXBeelineCreator::~KelGPXBeelineCreator() = default;

KelGPXTrack KelGPXBeelineCreator::createBeeline(const QString &name) const
{
    const KelGPXTrackSegment segment(positions2trackPoints(createPoints()));
    return KelGPXTrack(name, QCoreApplication::translate("KelGPXBeelineCreator", "Fluglinie"), {segment},
                       KelGPXTrackShape(TrackShapeLineString));
}

KelGeoPositionList KelGPXBeelineCreator::createPoints() const
{
    KelGeoPositionList points;
    points.append(m_start);
    points.append(createIntermediatePoints());
    points.append(m_end);
    return points;
}

KelGeoPositionList KelGPXBeelineCreator::createIntermediatePoints() const
{
    KelGeoPositionList points;
    if (!appendIntermediatePoints(0, points))
        points.clear();
    return points;
}

bool KelGPXBeelineCreator::appendIntermediatePoints(int depth, KelGeoPositionList &points) const
{
    if (m_start.distance(m_end) < FINE_ENOUGH_KM || m_start.longitude() == m_end.longitude())
        return true;
    if (depth >= DEEPEST_HALVING || points.size() >= MOST_POINTS)
        return false;

    const KelGeoPosition middle = estimateOptimalLatitude(findLogicalCenterLongitude());
    if (!KelGPXBeelineCreator(m_start, middle).appendIntermediatePoints(depth + 1, points))
        return false;
    points.append(middle);
    return KelGPXBeelineCreator(middle, m_end).appendIntermediatePoints(depth + 1, points);
}

QList<KelGPXTrackPoint> KelGPXBeelineCreator::positions2trackPoints(const KelGeoPositionList &positions) const
{
    QList<KelGPXTrackPoint> points;
    points.reserve(positions.size());
    for (const KelGeoPosition &position : positions)
        points.append(KelGPXTrackPoint(position, 0, QDateTime::currentDateTime(), QString()));
    return points;
}

KelLongitude KelGPXBeelineCreator::findLogicalCenterLongitude() const
{
    return KelLongitudeRange::spawn(m_start.longitude(), m_end.longitude()).center();
}

KelGeoPosition KelGPXBeelineCreator::estimateOptimalLatitude(const KelLongitude &longitude) const
{
    KelGeoPosition north(KelLatitude(LATITUDE_LIMIT), longitude);
    KelGeoPosition south(KelLatitude(-LATITUDE_LIMIT), longitude);
    // Deliberate: always twenty rounds, each comparing the two ends of the bracket. It is not the most exact search
    // for a minimum, but beelines that are made again must come out as those that users have stored.
    for (int round = 0; round < BISECTION_ROUNDS; ++round) {
        const double northKm = m_start.distance(north) + m_end.distance(north);
        const double southKm = m_start.distance(south) + m_end.distance(south);
        const KelGeoPosition middle = (north + south) / 2;
        if (southKm > northKm)
            south = middle;
        else
            north = middle;
    }
    return (north + south) / 2;
}
