// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKFILEREGISTRY_H
#define KELGPXTRACKFILEREGISTRY_H

#include <KelGPXTrackFileRegistryKey.h>
#include <KelGeoLocationGlobal.h>
#include <KelSingleton.h>

#include <QFileInfo>
#include <QHash>
#include <QObject>
#include <QRecursiveMutex>
#include <QString>

/// Knows which file of a store holds which track, for the whole process.
///
/// When a state is stored into a directory, each track is saved there once, in a file of its own, and the state only
/// names the file. The registry makes that writing a track again uses the file that is there, and reading a state
/// teaches it the names. A track that has changed is another track: it gets a new file, the old one stays.
///
/// Entries are never removed. Deliberate: a track that could not be written is registered all the same.
class KELGEOLOCATION_EXPORT KelGPXTrackFileRegistry : public QObject, public KelSingleton<KelGPXTrackFileRegistry>
{
    Q_OBJECT

public:
    /// The name of the key's file, without directory; empty if the key is unknown. Takes no lock: for the thread
    /// that owns the store, or for callers that know that no other thread registers or saves.
    [[nodiscard]] QString fileName(const KelGPXTrackFileRegistryKey &key) const;

    /// Remembers (or replaces) the name of the key's file. Thread-safe.
    void registerFile(const KelGPXTrackFileRegistryKey &key, const QString &fileName);

    /// The file of that name in the key's directory.
    [[nodiscard]] QFileInfo createFileInfo(const KelGPXTrackFileRegistryKey &key, const QString &name) const;

    /// Writes the track, complete, under the root element "includedTrack". A failure is not reported, only logged.
    void saveTrackInFile(const KelGPXTrackFileRegistryKey &key, const QFileInfo &file);

    /// The name of the file that holds the key's track; if the key is not known, the track is saved in a new file,
    /// whose name is derived from "track.gps". Thread-safe: two threads with the same new track make one file. Two
    /// processes never take the same name for their tracks. There is no check of the key's validity.
    QString createAssignedFile(const KelGPXTrackFileRegistryKey &key);

private:
    friend class KelSingleton<KelGPXTrackFileRegistry>;

    KelGPXTrackFileRegistry();
    ~KelGPXTrackFileRegistry() override;

    QRecursiveMutex m_mutex; // recursive, since saving an unknown track registers it
    QHash<KelGPXTrackFileRegistryKey, QString> m_files;
};

#endif
