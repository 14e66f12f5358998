// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELFUZZKML_H
#define KELFUZZKML_H

#include "KelFuzz.h"

#include <KelRecordedXML.h>
#include <KelXMLMarkedText.h>

#include <QDomDocument>
#include <QString>
#include <QStringList>

namespace KelFuzz
{

/// Texts of that length are read in a way of their own, which short inputs would hardly ever see.
inline QString longCoordinates()
{
    return QStringLiteral("8.5,47.3,412 -8.25,-47.125\n").repeated(1 + KelXMLMarkedText::MINIMUM_LENGTH / 27);
}

/// The tree of a text, of which a text reader must hand over all elements and texts, or report the same error.
inline QDomDocument tree(const QString &text)
{
    QDomDocument document;
    const QStringList expected = KelRecordedXML::linesOfTree(text, &document);
    const KelRecordedXML recorded(text);
    compare(recorded.lines(), expected, "a text reader hands over what the tree has");
    check(recorded.textsStay(), "texts that stay lie in the document");
    return document;
}

} // namespace KelFuzz

#endif
