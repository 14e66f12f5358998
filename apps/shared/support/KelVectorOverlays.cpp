// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelVectorOverlays.h"

#include <KelCopyrightRenderer.h>
#include <KelOsmScaleRenderer.h>

#include <QColor>
#include <QFont>
#include <QFontInfo>
#include <QPainter>
#include <QPen>
#include <QRectF>

#include <algorithm>
#include <cmath>

namespace
{

const QColor WHITE(225, 225, 225, 180);
const QColor BLACK(0, 0, 0, 180);

/// Sized in pixels of the picture: vector devices have a resolution of their own for points.
QFont pixelFont(QFont font)
{
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(QFontInfo(font).pixelSize()))));
    return font;
}

} // namespace

KelVectorOverlays::KelVectorOverlays(const QSize &pictureSize, double factor)
    : m_size(pictureSize)
    , m_factor(factor)
{
}

void KelVectorOverlays::drawScale(QPainter &painter, const KelOsmScaleRenderer &scale) const
{
    const QRect picture(QPoint(0, 0), m_size);
    QRectF text = scale.textRect(picture, m_factor);
    QRectF bar = scale.strokeRect(QRectF(picture), m_factor);
    QRectF box = text | bar;
    box.setLeft(0);
    if (box.right() > m_size.width() / 3) {
        const double up = -1.5 * box.height();
        text.translate(0, up);
        bar.translate(0, up);
        box.translate(0, up);
    }
    const double tick = std::abs(bar.height()) / 3.0;
    const double right = bar.x() + bar.width();
    const double base = bar.y() - tick;
    const double top = bar.y() + bar.height();

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(box, WHITE);
    painter.setPen(QPen(BLACK, 1.0));
    painter.setFont(pixelFont(scale.textFont(m_factor)));
    painter.drawText(text.normalized(), Qt::AlignCenter, scale.scaleText());
    painter.drawLine(QPointF(bar.x(), base), QPointF(bar.x(), top));
    painter.drawLine(QPointF(bar.x(), base), QPointF(right, base));
    painter.drawLine(QPointF(right, top), QPointF(right, base));
    painter.restore();
}

void KelVectorOverlays::drawCredit(QPainter &painter, const KelCopyrightRenderer &credit) const
{
    const QRectF box = credit.copyrightRect(QRect(QPoint(0, 0), m_size), m_factor);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(WHITE);
    painter.drawRoundedRect(box, 0.5 * box.height(), 0.5 * box.height());
    painter.setPen(QPen(BLACK, 1.0));
    painter.setFont(pixelFont(credit.copyrightFont(m_factor)));
    painter.drawText(box, Qt::AlignCenter, credit.copyrightText());
    painter.restore();
}
