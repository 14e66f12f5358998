// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPICTUREREADER_H
#define KELPICTUREREADER_H

#include <QImage>
#include <QString>

/// Reads a picture that the user has chosen, which may come from a stranger: PNG, JPEG or WebP by its content, whatever its
/// name says, and nothing else. Other kinds may name further files, or be drawn for ever.
class KelPictureReader
{
public:
    enum class Result {
        Done,
        Unreadable,  ///< missing, a pipe, or may not be read
        UnknownKind, ///< neither PNG nor JPEG nor WebP
        TooLarge,    ///< said by its head; the rest was not read
        Damaged
    };

    static constexpr int MAXIMUM_SIDE = 32'767;
    static constexpr qint64 MAXIMUM_PIXELS = 100'000'000;

    [[nodiscard]] Result read(const QString &fileName);

    /// Null unless it was read.
    [[nodiscard]] const QImage &image() const noexcept { return m_image; }
    /// Why not, in words of the system or of Qt; empty for unknown kinds.
    [[nodiscard]] const QString &reason() const noexcept { return m_reason; }
    /// What is strange about a picture that was read: one that is cut off, perhaps. Empty if all is well.
    [[nodiscard]] const QString &remark() const noexcept { return m_remark; }

private:
    QImage m_image;
    QString m_reason;
    QString m_remark;
};

#endif
