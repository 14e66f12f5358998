// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELSELECTIONSTORE_H
#define KELSELECTIONSTORE_H

#include <KelGPXTrackSelection.h>

#include <QDir>
#include <QString>
#include <QStringList>

#include <optional>

class KelDiagnostics;
class QDomElement;

/// Keeps a selection in a document of its own: looks and cropping in the document, each track in a file of a folder
/// beside it ("trip.xml" and "trip.tracks/"), so that points are stored once.
class KelSelectionStore
{
public:
    KelSelectionStore(const QString &path, KelDiagnostics &diagnostics);

    /// Nothing if the document or one of its tracks cannot be read, after telling the diagnostics.
    [[nodiscard]] std::optional<KelGPXTrackSelection> load();

    /// False if something could not be written; a document that was there before is unchanged then.
    bool save(const KelGPXTrackSelection &selection);

private:
    /// Names of the track files that the document mentions and that cannot be read.
    [[nodiscard]] QStringList unreadableTrackFiles(const QDomElement &root) const;
    void removeFilesBut(const QStringList &former) const;

    QString m_path;
    QDir m_store; ///< absolute
    KelDiagnostics &m_diagnostics;
};

#endif
