// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLStreamCursor.h"

#include <KelXMLConversion.h>
#include <KelXMLLoader.h>

#include <QIODevice>
#include <QXmlStreamReader>

#include <algorithm>

struct KelXMLStreamCursor::Document
{
    explicit Document(QIODevice *device)
        : reader(device)
    {
        // With it, tag names would lose their prefix and an undeclared prefix would be an error.
        reader.setNamespaceProcessing(false);
    }

    /// The next token; depth counts the elements that are open after it.
    QXmlStreamReader::TokenType next()
    {
        // Behind a premature end the reader would try once more, and the error would move elsewhere.
        if (isOver())
            return QXmlStreamReader::Invalid;
        const QXmlStreamReader::TokenType token = reader.readNext();
        ++tokens;
        if (token == QXmlStreamReader::StartElement)
            open();
        else if (token == QXmlStreamReader::EndElement)
            --depth;
        else if (token == QXmlStreamReader::DTD)
            refuseMisplacedDocumentType();
        return token;
    }

    [[nodiscard]] bool isOver() const
    {
        return reader.atEnd();
    }

    /// Deeper nesting counts as malformed here because it does where trees are loaded.
    void open()
    {
        if (++depth > KelXMLLoader::MAXIMUM_DEPTH) {
            reader.raiseError(QStringLiteral("elements are nested more than %1 levels deep")
                                  .arg(KelXMLLoader::MAXIMUM_DEPTH));
        }
    }

    /// There may be one, before the root. The reader lets more pass, XML and the tree do not.
    void refuseMisplacedDocumentType()
    {
        if (hasRoot)
            reader.raiseError(QStringLiteral("Unexpected token"));
        else if (hasDocumentType)
            reader.raiseError(QStringLiteral("Multiple DTD sections are not allowed"));
        hasDocumentType = true;
    }

    QXmlStreamReader reader;
    qint64 tokens = 0;
    int depth = 0;
    bool hasRoot = false;
    bool hasDocumentType = false;
};

KelXMLStreamCursor::KelXMLStreamCursor(QIODevice *device)
    : m_ownDocument(std::make_unique<Document>(device))
    , m_document(m_ownDocument.get())
{
    while (!m_document->isOver()) {
        if (m_document->next() == QXmlStreamReader::StartElement) {
            m_document->hasRoot = true;
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
    const QXmlStreamAttributes attributes = m_document->reader.attributes();
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
        if (token == QXmlStreamReader::StartElement && m_document->depth == m_depth + 1) {
            if (!m_child)
                m_child.reset(new KelXMLStreamCursor(m_document));
            m_child->enterElement();
            return true;
        }
        m_ended = m_document->depth < m_depth || m_document->isOver();
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
    const QXmlStreamAttributes attributes = m_document->reader.attributes();
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
    return m_document->hasRoot && !m_document->reader.hasError();
}

QString KelXMLStreamCursor::errorString() const
{
    return m_document->reader.errorString();
}

qint64 KelXMLStreamCursor::errorLine() const
{
    return m_document->reader.lineNumber();
}

qint64 KelXMLStreamCursor::errorColumn() const
{
    // Qt counts the characters of the line that it has read: none yet means the first column.
    return std::max<qint64>(m_document->reader.columnNumber(), 1);
}

void KelXMLStreamCursor::enterElement()
{
    const QXmlStreamReader &reader = m_document->reader;
    m_name.resize(0);
    m_name.append(reader.qualifiedName());
    m_line = reader.lineNumber();
    m_column = reader.columnNumber();
    m_tag = m_document->tokens;
    m_depth = m_document->depth;
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
            const QStringView run = m_document->reader.text();
            // The tree keeps no run that is empty after trimming, not even one that came from a character
            // reference; what stands in a CDATA section is always kept.
            if (m_document->reader.isCDATA() || !run.trimmed().isEmpty())
                text.append(run);
        }
        m_ended = m_document->depth < m_depth || m_document->isOver();
    }
}
