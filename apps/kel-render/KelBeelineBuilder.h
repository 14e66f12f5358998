// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELBEELINEBUILDER_H
#define KELBEELINEBUILDER_H

#include "KelRenderOptions.h"

#include <KelGPXTrack.h>
#include <KelGeoPosition.h>

#include <optional>

class KelDiagnostics;

/// Makes the great-circle tracks that the command line asks for.
class KelBeelineBuilder
{
public:
    KelBeelineBuilder() = delete;

    /// Nothing if one of the places is none, after telling the diagnostics.
    [[nodiscard]] static std::optional<KelGPXTrack> build(const KelBeelineOption &option, KelDiagnostics &diagnostics);

    /// A known place by its name (upper and lower case are the same), "N53.14 E8.21", "53,8,24 N; 8,12,36 E" or
    /// "53.14,8.21". Nothing for any other text, and for a place that is not on the globe.
    [[nodiscard]] static std::optional<KelGeoPosition> parsePlace(const QString &text);
};

#endif
