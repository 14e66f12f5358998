// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelCopyrightRenderer.h"

#include "KelOverlayStyle.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRect>
#include <QRectF>

QString KelCopyrightRenderer::copyrightText() const
{
    return QStringLiteral("© OpenStreetMap.org");
}

QFont KelCopyrightRenderer::copyrightFont(double factor) const
{
    return KelOverlayStyle::font(factor);
}

QSizeF KelCopyrightRenderer::copyrightTextSize(double factor) const
{
    return KelOverlayStyle::textSize(copyrightText(), factor);
}

QRectF KelCopyrightRenderer::copyrightRect(const QRect &imageRect, double factor) const
{
    // Deliberate: measured from QRect's inclusive right and bottom, so the box sits one pixel further in.
    const QSizeF size = copyrightTextSize(factor);
    return QRectF(QPointF(imageRect.right() - size.width() - KelOverlayStyle::MARGIN * factor,
                          imageRect.bottom() - size.height() - KelOverlayStyle::MARGIN * factor),
                  size);
}

void KelCopyrightRenderer::renderCopyRight(QImage *image, double factor) const
{
    const QRectF box = copyrightRect(image->rect(), factor);

    QPainter painter(image);
    KelOverlayStyle::preparePainter(&painter, factor);
    if (factor < KelOverlayStyle::SMALLEST_READABLE_FACTOR) {
        KelOverlayStyle::drawUnreadable(&painter, box, box);
        return;
    }
    painter.setBrush(KelOverlayStyle::semiOpaqueWhite());
    painter.setPen(KelOverlayStyle::semiOpaqueWhite());
    painter.drawRoundedRect(box, 0.5 * box.height(), 0.5 * box.height(), Qt::AbsoluteSize);
    painter.setPen(KelOverlayStyle::semiOpaqueBlack());
    painter.drawText(box, Qt::AlignCenter, copyrightText());
}
