// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelSession.h"

#include <KelErrorHistory.h>
#include <KelSelectionFile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMainWindow>
#include <QSettings>
#include <QStandardPaths>

namespace
{

constexpr int SAVE_AFTER_MS = 1500;

const QString KEY_FILE = QStringLiteral("session/file");
const QString KEY_MODIFIED = QStringLiteral("session/modified");
const QString KEY_GEOMETRY = QStringLiteral("window/geometry");
const QString KEY_STATE = QStringLiteral("window/state");

} // namespace

KelSession::KelSession(KelTrackDocument *document, QMainWindow *window)
    : QObject(window)
    , m_document(document)
    , m_window(window)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(SAVE_AFTER_MS);
    connect(&m_timer, &QTimer::timeout, this, &KelSession::saveNow);
    connect(document, &KelTrackDocument::selectionChanged, &m_timer, QOverload<>::of(&QTimer::start));
    connect(document, &KelTrackDocument::titleChanged, &m_timer, QOverload<>::of(&QTimer::start));
}

QString KelSession::fileName()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).filePath(QStringLiteral("session.keltracks"));
}

bool KelSession::restore()
{
    const QSettings settings;
    m_window->restoreGeometry(settings.value(KEY_GEOMETRY).toByteArray());
    m_window->restoreState(settings.value(KEY_STATE).toByteArray());

    KelGPXTrackSelection selection;
    KelErrorHistory errors;
    if (!QFile::exists(fileName()) || KelSelectionFile(fileName()).load(selection, errors) != KelSelectionFile::Result::Done)
        return false;
    m_document->restore(selection, settings.value(KEY_FILE).toString(), settings.value(KEY_MODIFIED).toBool());
    m_timer.stop();
    return selection.isValid();
}

void KelSession::saveNow()
{
    m_timer.stop();
    QSettings settings;
    settings.setValue(KEY_GEOMETRY, m_window->saveGeometry());
    settings.setValue(KEY_STATE, m_window->saveState());
    settings.setValue(KEY_FILE, m_document->fileName());
    settings.setValue(KEY_MODIFIED, m_document->isModified());

    KelErrorHistory errors;
    const KelSelectionFile file(fileName());
    const bool saved = QDir().mkpath(QFileInfo(fileName()).path())
        && file.save(m_document->selection(), errors) == KelSelectionFile::Result::Done;
    if (saved)
        file.removeUnusedTracks();
    // Said once, not after every change.
    if (!saved && !m_failureShown)
        Q_EMIT failed(tr("Die Sitzung kann nicht gesichert werden: %1").arg(errors.last().toString()));
    m_failureShown = !saved;
}
