// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKDOCUMENT_H
#define KELTRACKDOCUMENT_H

#include <KelGPXTrackSelection.h>

#include <QObject>
#include <QUndoStack>

class KelErrorHistory;
class QWidget;

/// The user's tracks: one selection, the file it belongs to, and the history of what was done to it.
///
/// Every change goes through change(), so that everything can be undone. Selections share their tracks,
/// so a step of the history costs a list of pointers, not a copy of the points.
class KelTrackDocument : public QObject
{
    Q_OBJECT

public:
    /// What a change is about; consecutive changes of one mergeable kind become one step.
    enum class ChangeKind { Structure, Style, Cropping, Name };

    /// The window keeps being painted while the document is read or written; it may be null.
    explicit KelTrackDocument(QWidget *window = nullptr);
    ~KelTrackDocument() override;

    [[nodiscard]] const KelGPXTrackSelection &selection() const noexcept { return m_selection; }
    [[nodiscard]] QUndoStack *undoStack() noexcept { return &m_undoStack; }
    [[nodiscard]] bool isModified() const { return !m_undoStack.isClean(); }
    /// Empty while the document was never saved.
    [[nodiscard]] QString fileName() const { return m_fileName; }
    /// What a window title says: the file's name without folder, or a word for "new".
    [[nodiscard]] QString displayName() const;

    /// Replaces the selection as one step that can be undone; an equal selection is no change.
    void change(const KelGPXTrackSelection &selection, const QString &text, ChangeKind kind = ChangeKind::Structure);

    /// Starts anew, with an empty history.
    void clear();
    /// Reads a saved selection. On failure the document stays as it was and the reason is in \a errors.
    bool load(const QString &fileName, KelErrorHistory &errors);
    /// Writes the selection and, beside it, one file per track; true when every byte is on disk.
    bool save(const QString &fileName, KelErrorHistory &errors);
    /// The state before the last session ended; becomes a modified or clean document of that file name.
    void restore(const KelGPXTrackSelection &selection, const QString &fileName, bool modified);

Q_SIGNALS:
    void selectionChanged();
    /// The file name or the modified state changed.
    void titleChanged();

private:
    friend class KelSelectionCommand;
    void setSelection(const KelGPXTrackSelection &selection);

    QWidget *m_window;
    KelGPXTrackSelection m_selection;
    QString m_fileName;
    QUndoStack m_undoStack;
};

#endif
