// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLSkimmer.h"

#include <KelXMLGate.h>

#include <algorithm>
#include <utility>

namespace
{

constexpr QStringView commentKeyword = u"--";
constexpr QStringView cdataKeyword = u"[CDATA[";
constexpr QStringView documentTypeKeyword = u"DOCTYPE";
constexpr QStringView attributeListKeyword = u"ATTLIST";
constexpr QStringView entityKeyword = u"ENTITY";
constexpr qsizetype longestKeyword = 7;
constexpr qsizetype longestEntityName = 4096; // a longer one ends Qt's reader

bool isSpace(char16_t character)
{
    return character == u' ' || character == u'\t' || character == u'\n' || character == u'\r';
}

bool isPredefined(const QString &name)
{
    return name == QLatin1String("amp") || name == QLatin1String("lt") || name == QLatin1String("gt")
        || name == QLatin1String("quot") || name == QLatin1String("apos");
}

} // namespace

bool KelXMLSkimmer::feed(QStringView piece)
{
    qsizetype counted = 0;
    for (qsizetype i = 0; i < piece.size() && !isRefused(); ++i) {
        // Most of a document is text, and of interest in it only what may be a reference to an own entity.
        if (m_state == State::Text && !m_countsReferences && piece.at(i) != u'<') {
            i = piece.indexOf(u'<', i);
            if (i < 0)
                break;
        }
        step(piece.at(i).unicode());
        if (isRefused()) {
            countLines(piece.sliced(counted, i + 1 - counted));
            m_refusal.line = m_line;
            m_refusal.column = std::max<qint64>(m_column, 1);
            return false;
        }
    }
    countLines(piece.sliced(counted));
    return !isRefused();
}

void KelXMLSkimmer::refuse(const QString &reason)
{
    if (isRefused())
        return;
    m_refusal = {reason, m_line, std::max<qint64>(m_column, 1)};
}

bool KelXMLSkimmer::isBalanced() const noexcept
{
    return m_state == State::Text && m_depth == 0 && !m_inReference;
}

QHash<QString, qint64> KelXMLSkimmer::takeReferences()
{
    return std::exchange(m_references, {});
}

void KelXMLSkimmer::step(char16_t character)
{
    switch (m_state) {
    case State::Text:
        if (character == u'<')
            enter(State::Less);
        else
            stepReference(character);
        break;
    case State::Less:
        if (character == u'!') {
            m_keyword.clear();
            enter(State::Bang);
        } else if (character == u'?') {
            enter(State::Instruction);
        } else if (character == u'/') {
            enter(State::EndTag);
        } else {
            m_attributes = 0;
            enter(State::StartTag);
            stepStartTag(character);
        }
        break;
    case State::Bang:
        stepBang(character);
        break;
    case State::StartTag:
        stepStartTag(character);
        break;
    case State::EndTag:
        if (character == u'>') {
            m_depth = std::max(m_depth - 1, 0);
            enter(State::Text);
        }
        break;
    case State::Comment:
        if (endsAt(character, u'-', 2))
            enter(m_outer);
        break;
    case State::CData:
        if (endsAt(character, u']', 2))
            enter(m_outer);
        break;
    case State::Instruction:
        if (endsAt(character, u'?', 1))
            enter(m_outer);
        break;
    case State::DocumentType:
        stepDocumentType(character);
        break;
    }
    m_previous = character;
}

/// The keyword says what it is; anything else is an error that the reader finds.
void KelXMLSkimmer::stepBang(char16_t character)
{
    m_keyword.append(QChar(character));
    if (m_keyword == commentKeyword) {
        enter(State::Comment);
    } else if (m_keyword == cdataKeyword) {
        enter(State::CData);
    } else if (m_keyword == documentTypeKeyword) {
        m_hasDocumentType = true;
        m_countsReferences = true;
        m_attributes = 0;
        m_outer = State::DocumentType;
        enter(State::DocumentType);
    } else if (m_keyword.size() >= longestKeyword || character == u'>') {
        enter(State::Text);
    }
}

void KelXMLSkimmer::stepStartTag(char16_t character)
{
    if (m_quote != 0) {
        if (character == m_quote)
            m_quote = 0;
        else
            stepReference(character);
    } else if (character == u'"' || character == u'\'') {
        m_quote = character;
        m_inReference = false;
    } else if (character == u'=') {
        if (++m_attributes > KelXMLGate::MAXIMUM_ATTRIBUTES)
            refuse(QStringLiteral("an element has more than %1 attributes").arg(KelXMLGate::MAXIMUM_ATTRIBUTES));
    } else if (character == u'>') {
        openElement(m_previous == u'/');
        enter(State::Text);
    }
}

void KelXMLSkimmer::openElement(bool isEmpty)
{
    m_deepest = std::max(m_deepest, m_depth + 1);
    if (!isEmpty)
        ++m_depth;
}

/// "<!DOCTYPE name [ … ]>": of the declarations in the brackets only the quotations and the defaults of attributes
/// matter. Every element of their name is compared with each of these.
void KelXMLSkimmer::stepDocumentType(char16_t character)
{
    const bool isAttributeList = m_inDeclaration && m_keyword == attributeListKeyword;
    if (m_quote != 0) {
        if (character == m_quote)
            m_quote = 0;
        return;
    }
    if (m_inDeclaration && m_keyword.size() < longestKeyword) {
        m_keyword.append(QChar(character));
        if (m_keyword == commentKeyword) {
            m_inDeclaration = false;
            enter(State::Comment);
            return;
        }
        if (m_keyword == entityKeyword && ++m_entities > KelXMLGate::MAXIMUM_ENTITIES) {
            refuse(QStringLiteral("the document type declares more than %1 entities").arg(KelXMLGate::MAXIMUM_ENTITIES));
            return;
        }
    }
    if (character == u'"' || character == u'\'' || character == u'#') {
        m_quote = character == u'#' ? char16_t(0) : character;
        if (isAttributeList && ++m_attributes > KelXMLGate::MAXIMUM_ATTRIBUTES) {
            refuse(QStringLiteral("the document type declares more than %1 attributes")
                       .arg(KelXMLGate::MAXIMUM_ATTRIBUTES));
        }
    } else if (m_previous == u'%' && !isSpace(character)) {
        refuse(QStringLiteral("the document type uses parameter entities"));
    } else if (m_previous == u'<' && character == u'!') {
        m_keyword.clear();
        m_inDeclaration = true;
    } else if (m_previous == u'<' && character == u'?') {
        enter(State::Instruction);
    } else if (m_inDeclaration) {
        m_declaresParameters = m_declaresParameters || character == u'%';
        m_inDeclaration = character != u'>';
    } else if (character == u'[') {
        m_inSubset = true;
    } else if (character == u']') {
        m_inSubset = false;
    } else if (character == u'>' && !m_inSubset) {
        m_outer = State::Text;
        enter(State::Text);
    }
}

/// Counts "&name;". Without a document type there are only the entities that cost nothing.
void KelXMLSkimmer::stepReference(char16_t character)
{
    if (!m_countsReferences)
        return;
    if (character == u'&') {
        m_inReference = true;
        m_reference.clear();
    } else if (!m_inReference) {
        return;
    } else if (character == u';') {
        m_inReference = false;
        if (!m_reference.startsWith(u'#') && !isPredefined(m_reference))
            ++m_references[m_reference];
    } else if (isSpace(character) || m_reference.size() == longestEntityName) {
        m_inReference = false;
    } else {
        m_reference.append(QChar(character));
    }
}

/// Whether this is the ">" behind at least `count` of the marks.
bool KelXMLSkimmer::endsAt(char16_t character, char16_t mark, int count)
{
    const bool isEnd = character == u'>' && m_run >= count;
    m_run = character == mark ? m_run + 1 : 0;
    return isEnd;
}

void KelXMLSkimmer::enter(State state)
{
    m_state = state;
    m_run = 0;
    m_quote = 0;
    m_inReference = false;
}

void KelXMLSkimmer::countLines(QStringView piece)
{
    const qsizetype lastBreak = piece.lastIndexOf(u'\n');
    if (lastBreak < 0) {
        m_column += piece.size();
        return;
    }
    m_line += piece.count(u'\n');
    m_column = piece.size() - lastBreak - 1;
}
