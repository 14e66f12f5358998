// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKSELECTIONFACTORYABSTRACT_H
#define KELTRACKSELECTIONFACTORYABSTRACT_H

#include <KelGeoLocationGlobal.h>

#include <QStringList>

class KelGPXConfiguredTrackList;
class QUrl;

/// Turns files of one kind into configured tracks. KelTrackSelectionFactory knows all kinds and picks the right one.
///
/// Failure is in-band: what cannot be read gives an empty list.
class KELGEOLOCATION_EXPORT KelTrackSelectionFactoryAbstract
{
public:
    KelTrackSelectionFactoryAbstract() = default;
    virtual ~KelTrackSelectionFactoryAbstract();

    /// Whether the URL names a file that this factory reads, judged by its name alone.
    [[nodiscard]] virtual bool supportsFile(const QUrl &url) const = 0;
    /// The patterns of the file names, for a file dialog: "*.gpx".
    [[nodiscard]] virtual QStringList supportedFileFormats() const = 0;
    /// The tracks of the file, each with its configuration.
    [[nodiscard]] virtual KelGPXConfiguredTrackList createConfiguredTrackList(const QUrl &url) const = 0;

protected:
    KelTrackSelectionFactoryAbstract(const KelTrackSelectionFactoryAbstract &) = default;
    KelTrackSelectionFactoryAbstract(KelTrackSelectionFactoryAbstract &&) noexcept = default;
    KelTrackSelectionFactoryAbstract &operator=(const KelTrackSelectionFactoryAbstract &) = default;
    KelTrackSelectionFactoryAbstract &operator=(KelTrackSelectionFactoryAbstract &&) noexcept = default;
};

#endif
