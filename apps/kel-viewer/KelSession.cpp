// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelSession.h"

#include "KelBusyWindow.h"

#include <KelErrorHistory.h>
#include <KelSelectionFile.h>
#include <KelSettings.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMainWindow>
#include <QSettings>
#include <QStandardPaths>
#include <QVariant>

namespace
{

constexpr int SAVE_AFTER_MS = 1500;

const QString KEY_FILE = QStringLiteral("session/file");
const QString KEY_MODIFIED = QStringLiteral("session/modified");
const QString KEY_GEOMETRY = QStringLiteral("window/geometry");
const QString KEY_STATE = QStringLiteral("window/state");

/// Invalid where the settings cannot be used.
QVariant stored(const QString &key)
{
    return KelSettings::unusableStore().isEmpty() ? QSettings().value(key) : QVariant();
}

} // namespace

KelSession::KelSession(KelTrackDocument *document, QMainWindow *window)
    : QObject(window)
    , m_document(document)
    , m_window(window)
{
    m_pool.setMaxThreadCount(1);
    m_timer.setSingleShot(true);
    m_timer.setInterval(SAVE_AFTER_MS);
    connect(&m_timer, &QTimer::timeout, this, &KelSession::saveInBackground);
    connect(document, &KelTrackDocument::selectionChanged, this, &KelSession::documentChanged);
    connect(document, &KelTrackDocument::titleChanged, this, &KelSession::documentChanged);
}

KelSession::~KelSession()
{
    m_pool.waitForDone();
}

QString KelSession::fileName()
{
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    return folder.filePath(QStringLiteral("session.keltracks"));
}

void KelSession::restoreArrangement()
{
    if (!KelSettings::unusableStore().isEmpty())
        return;
    const QSettings settings;
    m_window->restoreGeometry(settings.value(KEY_GEOMETRY).toByteArray());
    m_window->restoreState(settings.value(KEY_STATE).toByteArray());
}

bool KelSession::restore()
{
    const QString documentName = stored(KEY_FILE).toString();
    const bool hasSession = QFile::exists(fileName());
    const QString read = hasSession ? fileName() : documentName;
    if (read.isEmpty() || !QFile::exists(read))
        return false;
    KelGPXTrackSelection selection;
    KelErrorHistory errors;
    auto result = KelSelectionFile::Result::Unreadable;
    KelBusyWindow::run(m_window, tr("Die letzte Sitzung wird gelesen …"),
                       [&] { result = KelSelectionFile(read).load(selection, errors); });
    if (result != KelSelectionFile::Result::Done) {
        Q_EMIT failed(tr("Die letzte Sitzung ist nicht lesbar: %1").arg(errors.last().toString()));
        return false;
    }
    m_document->restore(selection, documentName, hasSession && stored(KEY_MODIFIED).toBool());
    m_timer.stop();
    m_changed = false;
    return selection.isValid();
}

void KelSession::documentChanged()
{
    m_changed = true;
    m_timer.start();
}

void KelSession::saveInBackground()
{
    m_changed = false;
    saveArrangement();
    m_pool.start([this, selection = m_document->selection()] {
        const Written written = write(selection);
        QMetaObject::invokeMethod(this, [this, written] { report(written); }, Qt::QueuedConnection);
    });
}

void KelSession::saveNow()
{
    m_timer.stop();
    m_pool.waitForDone();
    saveArrangement();
    if (m_changed)
        report(write(m_document->selection()));
    m_changed = false;
}

void KelSession::forgetChanges()
{
    m_timer.stop();
    m_changed = false;
    m_pool.waitForDone();
    saveArrangement();
    if (KelSettings::unusableStore().isEmpty())
        QSettings().setValue(KEY_MODIFIED, false);
    QFile::remove(fileName());
    KelSelectionFile(fileName()).store().removeRecursively();
}

void KelSession::finishWriting()
{
    m_pool.waitForDone();
}

void KelSession::saveArrangement() const
{
    if (!KelSettings::unusableStore().isEmpty())
        return;
    QSettings settings;
    settings.setValue(KEY_GEOMETRY, m_window->saveGeometry());
    settings.setValue(KEY_STATE, m_window->saveState());
    settings.setValue(KEY_FILE, m_document->fileName());
    settings.setValue(KEY_MODIFIED, m_document->isModified());
}

void KelSession::report(const Written &written)
{
    // Said once, not after every change.
    if (!written.done && !m_failureShown)
        Q_EMIT failed(tr("Die Sitzung kann nicht gesichert werden: %1").arg(written.reason));
    m_failureShown = !written.done;
}

KelSession::Written KelSession::write(const KelGPXTrackSelection &selection)
{
    const QFileInfo target(fileName());
    if (!QDir().mkpath(target.path()))
        return {false, tr("Der Ordner %1 kann nicht angelegt werden.").arg(target.path())};
    KelErrorHistory errors;
    const KelSelectionFile file(target.filePath());
    if (file.save(selection, errors) != KelSelectionFile::Result::Done)
        return {false, errors.last().toString()};
    file.removeUnusedTracks();
    return {true, {}};
}
