// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLSTREAMCURSOR_H
#define KELXMLSTREAMCURSOR_H

#include <KelXMLCursor.h>

#include <memory>

class QIODevice;

/// Reads a document while it comes from a device; only what stands under the cursor is in memory.
///
/// Gives exactly what a KelXMLDomCursor gives over what KelXMLLoader makes of the same bytes (no namespaces, nothing
/// nested deeper than KelXMLGate::MAXIMUM_DEPTH), with one difference that the caller has to keep in mind: a tree
/// exists only when the whole document is well formed, the stream notices an error when it gets there. Results are
/// therefore to be used only after finish() returned true on the document's cursor.
class KELXML_EXPORT KelXMLStreamCursor : public KelXMLCursor
{
public:
    /// On the document element of what the device holds from its current position on. The device has to be open
    /// for reading and to live as long as the cursor. Without a document element the cursor is on nothing: no name,
    /// no children, and finish() returns false.
    explicit KelXMLStreamCursor(QIODevice *device);
    ~KelXMLStreamCursor() override;

    [[nodiscard]] QStringView name() const override;
    /// As KelXMLCursor::attribute(); null once a child or the text was read.
    [[nodiscard]] QString attribute(QStringView name) const override;
    [[nodiscard]] QString text() override;
    bool nextChild() override;
    [[nodiscard]] KelXMLCursor &child() override;
    [[nodiscard]] qint64 line() const override;
    /// See line().
    [[nodiscard]] qint64 column() const override;
    [[nodiscard]] double attributeDouble(QStringView name, double defaultValue) const override;
    [[nodiscard]] double textDouble() override;
    [[nodiscard]] QDateTime textDateTime() override;

    /// Reads the rest of the document, whatever the cursor is on, and returns whether all of it was well formed.
    bool finish();

    /// What went wrong and where, lines and columns from 1, as KelXMLLoader reports it; empty and of no meaning as long
    /// as finish() did not return false.
    [[nodiscard]] QString errorString() const;
    /// From 1.
    [[nodiscard]] qint64 errorLine() const;
    /// From 1.
    [[nodiscard]] qint64 errorColumn() const;

private:
    struct Document;

    explicit KelXMLStreamCursor(Document *document);

    void enterElement();
    [[nodiscard]] bool isAtStart() const;
    void readText(QString &text);

    std::unique_ptr<Document> m_ownDocument; // only the document's own cursor has one
    Document *m_document;
    QString m_name;
    QString m_text; // kept, so that reading values needs no allocation
    std::unique_ptr<KelXMLStreamCursor> m_child; // one object for all children, one after the other
    qint64 m_line = -1;
    qint64 m_column = -1;
    qint64 m_tag = 0; // number of the start tag within the document
    int m_depth = 0;
    bool m_ended = true;
};

#endif
