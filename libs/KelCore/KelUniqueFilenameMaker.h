// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELUNIQUEFILENAMEMAKER_H
#define KELUNIQUEFILENAMEMAKER_H

#include <KelCoreGlobal.h>
#include <KelDirHash.h>
#include <KelSingleton.h>

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QSet>
#include <QString>

/// Finds names for new files that clash with nothing: neither with a file, directory or symbolic link that exists (a
/// dangling link too), nor with a name that this process was given before, whether the file was written since or not.
/// Names are never given out a second time, not even after their file was removed, because others may still refer to it.
///
/// The file is not created. Another process may still take the name meanwhile; who shares a directory with other
/// processes opens the file with QIODevice::NewOnly.
///
/// May be used from any thread.
class KELCORE_EXPORT KelUniqueFilenameMaker : public KelSingleton<KelUniqueFilenameMaker>
{
    friend class KelSingleton<KelUniqueFilenameMaker>;

public:
    /// A new file like the wanted one: the wanted name itself if it is free, else numbered from 2 on, "track_2.gps".
    ///
    /// The file is made only in one of the safe containers, whatever path the wanted name carries: if the wanted
    /// directory is none of them (compared as places on disk, see qHash(const QDir &); a directory below a container
    /// does not count), the file goes into the container whose absolute path sorts first. A name that is empty, "." or
    /// ".." becomes "file". Without any container, an empty QFileInfo is returned.
    ///
    /// The result keeps the spelling of the wanted directory. The directory need not exist and is not created.
    [[nodiscard]] QFileInfo makeUniqueFileNameInSafeContainer(const QFileInfo &wanted,
                                                              const QSet<QDir> &safeContainers);

protected:
    KelUniqueFilenameMaker() = default;
    ~KelUniqueFilenameMaker() override = default;

private:
    QString uniqueName(const QDir &dir, const QString &wantedName);

    QMutex m_mutex;
    QSet<QString> m_handedOut;
    // The number to try next for a wanted path, so that a thousand tracks do not look a thousand times at each file.
    QHash<QString, int> m_nextNumber;
};

#endif
