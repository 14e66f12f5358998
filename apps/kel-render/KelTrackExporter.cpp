// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackExporter.h"

#include "KelDiagnostics.h"
#include "KelOutputFile.h"
#include "KelPlainText.h"

#include <KelGPXConfiguredTrack.h>
#include <KelGPXTrack.h>
#include <KelGPXTrackSelection.h>
#include <KelUniqueFilenameMaker.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTemporaryDir>

KelTrackExporter::KelTrackExporter(KelDiagnostics &diagnostics, const QStringList &reserved)
    : m_diagnostics(diagnostics)
{
    // The names of files that are there are not taken anyhow.
    for (const QString &name : reserved) {
        const KelFilePlace place = KelFilePlace::ofResult(name);
        if (!name.isEmpty() && !place.exists())
            m_reserved.append(place);
    }
}

bool KelTrackExporter::write(const KelGPXTrackSelection &selection, const QString &path)
{
    if (selection.count() == 1)
        return writeTrack(selection.value(0).track(), path);
    for (int row = 0; row < selection.count(); ++row) {
        if (!writeTrack(selection.value(row).track(), freeName(path)))
            return false;
    }
    return true;
}

/// As the user would write it, relative names too.
QString KelTrackExporter::freeName(const QString &path) const
{
    const QFileInfo wanted(path);
    const QDir folder = wanted.absoluteDir();
    QFileInfo file;
    do {
        file = KelUniqueFilenameMaker::instance().makeUniqueFileNameInSafeContainer(QFileInfo(folder, wanted.fileName()),
                                                                                    QSet<QDir>{folder});
    } while (m_reserved.contains(KelFilePlace::ofResult(file.filePath())));
    return wanted.path() == QLatin1String(".") && !path.startsWith(QLatin1String("./"))
        ? file.fileName()
        : QDir(wanted.path()).filePath(file.fileName());
}

bool KelTrackExporter::writeTrack(const KelGPXTrack &track, const QString &path)
{
    const auto fail = [&](const QString &reason) {
        m_diagnostics.error(KelExitCode::OutputFailed, path,
                            QStringLiteral("the track was not exported: %1").arg(reason));
        return false;
    };
    // The library writes a file without a word about success: let it write to a place of our own and look at that.
    const QTemporaryDir scratch;
    if (!scratch.isValid())
        return fail(scratch.errorString());
    QFile file(scratch.filePath(QStringLiteral("track.gpx")));
    track.saveAsGpxFile(QFileInfo(file.fileName()));
    if (!file.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("there is no room for it in %1").arg(QDir::tempPath()));
    const QByteArray bytes = file.readAll();

    KelOutputFile target(path);
    if (!target.write(bytes))
        return fail(target.error());
    m_files.append(path);
    m_diagnostics.note(path, QStringLiteral("exported \"%1\"").arg(KelPlainText::shortened(track.name())));
    return true;
}
