// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLTEXTREADER_H
#define KELXMLTEXTREADER_H

#include <KelXMLGlobal.h>

class KelErrorHistory;
class KelXMLTextHandler;
class QString;

/// Reads a document that is a text in memory, element by element and without a tree, which would need hundreds of bytes for
/// every element, whatever it is. For rules that look at several places at a time; those that only go forward are written
/// against a KelXMLCursor.
///
/// Qt's parser looks at each character of a text in turn, several times. Here long plain texts, such as the coordinates of a
/// KML file, are taken out before, and handed over where they lie. Where anything is in doubt, and after any error, the whole
/// document is parsed as it is.
class KELXML_EXPORT KelXMLTextReader
{
public:
    KelXMLTextReader() = delete;

    /// Hands over the elements and texts that the tree of KelXMLLoader::setContent() has, and returns what that returns,
    /// with the same report of an error. Unless it returns true, what was handed over is worth nothing.
    static bool read(const QString &text, KelXMLTextHandler &handler, KelErrorHistory *errorHistory = nullptr);
};

#endif
