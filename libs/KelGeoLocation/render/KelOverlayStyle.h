// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELOVERLAYSTYLE_H
#define KELOVERLAYSTYLE_H

#include <QFont>
#include <QRectF>
#include <QSizeF>

class QColor;
class QPainter;
class QString;

/// What the overlays of a map image have in common. Private to the library.
namespace KelOverlayStyle
{

/// Distance from the image's edges at factor 1, in pixels.
constexpr double MARGIN = 10.0;

/// Below this paint factor no text is drawn.
constexpr double SMALLEST_READABLE_FACTOR = 0.1;

const QColor &semiOpaqueWhite();
const QColor &semiOpaqueBlack();

/// "Arial" with 24 × \a factor points; a factor that is not above 0 leaves the application's point size.
QFont font(double factor);

/// Size of the text in font() at factor 1, padded, all times \a factor.
QSizeF textSize(const QString &text, double factor);

/// The stand-in for small images: a translucent box and a dash-dot line from its middle to its right edge, as high
/// up as the middle of \a text.
void drawUnreadable(QPainter *painter, const QRectF &box, const QRectF &text);

/// Opens what both overlays draw with: antialiased, in font().
void preparePainter(QPainter *painter, double factor);

} // namespace KelOverlayStyle

#endif
