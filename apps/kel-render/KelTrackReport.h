// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKREPORT_H
#define KELTRACKREPORT_H

#include <QString>

class KelGPXConfiguredTrack;
class KelGPXTrack;
class KelGPXTrackSelection;

/// What --info prints.
class KelTrackReport
{
public:
    KelTrackReport() = delete;

    /// One block of "key: value" lines for each track, blank lines between them.
    [[nodiscard]] static QString describe(const KelGPXTrackSelection &selection);
    [[nodiscard]] static QString describe(const KelGPXConfiguredTrack &track);

    /// Length along the points on the globe, kilometres; gaps between segments do not count.
    [[nodiscard]] static double lengthKm(const KelGPXTrack &track);
};

#endif
