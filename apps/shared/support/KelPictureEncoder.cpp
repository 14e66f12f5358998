// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPictureEncoder.h"

#include "KelPictureSource.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImage>
#include <QImageWriter>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

constexpr int DOTS_PER_INCH = 96;
constexpr double POINTS_PER_PIXEL = 72.0 / DOTS_PER_INCH;
constexpr double INCHES_PER_METRE = 1000.0 / 25.4;

// PNG: as small as Qt makes it unasked, within a few bytes, in less time.
constexpr int PNG_COMPRESSION = 50;

bool isOpaque(const QImage &image)
{
    if (image.format() != QImage::Format_ARGB32_Premultiplied)
        return !image.hasAlphaChannel();
    for (int y = 0; y < image.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        if (std::any_of(row, row + image.width(), [](QRgb pixel) { return qAlpha(pixel) != 255; }))
            return false;
    }
    return true;
}

QString programName()
{
    return QCoreApplication::applicationName();
}

/// Blanks out the time at which Qt says that the document was made, so that equal pictures are equal files. Nothing may
/// be taken away: the document lists where its parts begin.
void forgetCreationTime(QByteArray &pdf)
{
    const QByteArray key = "/CreationDate (";
    const qsizetype begin = pdf.indexOf(key);
    const qsizetype end = begin < 0 ? -1 : pdf.indexOf(')', begin);
    if (end >= 0)
        std::fill(pdf.begin() + begin, pdf.begin() + end + 1, ' ');
}

} // namespace

KelPictureEncoder::KelPictureEncoder(const KelPictureFormat &format, const QSize &size, double scaleFactor, int quality)
    : m_format(format)
    , m_size(size)
    , m_scaleFactor(scaleFactor)
    , m_quality(quality)
{
}

QByteArray KelPictureEncoder::encode(const KelPictureSource &source)
{
    switch (m_format.kind()) {
    case KelPictureFormat::Pdf:
        return encodePdf(source);
    case KelPictureFormat::Svg:
        return encodeSvg(source);
    default:
        return encodePixels(source);
    }
}

QByteArray KelPictureEncoder::encodePixels(const KelPictureSource &source)
{
    QImage image = source.toImage();
    if (image.isNull()) {
        m_error = QStringLiteral("too little memory for %1 x %2 pixels; use a smaller size")
                      .arg(m_size.width())
                      .arg(m_size.height());
        return {};
    }
    if (!m_format.hasTransparency()) {
        QImage opaque(image.size(), QImage::Format_RGB32);
        opaque.fill(Qt::white);
        QPainter(&opaque).drawImage(0, 0, image);
        image = opaque;
    }
    // A channel in which nothing stands makes files larger and takes time.
    if (isOpaque(image))
        image = std::move(image).convertToFormat(QImage::Format_RGB32);
    const int dotsPerMetre = static_cast<int>(std::lround(DOTS_PER_INCH * m_scaleFactor * INCHES_PER_METRE));
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);

    QBuffer buffer;
    QImageWriter writer(&buffer, m_format.encoder());
    if (m_quality >= 0 && m_format.kind() != KelPictureFormat::Png)
        writer.setQuality(m_quality);
    if (m_format.kind() == KelPictureFormat::Png)
        writer.setCompression(PNG_COMPRESSION);
    if (!writer.write(image)) {
        m_error = writer.error() == QImageWriter::UnsupportedFormatError
            ? QStringLiteral(
                  "this Qt cannot write %1; install the package qt6-image-formats-plugins or choose another format")
                  .arg(QString::fromLatin1(m_format.encoder()))
            : writer.errorString();
        return {};
    }
    return buffer.data();
}

QByteArray KelPictureEncoder::encodePdf(const KelPictureSource &source)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setCreator(programName());
        writer.setTitle(programName());
        writer.setResolution(DOTS_PER_INCH);
        writer.setPageLayout(QPageLayout(
            QPageSize(QSizeF(m_size) * POINTS_PER_PIXEL, QPageSize::Point, QString(), QPageSize::ExactMatch),
            QPageLayout::Portrait, QMarginsF()));
        QPainter painter;
        if (!painter.begin(&writer)) {
            m_error = QStringLiteral("the PDF cannot be made");
            return {};
        }
        source.paint(painter);
    }
    QByteArray pdf = buffer.data();
    forgetCreationTime(pdf);
    return pdf;
}

QByteArray KelPictureEncoder::encodeSvg(const KelPictureSource &source)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(DOTS_PER_INCH);
    generator.setSize(m_size);
    generator.setViewBox(QRect(QPoint(0, 0), m_size));
    generator.setTitle(programName());
    QPainter painter;
    if (!painter.begin(&generator)) {
        m_error = QStringLiteral("the SVG cannot be made");
        return {};
    }
    source.paint(painter);
    painter.end();
    return buffer.data();
}
