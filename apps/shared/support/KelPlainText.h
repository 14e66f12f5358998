// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPLAINTEXT_H
#define KELPLAINTEXT_H

#include <QString>

class QByteArray;

/// Texts that may come from strangers (names of tracks and files, options that were pasted), made fit to be shown.
///
/// What a terminal obeys instead of showing it, and what makes a text look like another one, is not plain: controls, formats
/// (marks of direction, say), separators of lines and paragraphs, halves of surrogate pairs and codes that are no characters.
/// The two joiners are, without which some scripts cannot be written.
class KelPlainText
{
public:
    KelPlainText() = delete;

    [[nodiscard]] static bool isPlain(char32_t character);

    /// One line: "?" for all that is not plain, line breaks included.
    [[nodiscard]] static QString oneLine(const QString &text);
    /// JSON of the same meaning, in which what is not plain is escaped. Line breaks between its parts stay.
    [[nodiscard]] static QByteArray json(const QByteArray &document);

    /// The beginning, with dots, of texts that are longer than so many characters.
    [[nodiscard]] static QString shortened(const QString &text, qsizetype most = 200);

    /// Whether XML can hold it: no controls but tabs and line breaks, no halves of surrogate pairs, nothing that is no
    /// character.
    [[nodiscard]] static bool isForXml(const QString &text);
};

#endif
