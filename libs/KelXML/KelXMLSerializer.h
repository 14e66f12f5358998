// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLSERIALIZER_H
#define KELXMLSERIALIZER_H

#include <QDomNode>
#include <QList>
#include <QString>

class QDomDocumentType;
class QDomElement;

/// Writes one node with everything below it as text; see KelXMLBuilder::toText() for what is promised. One use each.
///
/// The tree is walked with a stack of its own, not by recursion: the depth of a document is not ours to choose.
class KelXMLSerializer
{
public:
    explicit KelXMLSerializer(int indent);

    /// Leaves out the XML declaration, if the tree has one, because the caller writes his own.
    void skipDeclaration();

    [[nodiscard]] QString serialize(const QDomNode &node);

    /// The text without the characters that XML 1.0 cannot hold.
    [[nodiscard]] static QString cleaned(const QString &text);

private:
    struct Level
    {
        QDomNode parent;
        QDomNode nextChild;
        bool isInline; // holds text, so that added line ends would become part of it
    };

    void writeNode(const QDomNode &node);
    void openElement(const QDomElement &element);
    void openChildren(const QDomNode &node, bool isInline);
    void closeLevel();
    void writeAttributes(const QDomElement &element);
    void writeDocumentType(const QDomDocumentType &type);
    void writeText(const QString &text);
    void writeCData(const QString &text);
    void beginLine();
    void endLine();
    [[nodiscard]] bool isInline() const;

    QString m_text;
    QList<Level> m_levels;
    int m_indent;
    int m_depth = 0;
    bool m_skipsDeclaration = false;
};

#endif
