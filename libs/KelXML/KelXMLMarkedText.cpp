// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLMarkedText.h"

#include <algorithm>
#include <array>

namespace
{

/// In a text that holds none, so that nothing else can look like the mark of a text that was taken out.
constexpr QChar MARK(0xe000);

using Texts = QList<QStringView>;

/// Characters that mean themselves in a text, beyond doubt: no entity, no end of a CDATA section, no line end to be
/// made another.
constexpr std::array<bool, 128> plainCharacters = [] {
    std::array<bool, 128> plain{};
    for (std::size_t c = 0x20; c < 0x7f; ++c)
        plain[c] = c != '<' && c != '>' && c != '&' && c != ']';
    plain['\n'] = plain['\t'] = true;
    return plain;
}();

constexpr bool isPlain(char16_t character)
{
    return character < plainCharacters.size() && plainCharacters[character];
}

constexpr qsizetype CHARACTERS_AT_ONCE = 32;

/// Zero up to the limit.
constexpr char16_t beyond(char16_t value, char16_t limit)
{
    return char16_t(std::max(value, limit) - limit);
}

/// Whether nothing but what most coordinates are made of comes next, plain characters all: "+" to ";", tabs, line feeds and
/// blanks. Without a table and without conditions, so that the compiler can look at many at once.
bool areUsual(const char16_t *at)
{
    char16_t others = 0;
    for (qsizetype i = 0; i < CHARACTERS_AT_ONCE; ++i) {
        const char16_t inNoNumber = beyond(char16_t(at[i] - u'+'), u';' - u'+');
        const char16_t noLineFeed = beyond(char16_t(at[i] - u'\t'), u'\n' - u'\t');
        const char16_t noBlank = at[i] ^ u' ';
        others |= std::min(std::min(inNoNumber, noLineFeed), noBlank);
    }
    return others == 0;
}

/// Goes through a document from one piece of markup to the next. It trusts the document to be well-formed: of another
/// one it may see anything, but the parser comes to the error all the same.
class MarkupScanner
{
public:
    explicit MarkupScanner(QStringView xml)
        : m_at(xml.utf16())
        , m_end(m_at + xml.size())
    {
    }

    /// The long plain texts, each all that stands between two pieces of markup; none if there is a doubt.
    Texts longTexts()
    {
        Texts texts;
        while (skipText()) {
            if (startsWith(u"<!--")) {
                if (!skipBehind(u"-->", 4))
                    return {};
            } else if (startsWith(u"<![CDATA[")) {
                if (!skipBehind(u"]]>", 9))
                    return {};
            } else if (startsWith(u"<?")) {
                if (!skipBehind(u"?>", 2))
                    return {};
            } else if (startsWith(u"<!") || !skipTag()) {
                return {}; // a document type may change what anything means
            } else {
                takeText(texts);
            }
        }
        return texts;
    }

private:
    /// To the next markup.
    bool skipText()
    {
        const qsizetype index = rest().indexOf(u'<');
        m_at = index < 0 ? m_end : m_at + index;
        return m_at != m_end;
    }

    bool skipBehind(QStringView end, qsizetype from)
    {
        const qsizetype index = rest().indexOf(end, from);
        if (index < 0)
            return false;
        m_at += index + end.size();
        return true;
    }

    /// Behind the end of the tag; an end in the value of an attribute is none.
    bool skipTag()
    {
        char16_t quote = 0;
        for (++m_at; m_at != m_end; ++m_at) {
            if (quote != 0)
                quote = *m_at == quote ? char16_t(0) : quote;
            else if (*m_at == u'"' || *m_at == u'\'')
                quote = *m_at;
            else if (*m_at == u'>')
                break;
        }
        if (m_at == m_end)
            return false;
        ++m_at;
        return true;
    }

    void takeText(Texts &texts)
    {
        const char16_t *const begin = m_at;
        while (m_at != m_end && isPlain(*m_at) && *m_at <= u' ')
            ++m_at;
        const bool blank = m_at == m_end || !isPlain(*m_at);
        skipPlain();
        // The parser drops blank texts, which it would not do with what stands for them.
        if (m_at != m_end && *m_at == u'<' && !blank && m_at - begin >= KelXMLMarkedText::MINIMUM_LENGTH)
            texts.append(QStringView(begin, m_at));
    }

    void skipPlain()
    {
        while (m_end - m_at >= CHARACTERS_AT_ONCE) {
            if (areUsual(m_at)) {
                m_at += CHARACTERS_AT_ONCE;
                continue;
            }
            for (qsizetype i = 0; i < CHARACTERS_AT_ONCE; ++i, ++m_at) {
                if (!isPlain(*m_at))
                    return;
            }
        }
        while (m_at != m_end && isPlain(*m_at))
            ++m_at;
    }

    [[nodiscard]] QStringView rest() const { return {m_at, m_end}; }
    [[nodiscard]] bool startsWith(QStringView text) const { return rest().startsWith(text); }

    const char16_t *m_at;
    const char16_t *m_end;
};

QString withMarks(const QString &xml, const Texts &texts)
{
    QString marked;
    const char16_t *at = QStringView(xml).utf16();
    for (qsizetype i = 0; i < texts.size(); ++i) {
        marked += QStringView(at, texts.at(i).utf16());
        marked += KelXMLMarkedText::markOf(i);
        at = texts.at(i).utf16() + texts.at(i).size();
    }
    marked += QStringView(at, QStringView(xml).utf16() + xml.size());
    return marked;
}

} // namespace

KelXMLMarkedText::KelXMLMarkedText(const QString &xml)
    : m_texts(MarkupScanner(xml).longTexts())
{
    if (m_texts.isEmpty())
        return;
    m_marked = withMarks(xml, m_texts);
    // The mark is no plain character, so it stood in none of the texts that were taken out.
    if (m_marked.count(MARK) == m_texts.size())
        return;
    m_texts.clear();
    m_marked.clear();
}

bool KelXMLMarkedText::looksLikeMark(QStringView text)
{
    return text.startsWith(MARK);
}

QString KelXMLMarkedText::markOf(qsizetype index)
{
    return MARK + QString::number(index);
}
