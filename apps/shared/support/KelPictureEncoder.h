// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPICTUREENCODER_H
#define KELPICTUREENCODER_H

#include "KelPictureFormat.h"

#include <QByteArray>
#include <QSize>
#include <QString>

class KelPictureSource;

/// Turns a composed picture into the bytes of a file. Everything is made in memory first, so that a file is touched
/// only when its whole content is known.
class KelPictureEncoder
{
public:
    /// size: of the picture, pixels. scaleFactor: pixels per unit of line width, kept as the picture's density.
    /// quality: 0 to 100 for JPEG and WebP, below 0 for the encoder's own choice.
    KelPictureEncoder(const KelPictureFormat &format, const QSize &size, double scaleFactor, int quality = -1);

    /// Empty on failure; error() then tells why.
    [[nodiscard]] QByteArray encode(const KelPictureSource &source);
    [[nodiscard]] QString error() const { return m_error; }

private:
    [[nodiscard]] QByteArray encodePixels(const KelPictureSource &source);
    [[nodiscard]] QByteArray encodePdf(const KelPictureSource &source);
    [[nodiscard]] QByteArray encodeSvg(const KelPictureSource &source);

    KelPictureFormat m_format;
    QSize m_size;
    double m_scaleFactor;
    int m_quality;
    QString m_error;
};

#endif
