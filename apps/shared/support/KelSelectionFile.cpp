// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelSelectionFile.h"

#include "KelPlainText.h"

#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackFileRegistry.h>
#include <KelXMLBuilder.h>
#include <KelXMLLoader.h>

#include <QDeadlineTimer>
#include <QDomDocument>
#include <QDomElement>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <optional>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr std::chrono::milliseconds READERS_PATIENCE(5000); // then better to read what is there than nothing
constexpr int RETRY_MS = 10;
constexpr std::chrono::milliseconds TICK(100); // more than that of usual file systems
constexpr int ATTEMPTS = 100;
// Of a selection's track files, with repetitions.
constexpr qint64 MOST_TIMES = 10;
constexpr qint64 BYTES_AT_LEAST = 10'000'000;
constexpr qsizetype MOST_REASONS = 20; // of a folder that is gone nobody reads the name of every file

const QString ROOT = QStringLiteral("kelTracks");
const QString SELECTION = QStringLiteral("gpxtrack");
// Rows, in the order in which the library reads them; the first is the former name.
const QStringList ROWS = {QStringLiteral("locationTrack"), QStringLiteral("configuredTrack")};
const QString INCLUDE = QStringLiteral("include");
const QString TRACK = QStringLiteral("trk");

/// The library takes the working directory for "no directory": stand elsewhere while it is the store.
class ElsewhereThan
{
public:
    explicit ElsewhereThan(const QDir &store)
        : m_former(QDir::currentPath())
        , m_moved(store == QDir(QString()) && QDir::setCurrent(QDir::rootPath()))
    {
    }
    ~ElsewhereThan()
    {
        if (m_moved)
            QDir::setCurrent(m_former);
    }
    ElsewhereThan(const ElsewhereThan &) = delete;
    ElsewhereThan &operator=(const ElsewhereThan &) = delete;

private:
    QString m_former;
    bool m_moved;
};

QDomElement includeOf(const QDomElement &row)
{
    return row.firstChildElement(TRACK).firstChildElement(INCLUDE);
}

QString includedFile(const QDomElement &row)
{
    return includeOf(row).text();
}

/// Whether it names a file of the store itself: documents from strangers may name any file of the user's.
bool isOwnName(const QString &name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") && !name.contains(QLatin1Char('/'));
}

/// The first file that a document names outside of its store, or besides the one that a track may have; null if all
/// is well. What such a document names is neither read nor written nor removed.
QString foreignName(const QDomElement &root)
{
    const QDomElement selection = root.firstChildElement(SELECTION);
    for (QDomElement row = selection.firstChildElement(); !row.isNull(); row = row.nextSiblingElement()) {
        const QDomElement include = includeOf(row);
        const QDomElement further = include.nextSiblingElement(INCLUDE);
        if (!further.isNull())
            return further.text().isNull() ? QStringLiteral("") : further.text();
        if (!include.text().isEmpty() && !isOwnName(include.text()))
            return include.text();
    }
    return QString();
}

/// Whether a row holds anything beside the name of its file. It would be another track than the file's: thousands of
/// them, all of one size, are what the registry finds slowly. Nothing that was saved here looks like that. Rows without the
/// name of a file hold what they like: they are not registered when they are read.
bool hasMoreThanNames(const QDomElement &root)
{
    const QDomElement selection = root.firstChildElement(SELECTION);
    for (QDomElement row = selection.firstChildElement(); !row.isNull(); row = row.nextSiblingElement()) {
        const QDomElement include = includeOf(row);
        if (!include.previousSiblingElement().isNull() || !include.nextSiblingElement().isNull())
            return true;
    }
    return false;
}

QSet<QString> filesIn(const QDir &dir)
{
    const QStringList names = dir.entryList(QDir::Files);
    return QSet<QString>(names.cbegin(), names.cend());
}

QSet<QString> linksAmong(QStringList names, const QDir &dir)
{
    names.removeIf([&](const QString &name) { return !QFileInfo(dir, name).isSymLink(); });
    return QSet<QString>(names.cbegin(), names.cend());
}

/// Keeps other processes, and other threads, from changing the store. The folder itself is locked: that needs no room on
/// the disk and no right to write, leaves nothing behind, and ends with the process. Where folders cannot be locked, as
/// on some network drives, everybody goes ahead.
///
/// Who waits asks again and again: readers that follow each other closely may keep one who wants to change the store waiting
/// until he gives up, and so does a reader that was stopped.
class StoreLock
{
public:
    enum Kind {
        Read = LOCK_SH, ///< with other readers
        Change = LOCK_EX
    };

    StoreLock(const QDir &store, Kind kind, std::chrono::milliseconds patience)
    {
        const QDeadlineTimer deadline(patience);
        // Who had the lock before may have removed the folder, which was empty: then it is no lock of the store's. Where
        // a folder never looks like itself, as on some network drives, the last one has to do.
        for (int i = 0; i < ATTEMPTS; ++i) {
            close();
            m_folder = ::open(QFile::encodeName(store.path()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            lock(kind, deadline);
            if (m_folder < 0 || m_isOthers || isStillAt(store))
                return;
        }
    }
    ~StoreLock() { close(); }
    Q_DISABLE_COPY_MOVE(StoreLock)

    /// Whether somebody else has it and does not let go.
    [[nodiscard]] bool isOthers() const { return m_isOthers; }
    /// Whether there is no folder that could be locked.
    [[nodiscard]] bool isNobodys() const { return m_folder < 0; }

private:
    void lock(Kind kind, const QDeadlineTimer &deadline)
    {
        while (m_folder >= 0 && ::flock(m_folder, kind | LOCK_NB) != 0) {
            if (errno != EWOULDBLOCK)
                break;
            m_isOthers = deadline.hasExpired();
            if (m_isOthers)
                break;
            QThread::msleep(RETRY_MS);
        }
    }
    [[nodiscard]] bool isStillAt(const QDir &store) const
    {
        struct stat locked = {};
        struct stat present = {};
        return ::fstat(m_folder, &locked) == 0 && ::stat(QFile::encodeName(store.path()).constData(), &present) == 0
            && locked.st_dev == present.st_dev && locked.st_ino == present.st_ino;
    }
    void close()
    {
        if (m_folder >= 0)
            ::close(m_folder);
        m_folder = -1;
    }

    int m_folder = -1;
    bool m_isOthers = false;
};

/// Which track files this process has read or written, and what they looked like then: a file that looks the same still
/// holds the same track. Another process may have removed one and used its name for a track of its own.
///
/// Clocks of file systems tick slowly: a file that was young when it was looked at may have been replaced within the same
/// tick, even in the same place on the disk. Only looks at older ones count.
class KnownFiles
{
public:
    static void remember(const QString &path)
    {
        const QMutexLocker locker(&mutex());
        const Look look(path);
        if (look.isOld())
            table().insert(path, look);
        else
            table().remove(path);
    }
    static bool isUnchanged(const QString &path)
    {
        const QMutexLocker locker(&mutex());
        const auto found = table().constFind(path);
        return found != table().constEnd() && found.value() == Look(path);
    }

private:
    struct Look
    {
        explicit Look(const QString &path)
        {
            struct stat status = {};
            if (::stat(QFile::encodeName(path).constData(), &status) != 0)
                return;
            file = status.st_ino;
            size = status.st_size;
            seconds = status.st_mtim.tv_sec;
            nanoseconds = status.st_mtim.tv_nsec;
        }
        bool operator==(const Look &other) const = default;
        [[nodiscard]] bool isOld() const
        {
            const std::chrono::nanoseconds changed = std::chrono::seconds(seconds) + std::chrono::nanoseconds(nanoseconds);
            return std::chrono::system_clock::now().time_since_epoch() - changed > TICK;
        }

        ino_t file = 0;
        off_t size = -1;
        time_t seconds = 0;
        long nanoseconds = 0;
    };
    static QMutex &mutex()
    {
        static QMutex instance;
        return instance;
    }
    static QHash<QString, Look> &table()
    {
        static QHash<QString, Look> instance;
        return instance;
    }
};

} // namespace

KelSelectionFile::KelSelectionFile(const QString &path)
    : m_path(path)
    , m_store(QFileInfo(path).absoluteDir().filePath(QFileInfo(path).completeBaseName() + QStringLiteral(".tracks")))
{
}

KelSelectionFile::Result KelSelectionFile::load(KelGPXTrackSelection &selection, KelErrorHistory &errors) const
{
    const QFileInfo file(m_path);
    QFile opened(m_path);
    if (file.exists() && !file.isFile())
        return fail(Result::Unreadable, QStringLiteral("the selection cannot be read: this is no file"), errors);
    if (!opened.open(QIODevice::ReadOnly)) {
        return fail(Result::Unreadable,
                    QStringLiteral("the selection cannot be read: %1").arg(opened.errorString()), errors);
    }
    // Between a document and the tracks that it names nobody may save: what is read is the former state or the new one.
    const StoreLock lock(m_store, StoreLock::Read, std::min(m_patience, READERS_PATIENCE));
    KelErrorHistory reasons;
    const QDomElement root = KelXMLLoader::loadDocumentElement(file, &reasons);
    if (root.isNull() || root.firstChildElement(SELECTION).isNull()) {
        KelErrorHistory::Entry entry = reasons.last();
        entry.fileName = m_path;
        if (entry.message.isEmpty())
            entry.message = QStringLiteral("this is no stored selection");
        errors.add(entry);
        return Result::Malformed;
    }
    const QString objection = objectionTo(root);
    if (!objection.isNull())
        return fail(Result::Malformed, objection, errors);
    const QStringList names = trackFiles(root);
    for (const QString &name : names)
        KnownFiles::remember(m_store.filePath(name));
    const QMap<QString, KelErrorHistory::Entry> flawed = flaws(names);
    const QStringList missing = flawed.keys();
    for (qsizetype i = 0; i < std::min(missing.size(), MOST_REASONS); ++i)
        errors.add(flawed.value(missing.at(i)));
    if (missing.size() > MOST_REASONS) {
        fail(Result::Incomplete,
             QStringLiteral("%1 more of its track files are missing or malformed").arg(missing.size() - MOST_REASONS), errors);
    }
    const ElsewhereThan guard(m_store);
    KelGPXTrackSelection stored = read(root, QSet<QString>(missing.cbegin(), missing.cend()));
    for (int row = missing.isEmpty() ? -1 : stored.count() - 1; row >= 0; --row) {
        if (stored.value(row).track().countPoints() == 0)
            stored.removeAt(row);
    }
    selection = stored;
    return missing.isEmpty() ? Result::Done : Result::Incomplete;
}

KelSelectionFile::Result KelSelectionFile::save(const KelGPXTrackSelection &selection, KelErrorHistory &errors) const
{
    const auto notSaved = [&](const QString &reason) {
        return fail(Result::NotWritten, QStringLiteral("the selection was not saved: %1").arg(reason), errors);
    };
    const QFileInfo file(QFileInfo(m_path).absoluteFilePath());
    if (file.isDir())
        return notSaved(QStringLiteral("this is a folder; name a file in it"));
    // What was saved there before is read, and the tracks lie beside it.
    if (file.exists() && !file.isFile())
        return notSaved(QStringLiteral("this is a pipe or device; name a file"));
    std::optional<StoreLock> lock;
    // Another process that gives up removes the folder that it has made, if there is nothing in it yet.
    for (int i = 0; i < ATTEMPTS && (!lock || lock->isNobodys()); ++i) {
        if (!m_store.mkpath(QStringLiteral(".")))
            return notSaved(QStringLiteral("the folder %1 cannot be made").arg(m_store.path()));
        lock.emplace(m_store, StoreLock::Change, m_patience);
    }
    if (lock->isOthers())
        return notSaved(QStringLiteral("another program is using it; try again"));
    const ElsewhereThan guard(m_store);
    // Tracks that the former document has stored keep their files: reading it tells the library which they are.
    if (file.exists()) {
        const QDomElement former = KelXMLLoader::loadDocumentElement(file);
        if (!former.isNull() && objectionTo(former).isNull())
            static_cast<void>(read(former, linksAmong(trackFiles(former), m_store)));
    }

    const QSet<QString> formerFiles = filesIn(m_store);
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, ROOT);
    selection.toXml(root, m_store);
    correctTracks(selection, root, formerFiles);
    // The library stores tracks without a word about success.
    const QStringList names = trackFiles(root);
    QStringList added = names;
    added.removeIf([&](const QString &name) { return formerFiles.contains(name); });
    const auto giveUp = [&](const QString &reason) {
        removeFiles(added);
        if (formerFiles.isEmpty())
            m_store.rmdir(m_store.path()); // only succeeds if nothing else is in it
        return notSaved(reason);
    };
    if (!flaws(added).isEmpty()) {
        return giveUp(
            QStringLiteral("its tracks could not be written to %1; is the disk full or the folder read-only?")
                .arg(m_store.path()));
    }
    KelErrorHistory reasons;
    if (!KelXMLBuilder::saveUTF8(document, file, &reasons))
        return giveUp(reasons.last().message);
    for (const QString &name : names)
        KnownFiles::remember(m_store.filePath(name));
    return Result::Done;
}

QStringList KelSelectionFile::storedFiles() const
{
    QStringList paths = m_store.entryList(QDir::Files);
    for (QString &path : paths)
        path = m_store.filePath(path);
    return paths;
}

void KelSelectionFile::removeUnusedTracks() const
{
    // What another process is about to save may not be mentioned yet.
    const StoreLock lock(m_store, StoreLock::Change, m_patience);
    const QFileInfo file(m_path);
    const QDomElement root = file.isFile() ? KelXMLLoader::loadDocumentElement(file) : QDomElement();
    if (root.isNull() || lock.isOthers())
        return;
    const QStringList names = trackFiles(root);
    removeFiles((filesIn(m_store) - QSet<QString>(names.cbegin(), names.cend())).values());
}

QStringList KelSelectionFile::trackFiles(const QDomElement &root)
{
    QStringList names;
    const QDomElement selection = root.firstChildElement(SELECTION);
    for (QDomElement row = selection.firstChildElement(); !row.isNull(); row = row.nextSiblingElement()) {
        const QString name = includedFile(row);
        if (!name.isEmpty()) // otherwise stored in the document itself
            names.append(name);
    }
    return names;
}

/// Why a document that holds a selection is not read; null if all is well.
QString KelSelectionFile::objectionTo(const QDomElement &root) const
{
    const QString foreign = foreignName(root);
    if (!foreign.isNull()) {
        return QStringLiteral("it names a file that is none of its own: \"%1\"; its tracks have to lie in the folder %2")
            .arg(KelPlainText::shortened(foreign), m_store.dirName());
    }
    if (hasMoreThanNames(root))
        return QStringLiteral("a track of it holds more than the name of its file");
    if (areNamedTooOften(trackFiles(root)))
        return QStringLiteral("its rows name the same track files far too often");
    return QString();
}

/// A file that several rows name is read for the first of them; the others share its track, so that they need no memory.
/// The unwanted files are not read. The rows lose their tracks for that.
KelGPXTrackSelection KelSelectionFile::read(const QDomElement &root, const QSet<QString> &unwanted) const
{
    QStringList names;
    QSet<QString> once = unwanted;
    for (const QString &kind : ROWS) {
        QDomElement row = root.firstChildElement(SELECTION).firstChildElement(kind);
        for (; !row.isNull(); row = row.nextSiblingElement(kind)) {
            names.append(includedFile(row));
            if (once.contains(names.last()))
                row.removeChild(row.firstChildElement(TRACK));
            else if (!names.last().isEmpty())
                once.insert(names.last());
        }
    }
    const KelGPXTrackSelection stored(root, m_store, QString());
    QList<KelGPXConfiguredTrack> rows = stored.tracks().tracks();
    QHash<QString, KelGPXTrack> tracks;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const QString &name = names.at(i);
        if (tracks.contains(name))
            rows[i].setTrack(tracks.value(name));
        else if (!name.isEmpty())
            tracks.insert(name, rows.at(i).track());
    }
    KelGPXTrackSelection result{KelGPXConfiguredTrackList(rows)};
    result.setCroppingOpacity(stored.nominalCroppingOpacity());
    return result;
}

/// A selection may hold a track several times; thousands of rows of one long track are no selection, but a way to have it
/// drawn for ever.
bool KelSelectionFile::areNamedTooOften(const QStringList &names) const
{
    qint64 altogether = 0;
    qint64 onceEach = 0;
    QSet<QString> seen;
    for (const QString &name : names) {
        const qint64 size = QFileInfo(m_store, name).size();
        altogether += size;
        onceEach += seen.contains(name) ? 0 : size;
        seen.insert(name);
    }
    return altogether > MOST_TIMES * onceEach + BYTES_AT_LEAST;
}

KelErrorHistory::Entry KelSelectionFile::flawOf(const QString &name) const
{
    const QFileInfo file(m_store, name);
    QFile opened(file.filePath());
    const auto missing = [&](const QString &reason) {
        const QString text = QStringLiteral("its track file %1 %2; keep the folder %3 beside it");
        return KelErrorHistory::Entry{m_path, -1, -1, text.arg(file.filePath(), reason, m_store.dirName())};
    };
    // A pipe in the store would keep the program waiting for its writer; a link may lead out of the store.
    if (file.isSymLink())
        return missing(QStringLiteral("is a link"));
    if (!file.isFile())
        return missing(file.exists() ? QStringLiteral("is no file") : QStringLiteral("is missing"));
    if (!opened.open(QIODevice::ReadOnly))
        return missing(QStringLiteral("cannot be read: ") + opened.errorString());

    KelErrorHistory reasons;
    if (!KelXMLLoader::loadDocumentElement(file, &reasons).firstChildElement(TRACK).isNull())
        return {};
    KelErrorHistory::Entry reason = reasons.last();
    reason.fileName = file.filePath();
    if (reason.message.isEmpty())
        reason.message = QStringLiteral("there is no track in the file");
    while (reason.message.endsWith(QLatin1Char('.')))
        reason.message.chop(1);
    reason.message += QStringLiteral("; it belongs to the selection %1").arg(QFileInfo(m_path).fileName());
    return reason;
}

QMap<QString, KelErrorHistory::Entry> KelSelectionFile::flaws(const QStringList &names) const
{
    QMap<QString, KelErrorHistory::Entry> result;
    const QSet<QString> once(names.cbegin(), names.cend());
    for (const QString &name : once) {
        const KelErrorHistory::Entry flaw = flawOf(name);
        if (!flaw.message.isEmpty())
            result.insert(name, flaw);
    }
    return result;
}

bool KelSelectionFile::holds(const QString &name, const KelGPXTrack &track) const
{
    const QString path = m_store.filePath(name);
    if (KnownFiles::isUnchanged(path))
        return true;
    const QDomElement stored = KelXMLLoader::loadDocumentElement(QFileInfo(path)).firstChildElement(TRACK);
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, ROOT);
    track.toXml(root, QDir(QString()));
    const bool same = !stored.isNull() && KelXMLBuilder::toText(stored, 0) == KelXMLBuilder::toText(root.firstChildElement(), 0);
    if (same)
        KnownFiles::remember(path); // old enough by now, perhaps
    return same;
}

/// The library remembers where it has stored a track and does not look again: a file that was deleted since then,
/// by this class or by anybody, is written anew under its name; when another process has used the name meanwhile, the
/// track gets another one.
void KelSelectionFile::correctTracks(const KelGPXTrackSelection &selection, const QDomElement &root,
                                     const QSet<QString> &formerFiles) const
{
    KelGPXTrackFileRegistry &registry = KelGPXTrackFileRegistry::instance();
    QDomElement element = root.firstChildElement(SELECTION).firstChildElement();
    for (int row = 0; row < selection.count() && !element.isNull(); ++row, element = element.nextSiblingElement()) {
        const QString name = includedFile(element);
        const KelGPXTrack track = selection.value(row).track();
        const KelGPXTrackFileRegistryKey key(track, m_store);
        const QFileInfo stored(m_store, name);
        if (name.isEmpty() || (stored.exists() && !formerFiles.contains(name)))
            continue; // in the document itself, or stored just now
        // A link is not followed: it might lead out of the store.
        if (!stored.exists() && !stored.isSymLink()) {
            registry.saveTrackInFile(key, stored);
        } else if (stored.isSymLink() || !holds(name, track)) {
            registry.registerFile(key, QString()); // as if never stored
            includeOf(element).firstChild().setNodeValue(registry.createAssignedFile(key));
        }
    }
}

void KelSelectionFile::removeFiles(const QStringList &names) const
{
    for (const QString &name : names)
        QFile::remove(m_store.filePath(name));
}

KelSelectionFile::Result KelSelectionFile::fail(Result result, const QString &message, KelErrorHistory &errors) const
{
    KelErrorHistory::Entry entry;
    entry.fileName = m_path;
    entry.message = message;
    errors.add(entry);
    return result;
}
