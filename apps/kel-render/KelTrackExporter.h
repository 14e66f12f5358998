// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKEXPORTER_H
#define KELTRACKEXPORTER_H

#include "KelFilePlace.h"

#include <QList>
#include <QString>
#include <QStringList>

class KelDiagnostics;
class KelGPXTrack;
class KelGPXTrackSelection;

/// Writes tracks as GPX files.
class KelTrackExporter
{
public:
    /// Reserved are names of files that are read, or written after the tracks.
    KelTrackExporter(KelDiagnostics &diagnostics, const QStringList &reserved);

    /// A single track goes to exactly this file. Several go to files of their own beside it, named after it and
    /// numbered, and none of them replaces a file that is there already, or takes a reserved name.
    bool write(const KelGPXTrackSelection &selection, const QString &path);
    /// The files that write() has written.
    [[nodiscard]] const QStringList &files() const noexcept { return m_files; }

private:
    [[nodiscard]] QString freeName(const QString &path) const;
    bool writeTrack(const KelGPXTrack &track, const QString &path);

    KelDiagnostics &m_diagnostics;
    QList<KelFilePlace> m_reserved;
    QStringList m_files;
};

#endif
