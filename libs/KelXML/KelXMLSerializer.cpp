// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLSerializer.h"

#include <QDomDocument>
#include <QDomDocumentType>
#include <QDomElement>
#include <QDomNamedNodeMap>
#include <QDomProcessingInstruction>
#include <QMap>
#include <QStringView>

#include <algorithm>

namespace
{

bool isAllowed(char16_t unit)
{
    return unit >= 0x20 ? unit < 0xfffe : unit == u'\t' || unit == u'\n' || unit == u'\r';
}

/// How many code units at the index form a character that XML can hold; 0 if they do not.
qsizetype allowedUnitsAt(const QString &text, qsizetype index)
{
    const QChar c = text.at(index);
    if (c.isHighSurrogate() && index + 1 < text.size() && text.at(index + 1).isLowSurrogate())
        return 2;
    return !c.isSurrogate() && isAllowed(c.unicode()) ? 1 : 0;
}

/// How many code units at the beginning are allowed and no half of a pair, give or take a block. Points by the million are
/// one such text.
qsizetype plainLength(QStringView text)
{
    constexpr qsizetype block = 16;
    constexpr char16_t lastPlain = 0xd7ff - 0x20;
    const char16_t *const units = text.utf16();
    qsizetype length = 0;
    for (; length + block <= text.size(); length += block) {
        // Without a condition and a way out in between, for the compiler to take all units at once.
        char16_t others = 0;
        for (qsizetype i = length; i < length + block; ++i) {
            const auto noCharacter = char16_t(std::max(char16_t(units[i] - 0x20), lastPlain) - lastPlain);
            others |= std::min(noCharacter, char16_t(units[i] ^ u'\n'));
        }
        if (others != 0)
            break;
    }
    return length;
}

/// What stands for the character in a text or an attribute; empty for most, which stand for themselves.
QLatin1String escapeOf(QChar c, bool isAttribute)
{
    switch (c.unicode()) {
    case u'&':
        return QLatin1String("&amp;");
    case u'<':
        return QLatin1String("&lt;");
    case u'>':
        return QLatin1String("&gt;");
    case u'\r':
        // A reader turns a bare carriage return into a line feed ...
        return QLatin1String("&#13;");
    case u'\n':
        // ... and bare line feeds and tabs in attributes into blanks.
        return isAttribute ? QLatin1String("&#10;") : QLatin1String();
    case u'\t':
        return isAttribute ? QLatin1String("&#9;") : QLatin1String();
    case u'"':
        return isAttribute ? QLatin1String("&quot;") : QLatin1String();
    default:
        return {};
    }
}

void appendEscaped(QString &target, const QString &text, bool isAttribute)
{
    // Points by the million come as one text with nothing to escape: runs are appended whole.
    qsizetype runStart = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QLatin1String escape = escapeOf(text.at(i), isAttribute);
        if (escape.isEmpty())
            continue;
        target += QStringView(text).mid(runStart, i - runStart);
        target += escape;
        runStart = i + 1;
    }
    target += QStringView(text).mid(runStart);
}

/// An identifier knows no escapes; it holds one kind of quotation mark at most.
QString quoted(const QString &identifier)
{
    const QChar mark = identifier.contains(QLatin1Char('"')) ? QLatin1Char('\'') : QLatin1Char('"');
    return mark + identifier + mark;
}

bool holdsText(const QDomNode &node)
{
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (child.isText() || child.isEntityReference())
            return true;
    }
    return false;
}

/// An element made with a namespace has no attribute that says so; it is written where the namespace begins.
void addNamespaceDeclaration(const QDomElement &element, QMap<QString, QString> &attributes)
{
    const QDomNode parent = element.parentNode();
    const bool isNew = parent.namespaceURI() != element.namespaceURI() || parent.prefix() != element.prefix();
    if (element.namespaceURI().isEmpty() || !isNew)
        return;
    const QString name =
        element.prefix().isEmpty() ? QStringLiteral("xmlns") : QLatin1String("xmlns:") + element.prefix();
    if (!attributes.contains(name))
        attributes.insert(name, element.namespaceURI());
}

} // namespace

KelXMLSerializer::KelXMLSerializer(int indent)
    : m_indent(indent)
{
}

void KelXMLSerializer::skipDeclaration()
{
    m_skipsDeclaration = true;
}

QString KelXMLSerializer::serialize(const QDomNode &node)
{
    writeNode(node);
    while (!m_levels.isEmpty()) {
        const QDomNode child = m_levels.last().nextChild;
        if (child.isNull()) {
            closeLevel();
        } else {
            m_levels.last().nextChild = child.nextSibling();
            writeNode(child);
        }
    }
    return m_text;
}

QString KelXMLSerializer::cleaned(const QString &text)
{
    qsizetype good = plainLength(text);
    while (good < text.size()) {
        const qsizetype units = allowedUnitsAt(text, good);
        if (units == 0)
            break;
        good += units;
    }
    if (good == text.size())
        return text;

    QString result = text.left(good);
    for (qsizetype i = good; i < text.size();) {
        const qsizetype units = allowedUnitsAt(text, i);
        result += QStringView(text).mid(i, units);
        i += units > 0 ? units : 1;
    }
    return result;
}

void KelXMLSerializer::writeNode(const QDomNode &node)
{
    switch (node.nodeType()) {
    case QDomNode::ElementNode:
        openElement(node.toElement());
        break;
    case QDomNode::DocumentNode:
    case QDomNode::DocumentFragmentNode:
        openChildren(node, false);
        break;
    case QDomNode::TextNode:
        writeText(cleaned(node.nodeValue()));
        break;
    case QDomNode::CDATASectionNode:
        writeCData(cleaned(node.nodeValue()));
        break;
    case QDomNode::EntityReferenceNode:
        m_text += QLatin1Char('&') + node.nodeName() + QLatin1Char(';');
        break;
    case QDomNode::CommentNode: {
        // Two hyphens would end the comment early; they are kept apart by a blank.
        QString comment = cleaned(node.nodeValue());
        while (comment.contains(QLatin1String("--")))
            comment.replace(QLatin1String("--"), QLatin1String("- -"));
        if (comment.endsWith(QLatin1Char('-')))
            comment += QLatin1Char(' ');
        beginLine();
        m_text += QLatin1String("<!--") + comment + QLatin1String("-->");
        endLine();
        break;
    }
    case QDomNode::ProcessingInstructionNode: {
        const QDomProcessingInstruction instruction = node.toProcessingInstruction();
        if (m_skipsDeclaration && instruction.target() == QLatin1String("xml"))
            break;
        QString data = cleaned(instruction.data());
        data.replace(QLatin1String("?>"), QLatin1String("? >"));
        beginLine();
        m_text += QLatin1String("<?") + instruction.target();
        if (!data.isEmpty())
            m_text += QLatin1Char(' ') + data;
        m_text += QLatin1String("?>");
        endLine();
        break;
    }
    case QDomNode::DocumentTypeNode:
        // That of a document is written before its root; Qt does not keep it among the children.
        if (m_levels.isEmpty())
            writeDocumentType(node.toDocumentType());
        break;
    default:
        break;
    }
}

void KelXMLSerializer::openElement(const QDomElement &element)
{
    const bool isRoot = !m_levels.isEmpty() && m_levels.last().parent.isDocument();
    if (isRoot)
        writeDocumentType(m_levels.last().parent.toDocument().doctype());
    beginLine();
    m_text += QLatin1Char('<') + element.nodeName();
    writeAttributes(element);
    if (!element.hasChildNodes()) {
        m_text += QLatin1String("/>");
        endLine();
        return;
    }
    m_text += QLatin1Char('>');
    const bool isInlineHere = isInline() || holdsText(element);
    openChildren(element, isInlineHere);
    ++m_depth;
    endLine();
}

void KelXMLSerializer::openChildren(const QDomNode &node, bool isInlineHere)
{
    m_levels.append({node, node.firstChild(), isInlineHere});
}

void KelXMLSerializer::closeLevel()
{
    const QDomNode parent = m_levels.last().parent;
    if (!parent.isElement()) {
        m_levels.removeLast();
        return;
    }
    --m_depth;
    beginLine();
    m_levels.removeLast();
    m_text += QLatin1String("</") + parent.nodeName() + QLatin1Char('>');
    endLine();
}

void KelXMLSerializer::writeAttributes(const QDomElement &element)
{
    const QDomNamedNodeMap nodes = element.attributes();
    QMap<QString, QString> attributes;
    for (int i = 0; i < nodes.count(); ++i) {
        const QDomNode node = nodes.item(i);
        attributes.insert(node.nodeName(), node.nodeValue());
    }
    addNamespaceDeclaration(element, attributes);
    for (auto it = attributes.cbegin(); it != attributes.cend(); ++it) {
        m_text += QLatin1Char(' ') + it.key() + QLatin1String("=\"");
        appendEscaped(m_text, cleaned(it.value()), true);
        m_text += QLatin1Char('"');
    }
}

void KelXMLSerializer::writeDocumentType(const QDomDocumentType &type)
{
    if (type.name().isEmpty())
        return;
    m_text += QLatin1String("<!DOCTYPE ") + type.name();
    if (!type.publicId().isEmpty())
        m_text += QLatin1String(" PUBLIC ") + quoted(type.publicId());
    else if (!type.systemId().isEmpty())
        m_text += QLatin1String(" SYSTEM");
    if (!type.publicId().isEmpty() || !type.systemId().isEmpty())
        m_text += QLatin1Char(' ') + quoted(type.systemId());
    if (!type.internalSubset().isEmpty())
        m_text += QLatin1String(" [") + cleaned(type.internalSubset()) + QLatin1Char(']');
    m_text += QLatin1Char('>');
    endLine();
}

void KelXMLSerializer::writeText(const QString &text)
{
    // Readers drop a run of nothing but blanks, a no-break space included, unless it is marked as meant.
    if (!text.isEmpty() && text.trimmed().isEmpty())
        writeCData(text);
    else
        appendEscaped(m_text, text, false);
}

void KelXMLSerializer::writeCData(const QString &text)
{
    // A section cannot hold a carriage return. Where there is other text beside it, the text counts more than its wrapping;
    // amid nothing but blanks there is no way to write it, and a reader makes it a line feed.
    if (text.contains(QLatin1Char('\r')) && !text.trimmed().isEmpty()) {
        appendEscaped(m_text, text, false);
        return;
    }
    // The end mark cannot stand in the text; the section is ended and begun anew in the middle of it.
    QString data = text;
    data.replace(QLatin1String("]]>"), QLatin1String("]]]]><![CDATA[>"));
    m_text += QLatin1String("<![CDATA[") + data + QLatin1String("]]>");
}

void KelXMLSerializer::beginLine()
{
    if (m_indent > 0 && !isInline())
        m_text += QString(static_cast<qsizetype>(m_indent) * m_depth, QLatin1Char(' '));
}

void KelXMLSerializer::endLine()
{
    if (m_indent >= 0 && !isInline())
        m_text += QLatin1Char('\n');
}

bool KelXMLSerializer::isInline() const
{
    return !m_levels.isEmpty() && m_levels.last().isInline;
}
