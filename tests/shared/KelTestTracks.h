// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTESTTRACKS_H
#define KELTESTTRACKS_H

#include <KelGPXConfiguredTrack.h>
#include <KelGPXTrack.h>
#include <KelGPXTrackConfiguration.h>

#include <QString>

/// Small tracks and configurations for tests.
namespace KelTestTracks
{

/// A closed ring between 8 and 9 degrees east and 53 and 54 degrees north, so a polygon by nature.
inline const QString RING = QStringLiteral("8,53 9,53 9,54 8,54 8,53");
inline const QString LINE = QStringLiteral("8,50 8.1,50.2 8.2,50.1 8.3,50.4 8.4,50.3");
inline const QString POINT = QStringLiteral("8.5,53.5");

/// From longitude,latitude pairs; shape as the points suggest unless it is given.
inline KelGPXTrack track(const QString &coordinates, const QString &name = QStringLiteral("track"),
                         KelGPXTrackShapeEnum shape = TrackShapeAuto)
{
    return KelGPXTrack::decodeKml(name, QString(), coordinates, KelGPXTrackShape(shape));
}

inline KelGPXTrackConfiguration configuration(KelGPXTrackShapeEnum shape, KelGPXMarkerShapeEnum marker = MarkerDisk)
{
    KelGPXTrackConfiguration made = KelGPXTrackConfiguration::defaultValue();
    made.setTrackShape(KelGPXTrackShape(shape));
    made.setMarkerShape(KelGPXMarkerShape(marker));
    return made;
}

/// A line with a colour of its own.
inline KelGPXConfiguredTrack configured(const QString &name, const QString &coordinates = LINE)
{
    return KelGPXConfiguredTrack(track(coordinates, name), configuration(TrackShapeAuto));
}

} // namespace KelTestTracks

#endif
