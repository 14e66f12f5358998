// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLPLAINCURSOR_H
#define KELXMLPLAINCURSOR_H

#include <KelXMLCursor.h>

#include <QLatin1String>

#include <memory>

class QIODevice;

/// Reads a document in its plain form byte by byte, many times faster than KelXMLStreamCursor, and knows when not to.
///
/// Plain is what programs write: UTF-8, tags that match, attributes in quotes, the five predefined entities, character
/// references, comments between elements. Anything else puts the cursor in doubt: a document type, any other entity,
/// a CDATA section, a processing instruction, another encoding, bytes that are no UTF-8, control characters,
/// attributes of the same name, unusual names and blanks, whatever is nested deeper than
/// KelXMLGate::MAXIMUM_DEPTH, and every error. Doubt does not say that the document is malformed; it says that the
/// document has to be read again, from its start, by a KelXMLStreamCursor, which also knows what is wrong and where.
///
/// Without doubt, everything that was read is what the KelXMLStreamCursor reads from the same bytes. In doubt the
/// cursor is at its end, without children, text or further attributes. What was read until then is worth nothing:
///
/// \code
/// KelXMLPlainCursor plain(&file);
/// Result result = read(plain);
/// if (!plain.finish()) {
///     file.seek(0);
///     KelXMLStreamCursor stream(&file);
///     result = stream.finish() ? … : …;
/// }
/// \endcode
///
/// Memory is needed for one block of the file, whatever the file's size, and for the text that is asked for.
class KELXML_EXPORT KelXMLPlainCursor : public KelXMLCursor
{
public:
    /// So many bytes are read at a time. A tag or a comment that is longer than a block is a doubt.
    static constexpr qsizetype BLOCK_SIZE = 256 * 1024;
    /// The least block size; a smaller one is raised to it.
    static constexpr qsizetype MINIMUM_BLOCK_SIZE = 64;
    /// An element with more attributes is a doubt.
    static constexpr int MAXIMUM_ATTRIBUTES = 32;
    /// A longer name is a doubt.
    static constexpr qsizetype MAXIMUM_NAME_LENGTH = 255;

    /// On the document element of what the device holds from its current position on. The device has to be open
    /// for reading and to live as long as the cursor. Smaller block sizes than the minimum count as the minimum.
    explicit KelXMLPlainCursor(QIODevice *device, qsizetype blockSize = BLOCK_SIZE);
    ~KelXMLPlainCursor() override;

    [[nodiscard]] QStringView name() const override;
    /// As KelXMLCursor::attribute(); null once a child or the text was read.
    [[nodiscard]] QString attribute(QStringView name) const override;
    [[nodiscard]] QString text() override;
    bool nextChild() override;
    [[nodiscard]] KelXMLCursor &child() override;
    /// Counts from the start of the document whenever it is asked, hence for reports, not for every element.
    /// -1 where the device cannot go back.
    [[nodiscard]] qint64 line() const override;
    /// See line().
    [[nodiscard]] qint64 column() const override;
    [[nodiscard]] double attributeDouble(QStringView name, double defaultValue) const override;
    [[nodiscard]] double textDouble() override;
    [[nodiscard]] QDateTime textDateTime() override;

    /// Reads the rest of the document, whatever the cursor is on, and returns whether all of it was beyond doubt.
    bool finish();
    /// Whether anything up to here was in doubt.
    [[nodiscard]] bool isInDoubt() const noexcept;

private:
    struct Document;

    explicit KelXMLPlainCursor(Document *document);

    void enterElement();
    [[nodiscard]] bool isAtStart() const;
    void readText(QString &text);
    [[nodiscard]] bool takePlainText(QLatin1String &text);

    std::unique_ptr<Document> m_ownDocument; // only the document's own cursor has one
    Document *m_document;
    QString m_name;
    QString m_text; // kept, so that reading values needs no allocation
    std::unique_ptr<KelXMLPlainCursor> m_child; // one object for all children, one after the other
    qint64 m_startTagEnd = -1; // within the document
    qint64 m_token = 0; // number of the start tag
    int m_depth = 0;
    bool m_ended = true;
};

#endif
