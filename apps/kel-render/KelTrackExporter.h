// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKEXPORTER_H
#define KELTRACKEXPORTER_H

#include <QString>
#include <QStringList>

class KelDiagnostics;
class KelGPXTrack;
class KelGPXTrackSelection;

/// Writes tracks as GPX files.
class KelTrackExporter
{
public:
    explicit KelTrackExporter(KelDiagnostics &diagnostics);

    /// A single track goes to exactly this file. Several go to files of their own beside it, named after it and
    /// numbered, and none of them replaces a file that is there already.
    bool write(const KelGPXTrackSelection &selection, const QString &path);
    /// The files that write() has written.
    [[nodiscard]] const QStringList &files() const noexcept { return m_files; }

private:
    bool writeTrack(const KelGPXTrack &track, const QString &path);

    KelDiagnostics &m_diagnostics;
    QStringList m_files;
};

#endif
