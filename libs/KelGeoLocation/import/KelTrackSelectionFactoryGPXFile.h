// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKSELECTIONFACTORYGPXFILE_H
#define KELTRACKSELECTIONFACTORYGPXFILE_H

#include <KelGeoLocationGlobal.h>
#include <KelTrackSelectionFactoryFile.h>

/// Reads GPX files: every track and every route that has points, with the user's default configuration.
class KELGEOLOCATION_EXPORT KelTrackSelectionFactoryGPXFile : public KelTrackSelectionFactoryFile
{
public:
    KelTrackSelectionFactoryGPXFile() = default;
    ~KelTrackSelectionFactoryGPXFile() override;
    KelTrackSelectionFactoryGPXFile(const KelTrackSelectionFactoryGPXFile &) = default;
    KelTrackSelectionFactoryGPXFile(KelTrackSelectionFactoryGPXFile &&) noexcept = default;
    KelTrackSelectionFactoryGPXFile &operator=(const KelTrackSelectionFactoryGPXFile &) = default;
    KelTrackSelectionFactoryGPXFile &operator=(KelTrackSelectionFactoryGPXFile &&) noexcept = default;

    /// The overloads below would hide those for URLs.
    using KelTrackSelectionFactoryFile::createConfiguredTrackList;
    using KelTrackSelectionFactoryFile::supportsFile;

    /// "*.gpx"
    [[nodiscard]] QStringList supportedFileFormats() const override;
    /// Suffix "gpx" in any case.
    [[nodiscard]] bool supportsFile(const QFileInfo &file) const override;
    /// The file's tracks, then its routes. A malformed file gives none.
    [[nodiscard]] KelGPXConfiguredTrackList createConfiguredTrackList(const QFileInfo &file) const override;
    [[nodiscard]] KelGPXConfiguredTrackList createConfiguredTrackList(const QFileInfo &file,
                                                                      KelErrorHistory *errors) const override;
};

#endif
