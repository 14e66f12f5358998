// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELXMLMARKEDTEXT_H
#define KELXMLMARKEDTEXT_H

#include <QList>
#include <QString>
#include <QStringView>

/// A document whose long plain texts are taken out, with a short mark in the place of each, so that a parser need not
/// look at them. The document has to live as long.
///
/// The texts are found without parsing, in the trust that the document is well-formed. Whoever parses the marked document
/// therefore makes sure that every mark comes back, in order and as a text of its own, and otherwise parses the document as
/// it is.
class KelXMLMarkedText
{
public:
    /// Shorter texts stay where they are.
    static constexpr int MINIMUM_LENGTH = 256;

    explicit KelXMLMarkedText(const QString &xml);

    /// Whether anything was taken out; if not, there is no marked document.
    [[nodiscard]] bool isMarked() const noexcept { return !m_texts.isEmpty(); }
    /// The document with the marks.
    [[nodiscard]] const QString &marked() const noexcept { return m_marked; }
    /// The texts in order, as they lie in the document.
    [[nodiscard]] const QList<QStringView> &texts() const noexcept { return m_texts; }

    /// Whether a text of the marked document looks like a mark, the right one or not.
    [[nodiscard]] static bool looksLikeMark(QStringView text);
    /// What stands for that text.
    [[nodiscard]] static QString markOf(qsizetype index);

private:
    QList<QStringView> m_texts;
    QString m_marked;
};

#endif
