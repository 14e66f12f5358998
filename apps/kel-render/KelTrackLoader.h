// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKLOADER_H
#define KELTRACKLOADER_H

#include <KelGPXConfiguredTrackList.h>

#include <QString>
#include <QStringList>

class KelDiagnostics;
class KelErrorHistory;
class QFileInfo;

/// Reads track files and folders of them, and says for each file how many tracks it gave, or why it gave none.
class KelTrackLoader
{
public:
    explicit KelTrackLoader(KelDiagnostics &diagnostics);

    /// Everything from the named files and folders, in their order; of a folder the files that lie directly in it, by
    /// name. Tracks without any point are left out. Failures go to the diagnostics, the rest is read all the same.
    [[nodiscard]] KelGPXConfiguredTrackList load(const QStringList &paths);
    /// The files that load() has taken from its paths, readable or not.
    [[nodiscard]] const QStringList &files() const noexcept { return m_files; }

private:
    [[nodiscard]] QStringList filesOf(const QString &path);
    void loadFile(const QString &path, KelGPXConfiguredTrackList &tracks);
    bool isReadable(const QFileInfo &file);
    void explainNothing(const QFileInfo &file, const KelErrorHistory &reasons);

    KelDiagnostics &m_diagnostics;
    QStringList m_files;
};

#endif
