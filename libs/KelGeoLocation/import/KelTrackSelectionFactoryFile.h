// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKSELECTIONFACTORYFILE_H
#define KELTRACKSELECTIONFACTORYFILE_H

#include <KelGeoLocationGlobal.h>
#include <KelTrackSelectionFactoryAbstract.h>

class KelErrorHistory;
class QFileInfo;

/// What the factories for local files have in common: a URL stands for the local file that it names. A URL that is not
/// local names a file without a name and a suffix, which no factory supports.
class KELGEOLOCATION_EXPORT KelTrackSelectionFactoryFile : public KelTrackSelectionFactoryAbstract
{
public:
    KelTrackSelectionFactoryFile() = default;
    ~KelTrackSelectionFactoryFile() override;

    [[nodiscard]] bool supportsFile(const QUrl &url) const override;
    [[nodiscard]] KelGPXConfiguredTrackList createConfiguredTrackList(const QUrl &url) const override;

    /// Whether the file's suffix is one of this factory; the file itself is not looked at.
    [[nodiscard]] virtual bool supportsFile(const QFileInfo &file) const = 0;
    /// The tracks of the file, read anew by every call; empty when it cannot be read.
    [[nodiscard]] virtual KelGPXConfiguredTrackList createConfiguredTrackList(const QFileInfo &file) const = 0;

    /// The same list, for hosts that tell the user why a file gave nothing to draw: then, and only then, @p errors (may
    /// be null) gets at least one entry with the reason, with line and column where the file is malformed.
    [[nodiscard]] virtual KelGPXConfiguredTrackList createConfiguredTrackList(const QFileInfo &file,
                                                                              KelErrorHistory *errors) const = 0;
    /// The same for the local file that the URL names.
    [[nodiscard]] KelGPXConfiguredTrackList createConfiguredTrackList(const QUrl &url, KelErrorHistory *errors) const;

protected:
    KelTrackSelectionFactoryFile(const KelTrackSelectionFactoryFile &) = default;
    KelTrackSelectionFactoryFile(KelTrackSelectionFactoryFile &&) noexcept = default;
    KelTrackSelectionFactoryFile &operator=(const KelTrackSelectionFactoryFile &) = default;
    KelTrackSelectionFactoryFile &operator=(KelTrackSelectionFactoryFile &&) noexcept = default;
};

#endif
