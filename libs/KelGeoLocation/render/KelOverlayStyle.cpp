// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelOverlayStyle.h"

#include "KelPixel.h"

#include <QColor>
#include <QFontMetrics>
#include <QPainter>
#include <QPen>
#include <QString>

namespace
{

constexpr double POINT_SIZE = 24.0;
constexpr double TEXT_PADDING_WIDTH = 20.0;
constexpr double TEXT_PADDING_HEIGHT = 5.0;

} // namespace

const QColor &KelOverlayStyle::semiOpaqueWhite()
{
    static const QColor semiOpaqueWhite(225, 225, 225, 180);
    return semiOpaqueWhite;
}

const QColor &KelOverlayStyle::semiOpaqueBlack()
{
    static const QColor semiOpaqueBlack(0, 0, 0, 180);
    return semiOpaqueBlack;
}

QFont KelOverlayStyle::font(double factor)
{
    QFont font(QStringLiteral("Arial"));
    if (factor > 0)
        font.setPointSizeF(POINT_SIZE * factor);
    return font;
}

QSizeF KelOverlayStyle::textSize(const QString &text, double factor)
{
    const QSizeF size = QFontMetrics(font(1.0)).size(Qt::TextSingleLine, text);
    return (size + QSizeF(TEXT_PADDING_WIDTH, TEXT_PADDING_HEIGHT)) * factor;
}

void KelOverlayStyle::drawUnreadable(QPainter *painter, const QRectF &box, const QRectF &text)
{
    painter->fillRect(box, semiOpaqueWhite());
    QPen pen(semiOpaqueBlack());
    pen.setStyle(Qt::DashDotLine);
    painter->setPen(pen);
    const int y = KelPixel::truncated(text.y() + 0.5 * text.height());
    painter->drawLine(KelPixel::truncated(box.x() + 0.5 * box.width()), y,
                      KelPixel::truncated(box.x() + box.width()), y);
}

void KelOverlayStyle::preparePainter(QPainter *painter, double factor)
{
    painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter->setFont(font(factor));
}
