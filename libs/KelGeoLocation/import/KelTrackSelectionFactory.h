// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKSELECTIONFACTORY_H
#define KELTRACKSELECTIONFACTORY_H

#include <KelGeoLocationGlobal.h>
#include <KelSingleton.h>
#include <KelTrackSelectionFactoryAbstract.h>

#include <QList>

class KelErrorHistory;

/// Reads track files of every kind that the library knows: the first factory that supports a file gets it, GPX before
/// KML and KMZ.
///
/// For the GUI thread, because of the dialog; reading without it works in any thread as far as the settings allow.
class KELGEOLOCATION_EXPORT KelTrackSelectionFactory : public KelTrackSelectionFactoryAbstract,
                                                       public KelSingleton<KelTrackSelectionFactory>
{
public:
    KelTrackSelectionFactory(const KelTrackSelectionFactory &) = delete;
    KelTrackSelectionFactory &operator=(const KelTrackSelectionFactory &) = delete;

    /// Whether any factory supports the file.
    [[nodiscard]] bool supportsFile(const QUrl &url) const override;
    /// "*.gpx", "*.kml", "*.kmz"
    [[nodiscard]] QStringList supportedFileFormats() const override;

    /// The tracks of the file; empty when no factory supports it or there is nothing in it. The factory that is used
    /// is logged: "ACTION:useFactory VALUE:*.kml,*.kmz".
    [[nodiscard]] KelGPXConfiguredTrackList createConfiguredTrackList(const QUrl &url) const override;
    /// The same list, for hosts that tell the user why a file gave nothing to draw: then @p errors (may be null) gets
    /// at least one entry with the reason, a file of no known kind included.
    [[nodiscard]] KelGPXConfiguredTrackList createConfiguredTrackList(const QUrl &url, KelErrorHistory *errors) const;
    /// The tracks of all files in order; files without tracks are skipped.
    [[nodiscard]] KelGPXConfiguredTrackList createConfiguredTrackList(const QList<QUrl> &urls) const;

    /// Asks the user for one file with the open-file dialog and reads it; empty when the user cancels.
    [[nodiscard]] KelGPXConfiguredTrackList askUserReadFile() const;

protected:
    KelTrackSelectionFactory();
    ~KelTrackSelectionFactory() override;

private:
    friend class KelSingleton<KelTrackSelectionFactory>;

    [[nodiscard]] const KelTrackSelectionFactoryAbstract *findFactory(const QUrl &url) const;

    QList<KelTrackSelectionFactoryAbstract *> m_factories;
};

#endif
