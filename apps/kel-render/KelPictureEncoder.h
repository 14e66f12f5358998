// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPICTUREENCODER_H
#define KELPICTUREENCODER_H

#include "KelRenderOptions.h"

#include <QByteArray>
#include <QString>

class KelPictureComposer;

/// Turns a composed picture into the bytes of a file. Everything is made in memory first, so that a file is touched
/// only when its whole content is known.
class KelPictureEncoder
{
public:
    KelPictureEncoder(const KelRenderOptions &options, const QSize &size);

    /// Empty on failure; error() then tells why.
    [[nodiscard]] QByteArray encode(const KelPictureComposer &composer);
    [[nodiscard]] QString error() const { return m_error; }

private:
    [[nodiscard]] QByteArray encodePixels(const KelPictureComposer &composer);
    [[nodiscard]] QByteArray encodePdf(const KelPictureComposer &composer);
    [[nodiscard]] QByteArray encodeSvg(const KelPictureComposer &composer);

    KelRenderOptions m_options;
    QSize m_size;
    QString m_error;
};

#endif
