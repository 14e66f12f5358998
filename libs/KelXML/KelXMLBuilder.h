// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLBUILDER_H
#define KELXMLBUILDER_H

#include <KelXMLGlobal.h>

#include <QDomElement>
#include <QString>

class KelErrorHistory;
class QDomDocument;
class QDomNode;
class QFileInfo;

/// Builds XML trees and writes them.
///
/// What is written is the same text in every process (attributes are sorted by name; the order in Qt's own output
/// follows the process's random hash seed), and reading it again gives the same tree: texts keep their blanks and line
/// ends. Characters that XML 1.0 cannot hold (most control characters, lone surrogates, U+FFFE and U+FFFF) are dropped,
/// so that a document can always be read again, whatever a user put into a name.
class KELXML_EXPORT KelXMLBuilder
{
public:
    KelXMLBuilder() = delete;

    /// Appends a new child element and returns it. The parent must belong to a document (or be one): a null parent gives
    /// a null element. The name must be one that XML allows.
    static QDomElement buildDomElement(QDomNode &parent, const QString &name);

    /// As above, with a text; an empty text makes an empty element.
    static QDomElement buildDomElement(QDomNode &parent, const QString &name, const QString &text);

    /// As above, with an integer as text.
    static QDomElement buildDomElement(QDomNode &parent, const QString &name, int value);

    /// Gives the document a root element of that name and returns it; a root that the document already has is replaced.
    static QDomElement buildRootElement(QDomDocument &document, const QString &name);

    /// The node with everything below it as text, as described for the class.
    ///
    /// Elements that hold only elements have each child on a line of its own, indented by so many blanks per level; with
    /// an indent below 0 no line ends are added at all. Elements that hold text are never reshaped. A document's
    /// declaration is written if it is part of the tree.
    [[nodiscard]] static QString toText(const QDomNode &node, int indent);

    /// Writes the document as UTF-8 with an XML declaration, indented by one blank.
    ///
    /// The file is replaced as a whole, and only once every byte is on the disk: a reader finds the old or the new
    /// content, never a mixture, and a full disk or a crash leaves the old file as it was. It is the file that a symbolic
    /// link points to which is replaced, not the link. The access rights of an existing file are kept, a write-protected
    /// one is not replaced. Devices and pipes cannot be replaced and are written to directly.
    ///
    /// Returns whether the file was written; if not, one entry with file name and reason is added to the history.
    /// Without a history (nullptr) the entry goes to the log instead, as a warning of the category "kel.files".
    static bool saveUTF8(const QDomDocument &document, const QFileInfo &fileInfo, KelErrorHistory *errorHistory);
};

#endif
