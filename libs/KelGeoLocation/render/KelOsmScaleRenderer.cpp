// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelOsmScaleRenderer.h"

#include "KelOverlayStyle.h"
#include "KelPixel.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRect>
#include <QRectF>

#include <cmath>

namespace
{

const KelDistance theMaximumWidth(300.0);

constexpr double DECADES[] = {0.01, 0.1, 1.0, 10.0, 100.0, 1000.0, 10000.0, 100000.0};
constexpr double STROKE_HEIGHT = 20.0;
constexpr double MOVE_UP_HEIGHTS = 1.5;

void drawBox(QPainter *painter, const QRectF &box, const QRectF &text)
{
    painter->setBrush(KelOverlayStyle::semiOpaqueWhite());
    painter->setPen(KelOverlayStyle::semiOpaqueWhite());
    // Deliberate: the text's height is negative, and a negative radius gives square corners. Only the box of the
    // attribution is rounded.
    const double radius = 0.5 * text.height();
    painter->drawRoundedRect(box, radius, radius, Qt::AbsoluteSize);
}

void drawBar(QPainter *painter, const QRectF &stroke)
{
    const double third = std::abs(stroke.height()) / 3;
    const QPointF leftEnd(stroke.x(), stroke.y() - third);
    const QPointF rightEnd(stroke.x() + stroke.width(), stroke.y() - third);
    const double tickTop = stroke.y() + stroke.height();
    painter->drawLine(leftEnd, QPointF(leftEnd.x(), tickTop));
    painter->drawLine(leftEnd, rightEnd);
    painter->drawLine(QPointF(rightEnd.x(), tickTop), rightEnd);
}

} // namespace

KelOsmScaleRenderer::KelOsmScaleRenderer(const KelDistance &pixelsPerKilometre, const QSize &imageSize)
    : m_pixelsPerKilometre(pixelsPerKilometre)
    , m_imageSize(imageSize)
{
}

double KelOsmScaleRenderer::maximumPaintFactor() const
{
    const KelDistance widthOfImage(static_cast<double>(static_cast<qint64>(m_imageSize.width()) * 2 / 3));
    return (theMaximumWidth < widthOfImage ? theMaximumWidth : widthOfImage) / m_pixelsPerKilometre;
}

double KelOsmScaleRenderer::shownKilometers() const
{
    // Deliberate: at most 0.0025 km still shows 0.001 km, and beyond the last decade the maximum shows itself.
    const double maximum = maximumPaintFactor();
    for (const double decade : DECADES) {
        if (0.25 * decade >= maximum)
            return 0.1 * decade;
        if (0.5 * decade >= maximum)
            return 0.25 * decade;
        if (decade >= maximum)
            return 0.5 * decade;
    }
    return maximum;
}

double KelOsmScaleRenderer::strokeLength(double factor) const
{
    return factor * (m_pixelsPerKilometre * shownKilometers()).value();
}

QRectF KelOsmScaleRenderer::strokeRect(const QRectF &imageRect, double factor) const
{
    const double margin = KelOverlayStyle::MARGIN * factor;
    // Deliberate: a negative height, the bar grows upwards from its foot.
    return QRectF(imageRect.left() + margin,
                  imageRect.y() + imageRect.height() - margin,
                  KelPixel::truncated(strokeLength(factor)),
                  -static_cast<double>(KelPixel::truncated(STROKE_HEIGHT * factor)));
}

QFont KelOsmScaleRenderer::textFont(double factor) const
{
    return KelOverlayStyle::font(factor);
}

QString KelOsmScaleRenderer::scaleText() const
{
    const double kilometers = shownKilometers();
    if (kilometers < 1.0)
        return QStringLiteral("%1 m").arg(std::llround(kilometers * 1000));
    return QStringLiteral("%1 km").arg(kilometers);
}

QSizeF KelOsmScaleRenderer::textSize(double factor) const
{
    return KelOverlayStyle::textSize(scaleText(), factor);
}

QRectF KelOsmScaleRenderer::textRect(const QRect &imageRect, double factor) const
{
    const QSizeF size = textSize(factor);
    const QRectF stroke = strokeRect(QRectF(imageRect), factor);
    // QRect's bottom is its last row, one above the bottom edge that the bar stands on.
    const double margin = KelOverlayStyle::MARGIN * factor;
    return QRectF(imageRect.left() + margin + stroke.width(), imageRect.bottom() - margin,
                  size.width(), -size.height());
}

void KelOsmScaleRenderer::renderScale(QImage *image, double factor) const
{
    QRectF text = textRect(image->rect(), factor);
    QRectF stroke = strokeRect(QRectF(image->rect()), factor);
    QRectF box = text | stroke;
    box.setLeft(0);
    if (box.right() > image->width() / 3) {
        const double up = -MOVE_UP_HEIGHTS * std::abs(box.height());
        text.translate(0, up);
        stroke.translate(0, up);
        box.translate(0, up);
    }

    QPainter painter(image);
    KelOverlayStyle::preparePainter(&painter, factor);
    if (factor < KelOverlayStyle::SMALLEST_READABLE_FACTOR) {
        KelOverlayStyle::drawUnreadable(&painter, box, text);
        return;
    }
    drawBox(&painter, box, text);
    painter.setPen(KelOverlayStyle::semiOpaqueBlack());
    // Normalised: the same centre, but a text that overflows is cut at the rectangle instead of vanishing.
    painter.drawText(text.normalized(), Qt::AlignCenter, scaleText());
    drawBar(&painter, stroke);
}
