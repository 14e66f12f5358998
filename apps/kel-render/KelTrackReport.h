// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKREPORT_H
#define KELTRACKREPORT_H

#include <QJsonArray>
#include <QString>

class KelGPXConfiguredTrack;
class KelGPXTrack;
class KelGPXTrackSelection;

/// What --info and --report print.
class KelTrackReport
{
public:
    KelTrackReport() = delete;

    /// One block of "key: value" lines for each track, blank lines between them.
    [[nodiscard]] static QString describe(const KelGPXTrackSelection &selection);
    [[nodiscard]] static QString describe(const KelGPXConfiguredTrack &track);

    /// The same for programs, one object for each track: "name", "shape", "segments", "points", "enclaves",
    /// "lengthKm", "bounds" ("south", "west", "north", "east" in degrees; null without a position on the globe),
    /// "start" and "end" (UTC; null without times).
    [[nodiscard]] static QJsonArray toJson(const KelGPXTrackSelection &selection);

    /// Length along the points on the globe, kilometres; gaps between segments do not count.
    [[nodiscard]] static double lengthKm(const KelGPXTrack &track);
};

#endif
