// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackDocument.h"

#include "KelBusyWindow.h"
#include "KelSelectionCommand.h"

#include <KelSelectionFile.h>

#include <QFileInfo>
#include <QWidget>

KelTrackDocument::KelTrackDocument(QWidget *window)
    : QObject(window)
    , m_window(window)
{
    connect(&m_undoStack, &QUndoStack::cleanChanged, this, &KelTrackDocument::titleChanged);
}

KelTrackDocument::~KelTrackDocument()
{
    // A dying stack empties itself, which is no change of this document any more.
    m_undoStack.blockSignals(true);
}

QString KelTrackDocument::displayName() const
{
    return m_fileName.isEmpty() ? tr("Neue Auswahl") : QFileInfo(m_fileName).fileName();
}

void KelTrackDocument::change(const KelGPXTrackSelection &selection, const QString &text, ChangeKind kind)
{
    if (selection != m_selection)
        m_undoStack.push(new KelSelectionCommand(this, selection, text, kind));
}

void KelTrackDocument::clear()
{
    restore(KelGPXTrackSelection(), QString(), false);
}

bool KelTrackDocument::load(const QString &fileName, KelErrorHistory &errors)
{
    KelGPXTrackSelection selection;
    auto result = KelSelectionFile::Result::Unreadable;
    KelBusyWindow::run(m_window, tr("%1 wird geladen …").arg(QFileInfo(fileName).fileName()),
                       [&] { result = KelSelectionFile(fileName).load(selection, errors); });
    if (result != KelSelectionFile::Result::Done)
        return false;
    restore(selection, fileName, false);
    return true;
}

bool KelTrackDocument::save(const QString &fileName, KelErrorHistory &errors)
{
    auto result = KelSelectionFile::Result::NotWritten;
    KelBusyWindow::run(m_window, tr("%1 wird gespeichert …").arg(QFileInfo(fileName).fileName()),
                       [&] { result = KelSelectionFile(fileName).save(m_selection, errors); });
    if (result != KelSelectionFile::Result::Done)
        return false;
    m_fileName = fileName;
    m_undoStack.setClean();
    Q_EMIT titleChanged();
    return true;
}

void KelTrackDocument::restore(const KelGPXTrackSelection &selection, const QString &fileName, bool modified)
{
    m_undoStack.clear();
    m_fileName = fileName;
    setSelection(selection);
    // Without a clean state the stack counts as modified until the next save.
    if (modified)
        m_undoStack.resetClean();
    Q_EMIT titleChanged();
}

void KelTrackDocument::setSelection(const KelGPXTrackSelection &selection)
{
    m_selection = selection;
    Q_EMIT selectionChanged();
}
