// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKLOADER_H
#define KELTRACKLOADER_H

#include <KelGPXConfiguredTrackList.h>

#include <QList>
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

    /// Looks which files are to be read: the named ones, in their order, and of a folder those that lie directly in it, by
    /// name. Nothing is said yet.
    void find(const QStringList &paths);
    /// The files that find() has found, readable or not.
    [[nodiscard]] QStringList files() const;

    /// Everything from the files that find() has found. Tracks without any point are left out. Failures go to the
    /// diagnostics, the rest is read all the same.
    [[nodiscard]] KelGPXConfiguredTrackList load();

private:
    struct Input
    {
        QString path; ///< as it was named
        QStringList files;
    };

    [[nodiscard]] static QStringList filesOf(const QString &path);
    void explainFolder(const Input &input);
    void loadFile(const QString &path, KelGPXConfiguredTrackList &tracks);
    bool isReadable(const QFileInfo &file);
    void explainNothing(const QFileInfo &file, const KelErrorHistory &reasons);

    KelDiagnostics &m_diagnostics;
    QList<Input> m_inputs;
};

#endif
