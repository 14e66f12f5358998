// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLSKIMMER_H
#define KELXMLSKIMMER_H

#include <QHash>
#include <QString>
#include <QStringView>
#include <QtGlobal>

/// Looks over the text of a document, piece by piece, before an XML reader sees it. It knows where tags, comments and
/// quotations begin and end and nothing else, so it costs next to nothing, and what a reader would take too long for,
/// or never come back from, is found while it is still text. See KelXMLGate for the limits.
///
/// Up to the first error of a document the marks are where XML has them; behind it no reader goes on.
class KelXMLSkimmer
{
public:
    /// What is over a limit, and where; an empty reason for nothing.
    struct Refusal
    {
        QString reason;
        qint64 line = -1;
        qint64 column = -1;
    };

    /// The next piece. False when a limit was passed in it or before.
    bool feed(QStringView piece);

    /// Refuses at the current place.
    void refuse(const QString &reason);
    [[nodiscard]] bool isRefused() const noexcept { return !m_refusal.reason.isEmpty(); }
    [[nodiscard]] const Refusal &refusal() const noexcept { return m_refusal; }

    /// Whether the text so far ends between tags, all elements closed.
    [[nodiscard]] bool isBalanced() const noexcept;

    /// How many elements lay in each other at most. No limit here: a reader bears any depth, a tree does not.
    [[nodiscard]] int deepest() const noexcept { return m_deepest; }

    /// Whether there is a document type, which may declare entities. Their references are counted from there on.
    [[nodiscard]] bool hasDocumentType() const noexcept { return m_hasDocumentType; }

    /// Whether the document type declares parameter entities, whose names are apart from those of the others.
    [[nodiscard]] bool declaresParameters() const noexcept { return m_declaresParameters; }

    /// Counts references from here on, for a text without a document type of its own.
    void countReferences() noexcept { m_countsReferences = true; }
    /// How many references to each entity there were since the last call, but for those that XML itself defines.
    [[nodiscard]] QHash<QString, qint64> takeReferences();

private:
    enum class State {
        Text,
        Less, // behind a "<"
        Bang, // behind a "<!"
        StartTag,
        EndTag,
        Comment,
        CData,
        Instruction,
        DocumentType
    };

    void step(char16_t character);
    void stepBang(char16_t character);
    void stepStartTag(char16_t character);
    void stepDocumentType(char16_t character);
    void stepReference(char16_t character);
    void openElement(bool isEmpty);
    [[nodiscard]] bool endsAt(char16_t character, char16_t mark, int count);
    void enter(State state);
    void countLines(QStringView piece);

    Refusal m_refusal;
    State m_state = State::Text;
    State m_outer = State::Text; // that a comment or an instruction returns to
    QString m_keyword;           // behind "<!"
    QString m_reference;         // the name of the reference that is being read
    QHash<QString, qint64> m_references;
    qint64 m_line = 1;
    qint64 m_column = 0;
    int m_depth = 0;
    int m_deepest = 0;
    int m_attributes = 0; // of the tag; in a document type, of all its declarations
    int m_entities = 0;   // that the document type declares
    int m_run = 0;        // of equal marks that may end the comment
    char16_t m_quote = 0;
    char16_t m_previous = 0;
    bool m_hasDocumentType = false;
    bool m_declaresParameters = false;
    bool m_countsReferences = false;
    bool m_inReference = false;
    bool m_inSubset = false;
    bool m_inDeclaration = false; // of the document type's subset
};

#endif
