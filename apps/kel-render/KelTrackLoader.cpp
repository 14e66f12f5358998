// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackLoader.h"

#include "KelDiagnostics.h"

#include <KelErrorHistory.h>
#include <KelFileHandler.h>
#include <KelGPXConfiguredTrack.h>
#include <KelTrackSelectionFactory.h>
#include <KelZIP.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace
{

QString countOf(int count, const QString &one, const QString &many)
{
    return QStringLiteral("%1 %2").arg(count).arg(count == 1 ? one : many);
}

bool isArchive(const QFileInfo &file)
{
    return file.suffix().compare(QLatin1String("kmz"), Qt::CaseInsensitive) == 0;
}

/// KML is read as a whole.
bool isTooLarge(const QFileInfo &file)
{
    return file.suffix().compare(QLatin1String("kml"), Qt::CaseInsensitive) == 0 && file.size() > KelFileHandler::MAXIMUM_SIZE;
}

/// Whether it is no archive, or its first KML entry is refused, damaged or empty. An archive without one is none of
/// these: it only holds something else.
bool isDamagedArchive(const QFileInfo &file)
{
    const KelZIP zip(file);
    const QStringList names = zip.getFileNameList();
    const auto kml = std::find_if(names.cbegin(), names.cend(),
                                  [](const QString &name) { return name.endsWith(QLatin1String(".kml")); });
    return !zip.isOpen() || (kml != names.cend() && zip.fileContent(*kml).isEmpty());
}

/// Names that are no UTF-8, which Qt leaves out: as they can be told.
QStringList undecodableNames(const QString &folder)
{
    QStringList names;
    std::error_code trouble;
    for (std::filesystem::directory_iterator entry(QFile::encodeName(folder).toStdString(), trouble), end; !trouble && entry != end;
         entry.increment(trouble)) {
        const QByteArray name = QByteArray::fromStdString(entry->path().filename().string());
        if (QFile::encodeName(QFile::decodeName(name)) != name)
            names.append(QFile::decodeName(name));
    }
    return names;
}

} // namespace

KelTrackLoader::KelTrackLoader(KelDiagnostics &diagnostics)
    : m_diagnostics(diagnostics)
{
}

void KelTrackLoader::find(const QStringList &paths)
{
    m_inputs.clear();
    for (const QString &path : paths)
        m_inputs.append({path, filesOf(path)});
}

QStringList KelTrackLoader::files() const
{
    QStringList files;
    for (const Input &input : m_inputs)
        files.append(input.files);
    return files;
}

KelGPXConfiguredTrackList KelTrackLoader::load()
{
    for (const Input &input : std::as_const(m_inputs))
        explainFolder(input);
    const QStringList files = this->files();
    KelGPXConfiguredTrackList tracks;
    for (qsizetype i = 0; i < files.size(); ++i) {
        m_diagnostics.progress(QStringLiteral("Reading %1 of %2: %3").arg(i + 1).arg(files.size()).arg(files.at(i)));
        loadFile(files.at(i), tracks);
    }
    m_diagnostics.progress(QString());
    return tracks;
}

QStringList KelTrackLoader::filesOf(const QString &path)
{
    if (!QFileInfo(path).isDir())
        return {path};
    const QStringList patterns = KelTrackSelectionFactory::instance().supportedFileFormats();
    QStringList files;
    QStringList names = QDir(path).entryList(patterns, QDir::Files, QDir::Name);
    for (const QString &name : undecodableNames(path)) {
        if (QDir::match(patterns, name))
            names.append(name);
    }
    for (const QString &name : std::as_const(names))
        files.append(path.endsWith(QLatin1Char('/')) ? path + name : path + QLatin1Char('/') + name);
    return files;
}

void KelTrackLoader::explainFolder(const Input &input)
{
    if (!input.files.isEmpty())
        return;
    if (!QDir(input.path).isReadable()) {
        m_diagnostics.error(KelExitCode::InputUnreadable, input.path,
                            QStringLiteral("the folder cannot be read; check its permissions"));
        return;
    }
    const QStringList patterns = KelTrackSelectionFactory::instance().supportedFileFormats();
    m_diagnostics.warning(
        input.path, QStringLiteral("no track files in this folder (%1)").arg(patterns.join(QLatin1String(", "))));
}

void KelTrackLoader::loadFile(const QString &path, KelGPXConfiguredTrackList &tracks)
{
    const QFileInfo file(path);
    const QUrl url = QUrl::fromLocalFile(file.absoluteFilePath());
    const KelTrackSelectionFactory &factory = KelTrackSelectionFactory::instance();
    if (!isReadable(file))
        return;
    if (!factory.supportsFile(url)) {
        m_diagnostics.error(KelExitCode::UnsupportedFormat, path,
                            QStringLiteral("not a kind of file that can be read; use %1")
                                .arg(factory.supportedFileFormats().join(QLatin1String(", "))));
        return;
    }

    KelErrorHistory reasons;
    const KelGPXConfiguredTrackList all = factory.createConfiguredTrackList(url, &reasons);
    int taken = 0;
    for (const KelGPXConfiguredTrack &track : all) {
        if (track.track().countPoints() == 0)
            continue;
        tracks.append(track);
        ++taken;
    }
    if (taken == 0) {
        explainNothing(file, reasons);
        return;
    }
    QString text = countOf(taken, QStringLiteral("track"), QStringLiteral("tracks"));
    if (taken < all.count()) {
        text += QStringLiteral("; %1 without coordinates left out")
                    .arg(countOf(all.count() - taken, QStringLiteral("placemark"), QStringLiteral("placemarks")));
    }
    m_diagnostics.note(path, text);
}

bool KelTrackLoader::isReadable(const QFileInfo &file)
{
    const auto fail = [&](const QString &text) {
        m_diagnostics.error(KelExitCode::InputUnreadable, file.filePath(), text);
        return false;
    };
    if (file.isSymLink() && !file.exists())
        return fail(QStringLiteral("the link leads nowhere"));
    // A folder that may not be entered hides what is in it; there is more to check than the name.
    if (!file.exists() && ::access(QFile::encodeName(file.filePath()).constData(), F_OK) != 0 && errno == EACCES)
        return fail(QStringLiteral("cannot be read: its folder may not be entered; check the permissions"));
    if (!file.exists() && file.filePath().contains(QChar::ReplacementCharacter))
        return fail(QStringLiteral("cannot be read: its name is no UTF-8; give the file another one"));
    if (!file.exists())
        return fail(QStringLiteral("no such file or folder; check the name"));
    // Opening a pipe would wait for somebody to write, and it cannot be read twice.
    if (!file.isFile())
        return fail(QStringLiteral("cannot be read: a pipe or device; write its content to a file first"));
    QFile opened(file.filePath());
    if (!opened.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("cannot be read: %1").arg(opened.errorString()));
    return true;
}

void KelTrackLoader::explainNothing(const QFileInfo &file, const KelErrorHistory &reasons)
{
    KelErrorHistory::Entry entry = reasons.last();
    // As the user has named it: the factory was asked for the absolute path.
    entry.fileName = file.filePath();
    while (entry.message.endsWith(QLatin1Char('.')))
        entry.message.chop(1);
    if (entry.message.isEmpty())
        entry.message = QStringLiteral("there is no track in the file");

    if (file.size() == 0 && file.isFile()) {
        m_diagnostics.error(KelExitCode::InputMalformed, file.filePath(),
                            QStringLiteral("the file is empty; check that it was copied completely"));
    } else if (entry.line > 0) {
        entry.message += QStringLiteral("; check that the file was copied completely");
        m_diagnostics.error(KelExitCode::InputMalformed, entry);
    } else if (isTooLarge(file) || (isArchive(file) && isDamagedArchive(file))) {
        m_diagnostics.error(KelExitCode::InputMalformed, entry);
    } else {
        entry.message.prepend(QStringLiteral("0 tracks: "));
        m_diagnostics.warning(entry);
    }
}
