// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPictureFormat.h"

namespace
{

// The painter's own limit for one image.
constexpr int PAINTER_LIMIT = 32767;
constexpr int WEBP_LIMIT = 16383;
constexpr int PDF_LIMIT = 19200; // 200 inches, the largest page that readers must show

} // namespace

std::optional<KelPictureFormat> KelPictureFormat::fromName(const QString &name)
{
    const QString key = name.toLower();
    if (key == QLatin1String("png"))
        return Png;
    if (key == QLatin1String("jpg") || key == QLatin1String("jpeg"))
        return Jpeg;
    if (key == QLatin1String("webp"))
        return Webp;
    if (key == QLatin1String("pdf"))
        return Pdf;
    if (key == QLatin1String("svg"))
        return Svg;
    return std::nullopt;
}

QString KelPictureFormat::allNames()
{
    return QStringLiteral("png, jpg, webp, pdf, svg");
}

int KelPictureFormat::maximumSide() const noexcept
{
    return m_kind == Webp ? WEBP_LIMIT : m_kind == Pdf ? PDF_LIMIT : PAINTER_LIMIT;
}

QByteArray KelPictureFormat::encoder() const
{
    switch (m_kind) {
    case Jpeg:
        return "jpeg";
    case Webp:
        return "webp";
    default:
        return "png";
    }
}
