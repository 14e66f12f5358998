// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELFUZZKML_H
#define KELFUZZKML_H

#include "KelFuzz.h"

#include <KelErrorHistory.h>
#include <KelXMLLoader.h>
#include <KelXMLLongTexts.h>

#include <QDomDocument>
#include <QString>

namespace KelFuzz
{

/// Texts of that length are read in a way of their own, which short inputs would hardly ever see.
inline QString longCoordinates()
{
    return QStringLiteral("8.5,47.3,412 -8.25,-47.125\n").repeated(1 + KelXMLLongTexts::MINIMUM_LENGTH / 27);
}

/// The tree of a text, which must be the same whether long texts are taken out before or not.
inline QDomDocument tree(const QString &text)
{
    KelErrorHistory errors;
    QDomDocument document;
    const bool isWellFormed = KelXMLLoader::setContent(document, text, &errors);
    KelErrorHistory fastErrors;
    QDomDocument fast;
    check(KelXMLLongTexts::setContent(fast, text, &fastErrors) == isWellFormed, "long texts change nothing about well-formedness");
    compare(fast.toString(-1), document.toString(-1), "long texts change nothing about the tree");
    compare(fastErrors.last().toString(), errors.last().toString(), "long texts change nothing about errors");
    return document;
}

} // namespace KelFuzz

#endif
