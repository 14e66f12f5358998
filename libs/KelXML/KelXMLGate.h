// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLGATE_H
#define KELXMLGATE_H

#include <KelErrorHistory.h>
#include <KelXMLGlobal.h>

#include <QXmlStreamReader>

#include <memory>

class QByteArray;
class QIODevice;
class QString;

/// The way into every reader of XML: a document from a stranger passes it before a tree is built or a track is made.
///
/// Over a limit a document counts as malformed, whoever reads it, with line, column and reason. The limits keep time and
/// memory in proportion to the document's size. Without them 300 bytes can keep Qt's reader busy for ever (entities that
/// hold entities), and one element of 30,000 attributes for seconds.
///
/// External entities and document types are never read. Parameter entities are refused, and so are references to entities of
/// half a tag.
class KELXML_EXPORT KelXMLGate
{
public:
    /// So many elements may be open in each other, the document element included; with one level more the document
    /// counts as malformed. Neither this limit nor any of those below is in reach of a file that a person or a device
    /// made.
    static constexpr int MAXIMUM_DEPTH = 256;
    /// So many attributes may one element have, and so many may a document type declare in all.
    static constexpr int MAXIMUM_ATTRIBUTES = 1000;
    /// That a document type declares.
    static constexpr int MAXIMUM_ENTITIES = 10000;
    /// What all references to a document's own entities stand for, with whatever entities these hold, and the attributes
    /// that it gives by default, may have together this many times as many characters as the document has bytes.
    static constexpr int MAXIMUM_EXPANSION = 5;
    /// In bytes: of a file that has to be in memory as a whole (KML, configuration, selections). A file that is read as
    /// a stream may have any size.
    static constexpr qint64 MAXIMUM_SIZE = qint64(1) << 31;
    /// In bytes: the same for a pipe or another device whose size is not known beforehand.
    static constexpr qint64 MAXIMUM_PIPE_SIZE = qint64(1) << 28;

    /// A stream of the tokens that the device holds from its current position on. The device has to be open for reading
    /// and to live as long as the gate.
    explicit KelXMLGate(QIODevice *device);
    /// Lets go of the device, which stays open.
    ~KelXMLGate();

    KelXMLGate(const KelXMLGate &) = delete;
    KelXMLGate &operator=(const KelXMLGate &) = delete;

    /// The next token; Invalid behind an error and at the end.
    QXmlStreamReader::TokenType next();

    /// The reader on its current token. Nobody but the gate moves it.
    [[nodiscard]] const QXmlStreamReader &reader() const noexcept;

    /// How many elements are open behind the current token.
    [[nodiscard]] int depth() const noexcept;

    /// Whether nothing more comes, because of an error or of the end.
    [[nodiscard]] bool isOver() const;
    /// Whether all of the document was read and nothing was wrong with it.
    [[nodiscard]] bool isPassed() const;
    /// What was wrong; no file name. Columns count from 1.
    [[nodiscard]] KelErrorHistory::Entry error() const;

    /// Whether a document keeps the limits. It may be malformed in other ways: up to its first error no reader takes
    /// more time or memory over it than in proportion to its size. `reason`, if any, is set where it does not.
    /// A text's declaration of an encoding is of no account.
    [[nodiscard]] static bool admits(const QString &text, KelErrorHistory::Entry *reason = nullptr);
    /// As above, in the encoding that the bytes declare.
    [[nodiscard]] static bool admits(const QByteArray &bytes, KelErrorHistory::Entry *reason = nullptr);

private:
    struct Private;

    std::unique_ptr<Private> d;
};

#endif
