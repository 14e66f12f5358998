// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelSelectionFile.h"

#include <KelErrorHistory.h>
#include <KelGPXConfiguredTrack.h>
#include <KelGPXTrackFileRegistry.h>
#include <KelXMLBuilder.h>
#include <KelXMLLoader.h>

#include <QDomDocument>
#include <QDomElement>
#include <QFile>
#include <QFileInfo>

namespace
{

const QString ROOT = QStringLiteral("kelTracks");
const QString SELECTION = QStringLiteral("gpxtrack");
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

QString includedFile(const QDomElement &row)
{
    return row.firstChildElement(TRACK).firstChildElement(INCLUDE).text();
}

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
    const QStringList missing = unreadable(trackFiles(root));
    for (const QString &name : missing) {
        fail(Result::Unreadable,
             QStringLiteral("its track file %1 is missing or damaged; keep the folder %2 beside it")
                 .arg(m_store.filePath(name), m_store.dirName()),
             errors);
    }
    const ElsewhereThan guard(m_store);
    KelGPXTrackSelection stored(root, m_store, QString());
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
    if (!m_store.mkpath(QStringLiteral(".")))
        return notSaved(QStringLiteral("the folder %1 cannot be made").arg(m_store.path()));
    const ElsewhereThan guard(m_store);
    // Tracks that the former document has stored keep their files: reading it tells the library which they are.
    if (file.exists()) {
        const QDomElement former = KelXMLLoader::loadDocumentElement(file);
        if (!former.isNull())
            static_cast<void>(KelGPXTrackSelection(former, m_store, QString()));
    }

    const QStringList formerFiles = m_store.entryList(QDir::Files);
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, ROOT);
    selection.toXml(root, m_store);
    writeMissingTracks(selection, root);
    // The library stores tracks without a word about success.
    QStringList added = trackFiles(root);
    added.removeIf([&](const QString &name) { return formerFiles.contains(name); });
    if (!unreadable(added).isEmpty()) {
        removeFilesBut(formerFiles);
        return notSaved(
            QStringLiteral("its tracks could not be written to %1; is the disk full or the folder read-only?")
                .arg(m_store.path()));
    }
    KelErrorHistory reasons;
    if (!KelXMLBuilder::saveUTF8(document, file, &reasons)) {
        removeFilesBut(formerFiles);
        return notSaved(reasons.last().message);
    }
    return Result::Done;
}

void KelSelectionFile::removeUnusedTracks() const
{
    const QDomElement root = KelXMLLoader::loadDocumentElement(QFileInfo(m_path));
    if (!root.isNull())
        removeFilesBut(trackFiles(root));
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

QStringList KelSelectionFile::unreadable(const QStringList &names) const
{
    QStringList result;
    for (const QString &name : names) {
        const QDomElement stored = KelXMLLoader::loadDocumentElement(QFileInfo(m_store, name));
        if (stored.firstChildElement(TRACK).isNull())
            result.append(name);
    }
    return result;
}

/// The library remembers where it has stored a track and does not look again: a file that was deleted since then,
/// by this class or by anybody, is written anew under its name.
void KelSelectionFile::writeMissingTracks(const KelGPXTrackSelection &selection, const QDomElement &root) const
{
    QDomElement element = root.firstChildElement(SELECTION).firstChildElement();
    for (int row = 0; row < selection.count() && !element.isNull(); ++row, element = element.nextSiblingElement()) {
        const QString name = includedFile(element);
        const QFileInfo stored(m_store, name);
        if (!name.isEmpty() && !stored.exists()) {
            KelGPXTrackFileRegistry::instance().saveTrackInFile(
                KelGPXTrackFileRegistryKey(selection.value(row).track(), m_store), stored);
        }
    }
}

void KelSelectionFile::removeFilesBut(const QStringList &kept) const
{
    const QStringList files = m_store.entryList(QDir::Files);
    for (const QString &name : files) {
        if (!kept.contains(name))
            QFile::remove(m_store.filePath(name));
    }
    if (kept.isEmpty())
        m_store.rmdir(m_store.path()); // only succeeds if nothing else is in it
}

KelSelectionFile::Result KelSelectionFile::fail(Result result, const QString &message, KelErrorHistory &errors) const
{
    KelErrorHistory::Entry entry;
    entry.fileName = m_path;
    entry.message = message;
    errors.add(entry);
    return result;
}
