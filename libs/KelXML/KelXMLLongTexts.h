// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLLONGTEXTS_H
#define KELXMLLONGTEXTS_H

#include <KelXMLGlobal.h>

class KelErrorHistory;
class QDomDocument;
class QString;

/// Reads XML in which most of what there is are a few very long texts, such as the coordinates of a KML file.
///
/// Qt's parser looks at each character of a text in turn, several times. Here long plain texts are taken out, the rest is
/// parsed, and the texts are put back into the tree. Where anything is in doubt, and after any error, the whole document
/// is parsed as KelXMLLoader does.
class KELXML_EXPORT KelXMLLongTexts
{
public:
    KelXMLLongTexts() = delete;

    /// Shorter texts stay where they are.
    static constexpr int MINIMUM_LENGTH = 256;

    /// KelXMLLoader::setContent(): the same tree, the same result, the same report of an error. Only the lines and columns
    /// that the nodes remember may differ.
    static bool setContent(QDomDocument &document, const QString &text, KelErrorHistory *errorHistory = nullptr);

    /// The same without a copy of the long texts that are all there is in an element of that name: the tree, and each copy of
    /// such a text's value, refers to the characters of `text`, which have to stay where they are until both are gone.
    static bool setContentInPlace(QDomDocument &document, const QString &text, const QString &tagName,
                                  KelErrorHistory *errorHistory = nullptr);
};

#endif
