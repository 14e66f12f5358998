// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelSelectionStore.h"

#include "KelDiagnostics.h"

#include <KelErrorHistory.h>
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

} // namespace

KelSelectionStore::KelSelectionStore(const QString &path, KelDiagnostics &diagnostics)
    : m_path(path)
    , m_store(QFileInfo(path).absoluteDir().filePath(QFileInfo(path).completeBaseName() + QStringLiteral(".tracks")))
    , m_diagnostics(diagnostics)
{
}

std::optional<KelGPXTrackSelection> KelSelectionStore::load()
{
    const QFileInfo file(m_path);
    if (!file.isFile() || !QFile(m_path).open(QIODevice::ReadOnly)) {
        m_diagnostics.error(KelExitCode::InputUnreadable,
                            QStringLiteral("%1: the selection cannot be read; check the name").arg(m_path));
        return std::nullopt;
    }
    KelErrorHistory errors;
    const QDomElement root = KelXMLLoader::loadDocumentElement(file, &errors);
    if (root.isNull() || root.firstChildElement(SELECTION).isNull()) {
        KelErrorHistory::Entry entry = errors.last();
        entry.fileName = m_path;
        if (entry.message.isEmpty())
            entry.message = QStringLiteral("this is no stored selection; name a file of --save-selection");
        m_diagnostics.error(KelExitCode::InputMalformed, entry.toString());
        return std::nullopt;
    }
    const QStringList missing = unreadableTrackFiles(root);
    for (const QString &name : missing) {
        m_diagnostics.error(KelExitCode::InputUnreadable,
                            QStringLiteral("%1: its track file %2 is missing or damaged; keep the folder %3 beside it")
                                .arg(m_path, m_store.filePath(name), m_store.dirName()));
    }
    if (!missing.isEmpty())
        return std::nullopt;
    const ElsewhereThan guard(m_store);
    return KelGPXTrackSelection(root, m_store);
}

bool KelSelectionStore::save(const KelGPXTrackSelection &selection)
{
    const auto fail = [&](const QString &reason) {
        m_diagnostics.error(KelExitCode::OutputFailed,
                            QStringLiteral("%1: the selection was not saved: %2").arg(m_path, reason));
        return false;
    };
    const QFileInfo file(QFileInfo(m_path).absoluteFilePath());
    if (file.isDir())
        return fail(QStringLiteral("this is a folder; name a file in it"));
    if (!m_store.mkpath(QStringLiteral(".")))
        return fail(QStringLiteral("the folder %1 cannot be made").arg(m_store.path()));
    const ElsewhereThan guard(m_store);
    // Tracks that the former document has stored keep their files: reading it tells the library which they are.
    if (file.exists()) {
        const QDomElement former = KelXMLLoader::loadDocumentElement(file);
        if (!former.isNull())
            static_cast<void>(KelGPXTrackSelection(former, m_store));
    }

    const QStringList formerFiles = m_store.entryList(QDir::Files);
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, ROOT);
    selection.toXml(root, m_store);
    // The library stores tracks without a word about success.
    if (!unreadableTrackFiles(root).isEmpty()) {
        removeFilesBut(formerFiles);
        return fail(QStringLiteral("its tracks could not be written to %1; is the disk full or the folder read-only?")
                        .arg(m_store.path()));
    }
    KelErrorHistory errors;
    if (!KelXMLBuilder::saveUTF8(document, file, &errors)) {
        removeFilesBut(formerFiles);
        return fail(errors.last().message);
    }
    m_diagnostics.note(
        QStringLiteral("%1: saved, with the tracks in %2").arg(m_path, m_store.dirName() + QLatin1Char('/')));
    return true;
}

QStringList KelSelectionStore::unreadableTrackFiles(const QDomElement &root) const
{
    QStringList names;
    const QDomElement selection = root.firstChildElement(SELECTION);
    for (QDomElement entry = selection.firstChildElement(); !entry.isNull(); entry = entry.nextSiblingElement()) {
        const QString name = entry.firstChildElement(TRACK).firstChildElement(INCLUDE).text();
        if (name.isEmpty())
            continue; // stored in the document itself
        const QDomElement stored = KelXMLLoader::loadDocumentElement(QFileInfo(m_store, name));
        if (stored.firstChildElement(TRACK).isNull())
            names.append(name);
    }
    return names;
}

void KelSelectionStore::removeFilesBut(const QStringList &former) const
{
    const QStringList files = m_store.entryList(QDir::Files);
    for (const QString &name : files) {
        if (!former.contains(name))
            QFile::remove(m_store.filePath(name));
    }
    if (former.isEmpty())
        m_store.rmdir(m_store.path()); // only succeeds if nothing else is in it
}
