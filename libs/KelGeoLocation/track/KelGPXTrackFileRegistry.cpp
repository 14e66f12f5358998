// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackFileRegistry.h"

#include "KelGPXNames.h"
#include <KelDirHash.h>
#include <KelUniqueFilenameMaker.h>
#include <KelXMLBuilder.h>

#include <QDomDocument>
#include <QDomElement>
#include <QFile>
#include <QMutexLocker>
#include <QSet>

#include <sys/stat.h>

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

namespace
{

/// Locks for its lifetime, and tells so to ThreadSanitizer, which cannot see into Qt's recursive mutex.
class Locker
{
public:
    explicit Locker(QRecursiveMutex *mutex)
        : m_locker(mutex)
    {
#if defined(__SANITIZE_THREAD__)
        __tsan_acquire(mutex);
#endif
    }

    ~Locker()
    {
#if defined(__SANITIZE_THREAD__)
        __tsan_release(m_locker.mutex());
#endif
    }

    Q_DISABLE_COPY_MOVE(Locker)

private:
    QMutexLocker<QRecursiveMutex> m_locker;
};

/// In Qt 6.4 comparing a QDir writes into data that it shares with its copies. The copy in the table is one that is
/// touched under the lock only, while the caller's may be in use by the caller's thread.
QDir unshared(const QDir &dir)
{
    QDir copy(dir);
    copy.setPath(dir.path());
    return copy;
}

/// A new file of the track's own, empty for now: another process that stores tracks in the same directory meets it and
/// takes another name. Where none can be made, saving will fail as well, and the name is as good as any.
class NewFile
{
public:
    NewFile(const QFileInfo &wanted, const QDir &dir)
    {
        do {
            m_info = KelUniqueFilenameMaker::instance().makeUniqueFileNameInSafeContainer(wanted, QSet<QDir>{dir});
            m_placeholder.setFileName(m_info.filePath());
        } while (!m_placeholder.open(QIODevice::WriteOnly | QIODevice::NewOnly) && isTaken(m_info));
    }

    [[nodiscard]] const QFileInfo &info() const { return m_info; }

    /// What is left of it when it could not be written, and only that: somebody else may have taken the name meanwhile.
    void removePlaceholder()
    {
        // As long as it is open, no other file looks like it.
        struct stat own = {};
        struct stat present = {};
        const QByteArray path = QFile::encodeName(m_info.filePath());
        if (m_placeholder.isOpen() && ::fstat(m_placeholder.handle(), &own) == 0 && ::lstat(path.constData(), &present) == 0
            && own.st_dev == present.st_dev && own.st_ino == present.st_ino && present.st_size == 0) {
            QFile::remove(m_info.filePath());
        }
    }

private:
    static bool isTaken(const QFileInfo &info)
    {
        const QFileInfo now(info.filePath());
        return now.exists() || now.isSymLink();
    }

    QFileInfo m_info;
    QFile m_placeholder;
};

} // namespace

KelGPXTrackFileRegistry::KelGPXTrackFileRegistry() = default;

KelGPXTrackFileRegistry::~KelGPXTrackFileRegistry() = default;

QString KelGPXTrackFileRegistry::fileName(const KelGPXTrackFileRegistryKey &key) const
{
    return m_files.value(key);
}

void KelGPXTrackFileRegistry::registerFile(const KelGPXTrackFileRegistryKey &key, const QString &fileName)
{
    const Locker locker(&m_mutex);
    m_files.insert(KelGPXTrackFileRegistryKey(key.track(), unshared(key.dir())), fileName);
}

QFileInfo KelGPXTrackFileRegistry::createFileInfo(const KelGPXTrackFileRegistryKey &key, const QString &name) const
{
    return QFileInfo(key.dir(), name);
}

void KelGPXTrackFileRegistry::saveTrackInFile(const KelGPXTrackFileRegistryKey &key, const QFileInfo &file)
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, KelGPXNames::IncludedTrack.toString());
    key.track().toXml(root, QDir(QString()));
    KelXMLBuilder::saveUTF8(document, file, nullptr);
}

QString KelGPXTrackFileRegistry::createAssignedFile(const KelGPXTrackFileRegistryKey &key)
{
    const Locker locker(&m_mutex);
    const QString known = fileName(key);
    if (!known.isEmpty())
        return known;

    NewFile file(createFileInfo(key, QStringLiteral("track.gps")), key.dir());
    saveTrackInFile(key, file.info());
    file.removePlaceholder();
    registerFile(key, file.info().fileName());
    return file.info().fileName();
}
