// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLTextReader.h"

#include "KelXMLMarkedText.h"
#include <KelErrorHistory.h>
#include <KelXMLGate.h>
#include <KelXMLTextHandler.h>

#include <QList>
#include <QString>
#include <QStringView>
#include <QXmlStreamReader>

#include <algorithm>

namespace
{

using Texts = QList<QStringView>;

/// One pass through a document, marked or not.
class Pass
{
public:
    Pass(const QString &xml, const Texts &texts, KelXMLTextHandler &handler)
        : m_reader(xml)
        , m_texts(texts)
        , m_handler(handler)
    {
        // As in the tree: names keep their prefixes.
        m_reader.setNamespaceProcessing(false);
    }

    /// Whether the document is well-formed and every mark found its place.
    bool run()
    {
        m_handler.begin();
        while (!m_reader.atEnd() && !m_isInDoubt)
            take(m_reader.readNext());
        return !m_reader.hasError() && !m_isInDoubt && m_index == m_texts.size();
    }

    [[nodiscard]] KelErrorHistory::Entry error() const
    {
        // Qt counts the characters of the line that it has read: none yet means the first column.
        return {QString(), m_reader.lineNumber(), std::max<qint64>(m_reader.columnNumber(), 1), m_reader.errorString()};
    }

private:
    void take(QXmlStreamReader::TokenType token)
    {
        if (token == QXmlStreamReader::StartElement)
            m_handler.startElement(m_reader.qualifiedName(), m_reader.attributes());
        else if (token == QXmlStreamReader::EndElement)
            m_handler.endElement();
        else if (token == QXmlStreamReader::Characters)
            takeText(m_reader.text());
    }

    void takeText(QStringView text)
    {
        // The tree keeps no text that is empty after trimming, unless it stands in a CDATA section.
        if (!m_reader.isCDATA() && text.trimmed().isEmpty())
            return;
        if (m_texts.isEmpty() || !KelXMLMarkedText::looksLikeMark(text)) {
            m_handler.text(text, false);
            return;
        }
        m_isInDoubt = m_index == m_texts.size() || text != KelXMLMarkedText::markOf(m_index);
        if (!m_isInDoubt)
            m_handler.text(m_texts.at(m_index++), true);
    }

    QXmlStreamReader m_reader;
    const Texts m_texts;
    KelXMLTextHandler &m_handler;
    qsizetype m_index = 0;
    bool m_isInDoubt = false;
};

bool readMarked(const QString &xml, KelXMLTextHandler &handler)
{
    const KelXMLMarkedText shortened(xml);
    return shortened.isMarked() && KelXMLGate::admits(shortened.marked())
        && Pass(shortened.marked(), shortened.texts(), handler).run();
}

} // namespace

bool KelXMLTextReader::read(const QString &text, KelXMLTextHandler &handler, KelErrorHistory *errorHistory)
{
    // Without a copy, in which texts would not stay.
    const QString xml = text.startsWith(QChar(QChar::ByteOrderMark)) ? QString::fromRawData(text.constData() + 1, text.size() - 1) : text;
    if (readMarked(xml, handler))
        return true;
    KelErrorHistory::Entry reason;
    if (KelXMLGate::admits(xml, &reason)) {
        Pass pass(xml, Texts(), handler);
        if (pass.run())
            return true;
        reason = pass.error();
    }
    if (errorHistory)
        errorHistory->add(reason);
    return false;
}
