// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELCOPYRIGHTRENDERER_H
#define KELCOPYRIGHTRENDERER_H

#include <KelGeoLocationGlobal.h>

#include <QSizeF>
#include <QString>

class QFont;
class QImage;
class QRect;
class QRectF;

/// Draws the attribution of the map data into the bottom right corner of a map image.
///
/// The paint factor is 1.0 for normal screen output, larger for high-resolution exports and tiny for thumbnails.
/// Below 0.1, where text would be unreadable, only a translucent box with a dash-dot line is drawn. Lengths are
/// pixels of the image.
///
/// A host whose map comes from another provider derives and overrides copyrightText().
class KELGEOLOCATION_EXPORT KelCopyrightRenderer
{
public:
    KelCopyrightRenderer() = default;
    KelCopyrightRenderer(const KelCopyrightRenderer &) = default;
    KelCopyrightRenderer(KelCopyrightRenderer &&) noexcept = default;
    KelCopyrightRenderer &operator=(const KelCopyrightRenderer &) = default;
    KelCopyrightRenderer &operator=(KelCopyrightRenderer &&) noexcept = default;
    virtual ~KelCopyrightRenderer() = default;

    /// The attribution, "© OpenStreetMap.org" unless overridden. Shown in one line.
    [[nodiscard]] virtual QString copyrightText() const;

    /// "Arial" with 24 × \a factor points; a factor that is not above 0 leaves the application's point size.
    [[nodiscard]] QFont copyrightFont(double factor) const;

    /// The text's size in copyrightFont() at factor 1, plus 20 in width and 5 in height, all times \a factor.
    [[nodiscard]] QSizeF copyrightTextSize(double factor) const;

    /// The box: 10 × \a factor away from the last column and the last row of \a imageRect.
    [[nodiscard]] QRectF copyrightRect(const QRect &imageRect, double factor) const;

    /// Draws the text on a translucent pill. The image must not be null.
    void renderCopyRight(QImage *image, double factor) const;
};

#endif
