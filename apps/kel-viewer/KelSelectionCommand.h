// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELSELECTIONCOMMAND_H
#define KELSELECTIONCOMMAND_H

#include "KelTrackDocument.h"

#include <QElapsedTimer>
#include <QUndoCommand>

/// One step of a document's history: the selection before and after.
///
/// Steps that follow one another within a second and change the same kind of thing (a slider being dragged,
/// a number being typed) become one.
class KelSelectionCommand : public QUndoCommand
{
public:
    KelSelectionCommand(KelTrackDocument *document, const KelGPXTrackSelection &after, const QString &text,
                        KelTrackDocument::ChangeKind kind);

    void undo() override;
    void redo() override;
    [[nodiscard]] int id() const override;
    bool mergeWith(const QUndoCommand *other) override;

private:
    KelTrackDocument *m_document;
    KelGPXTrackSelection m_before;
    KelGPXTrackSelection m_after;
    KelTrackDocument::ChangeKind m_kind;
    QElapsedTimer m_age;
};

#endif
