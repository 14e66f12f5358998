// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELOSMSCALERENDERER_H
#define KELOSMSCALERENDERER_H

#include <KelDistance.h>
#include <KelGeoLocationGlobal.h>

#include <QSize>
#include <QSizeF>
#include <QString>

class QFont;
class QImage;
class QRect;
class QRectF;

/// Draws a scale bar with its length as text into the bottom left corner of a map image.
///
/// The paint factor of the operations is 1.0 for normal screen output, larger for high-resolution exports and tiny
/// for thumbnails. Below 0.1, where text would be unreadable, only a translucent box with a dash-dot line is drawn.
/// Lengths are pixels of the image, except where kilometres are named.
///
/// Rectangles of the bar and its text have a *negative height*: they grow upwards from the bottom margin.
class KELGEOLOCATION_EXPORT KelOsmScaleRenderer
{
public:
    /// \a pixelsPerKilometre is the length of one kilometre in pixels at the image's scale; \a imageSize the size of
    /// the map image, of which only the width counts. Zero pixels per kilometre make the bar infinitely long.
    /// Both are those of the image at paint factor 1, since the bar's lengths are multiplied by the factor: who paints
    /// with another factor divides both by it.
    KelOsmScaleRenderer(const KelDistance &pixelsPerKilometre, const QSize &imageSize);

    KelOsmScaleRenderer(const KelOsmScaleRenderer &) = default;
    KelOsmScaleRenderer(KelOsmScaleRenderer &&) noexcept = default;
    KelOsmScaleRenderer &operator=(const KelOsmScaleRenderer &) = default;
    KelOsmScaleRenderer &operator=(KelOsmScaleRenderer &&) noexcept = default;
    virtual ~KelOsmScaleRenderer() = default;

    /// The longest bar in kilometres: 300 pixels or two thirds of the image's width (whole pixels), whichever is less.
    [[nodiscard]] double maximumPaintFactor() const;

    /// The bar's length in kilometres: the largest of 1, 2.5 and 5 times a power of ten that lies *below*
    /// maximumPaintFactor(). At least 0.001, even where that is too long; above 100 000 km the maximum itself.
    [[nodiscard]] double shownKilometers() const;

    /// The bar's length in pixels at paint factor \a factor.
    [[nodiscard]] double strokeLength(double factor) const;

    /// The bar's place: 10 × \a factor away from the left and bottom edge of \a imageRect, strokeLength() wide and
    /// 20 × \a factor high, both cut to whole pixels, with negative height. A length that is not a number counts as 0.
    [[nodiscard]] QRectF strokeRect(const QRectF &imageRect, double factor) const;

    /// "Arial" with 24 × \a factor points; a factor that is not above 0 leaves the application's point size.
    [[nodiscard]] QFont textFont(double factor) const;

    /// Below one kilometre whole metres ("250 m"), otherwise kilometres in the shortest form ("2.5 km", "100 km").
    [[nodiscard]] QString scaleText() const;

    /// The text's size in textFont() at factor 1, plus 20 in width and 5 in height, all times \a factor.
    [[nodiscard]] QSizeF textSize(double factor) const;

    /// The text's place, right of the bar, with negative height.
    [[nodiscard]] QRectF textRect(const QRect &imageRect, double factor) const;

    /// Draws bar and text on a translucent box that reaches to the image's left edge. A box that passes a third of
    /// the image's width moves up by one and a half box heights, out of the way of the attribution in the other corner.
    /// The image must not be null.
    void renderScale(QImage *image, double factor) const;

private:
    KelDistance m_pixelsPerKilometre;
    QSize m_imageSize;
};

#endif
