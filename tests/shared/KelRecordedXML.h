// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELRECORDEDXML_H
#define KELRECORDEDXML_H

#include <KelErrorHistory.h>
#include <KelXMLLoader.h>
#include <KelXMLTextHandler.h>
#include <KelXMLTextReader.h>

#include <QDomDocument>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QXmlStreamAttributes>

/// What a document comes to, one line for each thing: whether it is well-formed and the errors; if it is, its elements, their
/// attributes and its texts. Once as KelXMLTextReader hands it over and once as the tree of KelXMLLoader has it, which must be
/// the same.
class KelRecordedXML final : public KelXMLTextHandler
{
public:
    /// By KelXMLTextReader.
    explicit KelRecordedXML(const QString &xml)
        : m_xml(xml)
    {
        KelErrorHistory errors;
        const bool isWellFormed = KelXMLTextReader::read(xml, *this, &errors);
        m_lines = outcome(isWellFormed, errors) + (isWellFormed ? m_lines : QStringList());
    }

    [[nodiscard]] const QStringList &lines() const noexcept { return m_lines; }
    /// Whether some text was handed over as one that stays.
    [[nodiscard]] bool hasTextThatStays() const noexcept { return m_hasTextThatStays; }
    /// Whether every such text really lies in the document.
    [[nodiscard]] bool textsStay() const noexcept { return m_textsStay; }

    /// By KelXMLLoader, which may also give its tree.
    [[nodiscard]] static QStringList linesOfTree(const QString &xml, QDomDocument *tree = nullptr)
    {
        QDomDocument document;
        KelErrorHistory errors;
        QStringList lines = outcome(KelXMLLoader::setContent(document, xml, &errors), errors);
        addNode(lines, document);
        if (tree)
            *tree = document;
        return lines;
    }

    void begin() override
    {
        m_lines.clear();
        m_hasTextThatStays = false;
    }
    void startElement(QStringView name, const QXmlStreamAttributes &attributes) override
    {
        QStringList values;
        for (const QXmlStreamAttribute &attribute : attributes)
            values.append(attributeLine(attribute.qualifiedName().toString(), attribute.value().toString()));
        addStart(m_lines, name.toString(), values);
    }
    void text(QStringView text, bool stays) override
    {
        m_lines.append(textLine(text.toString()));
        if (!stays)
            return;
        m_hasTextThatStays = true;
        m_textsStay = m_textsStay && text.begin() >= QStringView(m_xml).begin() && text.end() <= QStringView(m_xml).end();
    }
    void endElement() override { m_lines.append(endLine()); }

private:
    static QStringList outcome(bool isWellFormed, const KelErrorHistory &errors)
    {
        QStringList lines(isWellFormed ? QStringLiteral("well-formed") : QStringLiteral("malformed"));
        for (const KelErrorHistory::Entry &entry : errors.entries())
            lines.append(QStringLiteral("%1:%2:%3: ").arg(entry.fileName).arg(entry.line).arg(entry.column) + entry.message);
        return lines;
    }

    static void addNode(QStringList &lines, const QDomNode &node)
    {
        if (node.isElement()) {
            const QDomNamedNodeMap attributes = node.attributes();
            QStringList values;
            for (int i = 0; i < attributes.count(); ++i)
                values.append(attributeLine(attributes.item(i).nodeName(), attributes.item(i).nodeValue()));
            addStart(lines, node.nodeName(), values);
        } else if (node.isText()) {
            lines.append(textLine(node.nodeValue()));
        }
        // No deeper than the gate lets pass.
        for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
            addNode(lines, child);
        if (node.isElement())
            lines.append(endLine());
    }

    static void addStart(QStringList &lines, const QString &name, QStringList attributes)
    {
        lines.append(QLatin1Char('<') + name);
        attributes.sort(); // a tree has them in no order
        lines += attributes;
    }
    static QString attributeLine(const QString &name, const QString &value) { return QLatin1Char('@') + name + QLatin1Char('=') + value; }
    static QString textLine(const QString &text) { return QLatin1Char('"') + text; }
    static QString endLine() { return QStringLiteral(">"); }

    const QString m_xml;
    QStringList m_lines;
    bool m_hasTextThatStays = false;
    bool m_textsStay = true;
};

#endif
