// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKBUILDER_H
#define KELTRACKBUILDER_H

#include <KelGPXConfiguredTrack.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrack.h>
#include <KelGPXTrackConfiguration.h>

#include <QList>
#include <QString>

/// Small tracks for lists of tracks.
namespace KelTrackBuilder
{

/// A line of two points in the library's default configuration.
inline KelGPXConfiguredTrack line(const QString &name, const QString &description)
{
    return KelGPXConfiguredTrack(KelGPXTrack::decodeKml(name, description, QStringLiteral("8.2,53.1 8.3,53.2"),
                                                        KelGPXTrackShape(TrackShapeAuto)),
                                 KelGPXTrackConfiguration::defaultValue());
}

/// One line for each letter, named after it and described as "about A".
inline KelGPXConfiguredTrackList lines(const QString &letters)
{
    QList<KelGPXConfiguredTrack> tracks;
    for (const QChar letter : letters)
        tracks.append(line(QString(letter), QStringLiteral("about ") + letter));
    return KelGPXConfiguredTrackList(tracks);
}

} // namespace KelTrackBuilder

#endif
