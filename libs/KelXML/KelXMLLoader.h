// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLLOADER_H
#define KELXMLLOADER_H

#include <KelXMLGlobal.h>

#include <QDomElement>

class KelErrorHistory;
class QByteArray;
class QDomDocument;
class QFileInfo;
class QString;

/// Reads XML into a tree: the whole text or nothing. A text with an error anywhere, even after the last element, gives an
/// empty document or a null element, never the part that was read before the error.
///
/// Names are taken as written, prefix included ("gpxx:rpt"), and need no declaration of their prefix. Texts of nothing but
/// blanks are dropped unless they stand in a CDATA section. A byte order mark is no error.
///
/// Whatever is over the limits of KelXMLGate, those of a file's size included, counts as malformed.
///
/// Whoever passes a history finds one entry in it after a failure, with file, line, column and message as far as they are
/// known.
class KELXML_EXPORT KelXMLLoader
{
public:
    KelXMLLoader() = delete;

    /// The root element of a file; a null element if the file cannot be read or is no well-formed XML.
    ///
    /// The element and everything below it stay alive and readable as long as the caller keeps the element. It no longer
    /// belongs to a document, though: its ownerDocument() is null. Who wants to create further nodes uses loadDocument().
    [[nodiscard]] static QDomElement loadDocumentElement(const QFileInfo &fileInfo,
                                                         KelErrorHistory *errorHistory = nullptr);

    /// The document of a file; a null document if the file cannot be read or is no well-formed XML.
    [[nodiscard]] static QDomDocument loadDocument(const QFileInfo &fileInfo, KelErrorHistory *errorHistory = nullptr);

    /// Reads a text into the document, whose former content is let go of in any case (other handles to it keep it).
    /// Returns whether the text was well-formed; if not, the document is empty. A declared encoding is of no account:
    /// the text is decoded already.
    static bool setContent(QDomDocument &document, const QString &text, KelErrorHistory *errorHistory = nullptr);

    /// As above, from bytes in the encoding that they declare, UTF-8 by default.
    static bool setContent(QDomDocument &document, const QByteArray &bytes, KelErrorHistory *errorHistory = nullptr);
};

#endif
