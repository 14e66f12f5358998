// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLStreamCursor.h"

#include <KelXMLConversion.h>
#include <KelXMLGate.h>

#include <QIODevice>
#include <QXmlStreamReader>

struct KelXMLStreamCursor::Document
{
    explicit Document(QIODevice *device)
        : gate(device)
    {
    }

    QXmlStreamReader::TokenType next()
    {
        ++tokens;
        return gate.next();
    }

    [[nodiscard]] const QXmlStreamReader &reader() const
    {
        return gate.reader();
    }

    [[nodiscard]] int depth() const
    {
        return gate.depth();
    }

    [[nodiscard]] bool isOver() const
    {
        return gate.isOver();
    }

    KelXMLGate gate;
    qint64 tokens = 0;
};

KelXMLStreamCursor::KelXMLStreamCursor(QIODevice *device)
    : m_ownDocument(std::make_unique<Document>(device))
    , m_document(m_ownDocument.get())
{
    while (!m_document->isOver()) {
        if (m_document->next() == QXmlStreamReader::StartElement) {
            enterElement();
            break;
        }
    }
}

KelXMLStreamCursor::KelXMLStreamCursor(Document *document)
    : m_document(document)
{
}

KelXMLStreamCursor::~KelXMLStreamCursor() = default;

QStringView KelXMLStreamCursor::name() const
{
    return m_name;
}

QString KelXMLStreamCursor::attribute(QStringView name) const
{
    if (!isAtStart())
        return QString();
    const QXmlStreamAttributes attributes = m_document->reader().attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.qualifiedName() == name)
            return attribute.value().isEmpty() ? QStringLiteral("") : attribute.value().toString();
    }
    return QString();
}

QString KelXMLStreamCursor::text()
{
    QString text;
    readText(text);
    return text.isNull() ? QStringLiteral("") : text;
}

bool KelXMLStreamCursor::nextChild()
{
    while (!m_ended) {
        const QXmlStreamReader::TokenType token = m_document->next();
        // Deeper than a child: what was left unread of the previous child.
        if (token == QXmlStreamReader::StartElement && m_document->depth() == m_depth + 1) {
            if (!m_child)
                m_child.reset(new KelXMLStreamCursor(m_document));
            m_child->enterElement();
            return true;
        }
        m_ended = m_document->depth() < m_depth || m_document->isOver();
    }
    return false;
}

KelXMLCursor &KelXMLStreamCursor::child()
{
    Q_ASSERT(m_child);
    return *m_child;
}

qint64 KelXMLStreamCursor::line() const
{
    return m_line;
}

qint64 KelXMLStreamCursor::column() const
{
    return m_column;
}

double KelXMLStreamCursor::attributeDouble(QStringView name, double defaultValue) const
{
    if (!isAtStart())
        return defaultValue;
    const QXmlStreamAttributes attributes = m_document->reader().attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.qualifiedName() == name)
            return toDouble(attribute.value());
    }
    return defaultValue;
}

double KelXMLStreamCursor::textDouble()
{
    readText(m_text);
    return toDouble(m_text);
}

QDateTime KelXMLStreamCursor::textDateTime()
{
    readText(m_text);
    return KelXMLConversion::toDateTime(m_text);
}

bool KelXMLStreamCursor::finish()
{
    while (!m_document->isOver())
        m_document->next();
    return m_document->gate.isPassed();
}

QString KelXMLStreamCursor::errorString() const
{
    return m_document->gate.error().message;
}

qint64 KelXMLStreamCursor::errorLine() const
{
    return m_document->gate.error().line;
}

qint64 KelXMLStreamCursor::errorColumn() const
{
    return m_document->gate.error().column;
}

void KelXMLStreamCursor::enterElement()
{
    const QXmlStreamReader &reader = m_document->reader();
    m_name.resize(0);
    m_name.append(reader.qualifiedName());
    m_line = reader.lineNumber();
    m_column = reader.columnNumber();
    m_tag = m_document->tokens;
    m_depth = m_document->depth();
    m_ended = false;
}

bool KelXMLStreamCursor::isAtStart() const
{
    return !m_ended && m_tag == m_document->tokens;
}

/// Leaves the reader on the element's end tag.
void KelXMLStreamCursor::readText(QString &text)
{
    text.resize(0);
    while (!m_ended) {
        if (m_document->next() == QXmlStreamReader::Characters) {
            const QStringView run = m_document->reader().text();
            // The tree keeps no run that is empty after trimming, not even one that came from a character
            // reference; what stands in a CDATA section is always kept.
            if (m_document->reader().isCDATA() || !run.trimmed().isEmpty())
                text.append(run);
        }
        m_ended = m_document->depth() < m_depth || m_document->isOver();
    }
}
