// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPICTUREFORMAT_H
#define KELPICTUREFORMAT_H

#include <QByteArray>
#include <QString>

#include <optional>

/// The kinds of picture that the programs write.
class KelPictureFormat
{
public:
    enum Kind { Png, Jpeg, Webp, Pdf, Svg };

    KelPictureFormat(Kind kind = Png) noexcept
        : m_kind(kind)
    {
    }

    /// By a name such as "png" or "JPG"; nothing for one that is not known.
    [[nodiscard]] static std::optional<KelPictureFormat> fromName(const QString &name);
    /// "png, jpg, webp, pdf, svg", for messages.
    [[nodiscard]] static QString allNames();

    [[nodiscard]] Kind kind() const noexcept { return m_kind; }
    [[nodiscard]] bool isVector() const noexcept { return m_kind == Pdf || m_kind == Svg; }
    [[nodiscard]] bool hasTransparency() const noexcept { return m_kind != Jpeg; }
    /// The longest side that the format can hold, pixels.
    [[nodiscard]] int maximumSide() const noexcept;
    /// Name of the image encoder; for pixel formats only.
    [[nodiscard]] QByteArray encoder() const;

private:
    Kind m_kind;
};

#endif
