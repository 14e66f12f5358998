// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelSelectionCommand.h"

namespace
{

constexpr qint64 MERGE_WITHIN_MS = 1000;

} // namespace

KelSelectionCommand::KelSelectionCommand(KelTrackDocument *document, const KelGPXTrackSelection &after,
                                         const QString &text, KelTrackDocument::ChangeKind kind)
    : QUndoCommand(text)
    , m_document(document)
    , m_before(document->selection())
    , m_after(after)
    , m_kind(kind)
{
    m_age.start();
}

void KelSelectionCommand::undo()
{
    m_document->setSelection(m_before);
}

void KelSelectionCommand::redo()
{
    m_document->setSelection(m_after);
}

int KelSelectionCommand::id() const
{
    // -1 never merges: adding, removing and moving tracks are steps of their own.
    return m_kind == KelTrackDocument::ChangeKind::Structure ? -1 : static_cast<int>(m_kind);
}

bool KelSelectionCommand::mergeWith(const QUndoCommand *other)
{
    const auto *next = static_cast<const KelSelectionCommand *>(other);
    if (next->text() != text() || m_age.elapsed() > MERGE_WITHIN_MS)
        return false;
    m_after = next->m_after;
    m_age.restart();
    setObsolete(m_after == m_before);
    return true;
}
