// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELOVERLAYTESTSUPPORT_H
#define KELOVERLAYTESTSUPPORT_H

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QRect>
#include <QSizeF>
#include <QString>

/// What the tests of both overlays look for in a picture. Fonts differ between machines, so sizes come from
/// QFontMetrics and text is only looked for, not compared.
namespace KelOverlayTest
{

inline QImage transparentImage(const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

inline QSizeF paddedTextSize(const QString &text, double factor)
{
    QFont font(QStringLiteral("Arial"));
    font.setPointSizeF(24.0);
    const QSize size = QFontMetrics(font).size(Qt::TextSingleLine, text);
    return QSizeF((size.width() + 20) * factor, (size.height() + 5) * factor);
}

/// The translucent ground of the overlays: RGB 225 with alpha 180.
inline bool isGround(const QColor &color)
{
    return qAbs(color.alpha() - 180) <= 1 && qAbs(color.red() - 225) <= 2 && qAbs(color.green() - 225) <= 2
        && qAbs(color.blue() - 225) <= 2;
}

/// Something black was drawn over the ground, at least partly.
inline bool isDark(const QColor &color)
{
    return color.alpha() > 185 && color.red() < 190;
}

/// A channel of the ground painted once over white: 225 with alpha 180 over 255.
constexpr int groundOverWhite = 234;

/// What a black of alpha 180 that covers this part of a pixel leaves of the ground over white.
inline int blackOverGround(double coverage)
{
    return qRound(groundOverWhite * (1.0 - coverage * 180.0 / 255.0));
}

/// How many separate dark pieces the row has.
inline int darkPieces(const QImage &image, int row)
{
    int pieces = 0;
    for (int x = 0; x < image.width(); ++x) {
        if (isDark(image.pixelColor(x, row)) && (x == 0 || !isDark(image.pixelColor(x - 1, row))))
            ++pieces;
    }
    return pieces;
}

/// The bounding box of the pixels for which the test holds.
template <typename Test>
QRect boundsOf(const QImage &image, Test test)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (test(image.pixelColor(x, y)))
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

inline QRect paintedBounds(const QImage &image)
{
    return boundsOf(image, [](const QColor &color) { return color.alpha() > 0; });
}

inline QRect darkBounds(const QImage &image)
{
    return boundsOf(image, isDark);
}

} // namespace KelOverlayTest

#endif
