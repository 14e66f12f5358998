// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFileImporter.h"

#include <KelTrackSelectionFactory.h>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

namespace
{

/// The file itself, or the track files below a folder in the order of their paths.
QList<QUrl> expanded(const QUrl &url)
{
    const QFileInfo file(url.toLocalFile());
    if (!file.isDir())
        return {url};
    QStringList paths;
    QDirIterator iterator(file.absoluteFilePath(), KelTrackSelectionFactory::instance().supportedFileFormats(),
                          QDir::Files, QDirIterator::Subdirectories);
    while (iterator.hasNext())
        paths.append(iterator.next());
    paths.sort();
    QList<QUrl> result;
    for (const QString &path : std::as_const(paths))
        result.append(QUrl::fromLocalFile(path));
    return result;
}

} // namespace

KelFileImporter::KelFileImporter(QObject *parent)
    : QObject(parent)
    , m_inThread(new QObject)
{
    // Created here: the settings behind the factories belong to the thread of the user interface.
    KelTrackSelectionFactory::instance();
    m_inThread->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_inThread, &QObject::deleteLater);
    m_thread.setObjectName(QStringLiteral("file reader"));
    m_thread.start();
}

KelFileImporter::~KelFileImporter()
{
    m_thread.quit();
    m_thread.wait();
}

void KelFileImporter::read(const QList<QUrl> &urls)
{
    if (urls.isEmpty())
        return;
    m_running = true;
    ++m_folders;
    // A folder may hold a whole disk: listing its files is the thread's work as well.
    QMetaObject::invokeMethod(
        m_inThread,
        [this, urls, generation = m_generation] {
            QList<QUrl> files;
            for (const QUrl &url : urls)
                files.append(expanded(url));
            QMetaObject::invokeMethod(
                this, [this, files, generation] { take(files, generation); }, Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

void KelFileImporter::take(const QList<QUrl> &files, int generation)
{
    if (generation != m_generation)
        return;
    --m_folders;
    m_waiting.append(files);
    m_total += int(files.size());
    if (!m_reading)
        readNext();
}

void KelFileImporter::cancel()
{
    if (isRunning())
        finish(true);
}

void KelFileImporter::readNext()
{
    m_reading = !m_waiting.isEmpty();
    if (!m_reading) {
        if (m_folders == 0)
            finish(false);
        return;
    }
    const QUrl url = m_waiting.takeFirst();
    Q_EMIT progress(m_done + 1, m_total, url.fileName());
    // A slot may have cancelled.
    if (!isRunning())
        return;
    QMetaObject::invokeMethod(
        m_inThread,
        [this, url, generation = m_generation] {
            const Result result = readFile(url);
            QMetaObject::invokeMethod(
                this, [this, url, result, generation] { take(url, result, generation); }, Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

void KelFileImporter::take(const QUrl &url, const Result &result, int generation)
{
    if (generation != m_generation)
        return;
    ++m_done;
    if (result.tracks.isValid())
        Q_EMIT tracksRead(url.toLocalFile(), result.tracks);
    if (!result.errors.isEmpty())
        Q_EMIT failed(result.errors);
    if (generation == m_generation)
        readNext();
}

void KelFileImporter::finish(bool cancelled)
{
    ++m_generation;
    m_waiting.clear();
    m_running = false;
    m_reading = false;
    m_folders = 0;
    m_total = 0;
    m_done = 0;
    Q_EMIT finished(cancelled);
}

KelFileImporter::Result KelFileImporter::readFile(const QUrl &url)
{
    Result result;
    const KelTrackSelectionFactory &factory = KelTrackSelectionFactory::instance();
    result.tracks = factory.createConfiguredTrackList(url, &result.errors);
    if (!result.tracks.isValid() && result.errors.isEmpty()) {
        KelErrorHistory::Entry entry;
        entry.fileName = url.toLocalFile();
        entry.message = factory.supportsFile(url) ? tr("Die Datei enthält keine Strecken.")
                                                  : tr("Dieses Dateiformat wird nicht unterstützt.");
        result.errors.add(entry);
    }
    return result;
}
