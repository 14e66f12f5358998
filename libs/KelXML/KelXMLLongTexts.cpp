// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLLongTexts.h"

#include "KelXMLMarkedText.h"
#include <KelXMLLoader.h>

#include <QDomDocument>
#include <QList>
#include <QString>
#include <QStringView>

namespace
{

/// The node that follows in document order.
QDomNode nextNode(QDomNode node)
{
    if (!node.firstChild().isNull())
        return node.firstChild();
    while (!node.isNull() && node.nextSibling().isNull())
        node = node.parentNode();
    return node.nextSibling();
}

/// The text as it lies in the document's text, if it is all that stands in an element of the name that may have it so.
QString textFor(const QDomNode &node, QStringView text, const QString &inPlace)
{
    const bool isAlone = node.previousSibling().isNull() && node.nextSibling().isNull();
    return isAlone && !inPlace.isNull() && node.parentNode().nodeName() == inPlace
        ? QString::fromRawData(text.data(), text.size())
        : text.toString();
}

/// Whether each found its place again, and only that. To the very end: a reference to the mark's character looks like the
/// mark in the tree, though not in the text.
bool putBack(QDomDocument &document, const QList<QStringView> &texts, const QString &inPlace)
{
    qsizetype index = 0;
    for (QDomNode node = document.documentElement(); !node.isNull(); node = nextNode(node)) {
        if (!node.isText() || !KelXMLMarkedText::looksLikeMark(node.nodeValue()))
            continue;
        if (index == texts.size() || node.nodeValue() != KelXMLMarkedText::markOf(index))
            return false;
        node.setNodeValue(textFor(node, texts.at(index++), inPlace));
    }
    return index == texts.size();
}

bool setMarkedContent(QDomDocument &document, const QString &text, const QString &inPlace)
{
    const KelXMLMarkedText shortened(text);
    return shortened.isMarked() && KelXMLLoader::setContent(document, shortened.marked())
        && putBack(document, shortened.texts(), inPlace);
}

} // namespace

bool KelXMLLongTexts::setContent(QDomDocument &document, const QString &text, KelErrorHistory *errorHistory)
{
    return setMarkedContent(document, text, QString()) || KelXMLLoader::setContent(document, text, errorHistory);
}

bool KelXMLLongTexts::setContentInPlace(QDomDocument &document, const QString &text, const QString &tagName,
                                        KelErrorHistory *errorHistory)
{
    return setMarkedContent(document, text, tagName) || KelXMLLoader::setContent(document, text, errorHistory);
}
