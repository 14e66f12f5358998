// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELVIEWPICTURE_H
#define KELVIEWPICTURE_H

#include "KelMapViewport.h"
#include "KelPictureSource.h"

#include <KelGPXTrackSelection.h>
#include <KelOsmScaleRenderer.h>

#include <QColor>
#include <QImage>
#include <QString>

#include <memory>

class KelViewportRenderer;
class QPainter;

/// What lies under the tracks: paints the map for a viewport. Implementations are used from a worker thread
/// and must be immutable.
class KelMapBackground
{
public:
    virtual ~KelMapBackground() = default;

    virtual void paint(QPainter &painter, const KelMapViewport &viewport, double density) const = 0;
    /// The credit that belongs on a picture of this map.
    [[nodiscard]] virtual QString credit() const = 0;
    /// What stands where nothing is painted yet.
    [[nodiscard]] virtual QColor baseColor() const = 0;
};

/// One picture to make: everything that a worker thread needs, by value.
struct KelViewPicture : KelPictureSource
{
    enum Quality { Quick, Full };

    KelMapViewport viewport; ///< in logical pixels
    double density = 1.0;    ///< device pixels per logical pixel
    Quality quality = Full;
    KelGPXTrackSelection selection;
    std::shared_ptr<const KelMapBackground> background;
    bool overlays = false;   ///< scale bar and credit; the view draws its own

    /// The finished picture, density times the viewport's size, without a device pixel ratio set.
    [[nodiscard]] QImage toImage() const override;
    /// The same content through a painter of the caller's, as vectors where the device keeps them. Cropping works
    /// on pixels: a cropped map stands in it as an image.
    void paint(QPainter &painter) const override;
    /// Scale bar and credit onto an image of the picture's size.
    void paintOverlays(QImage &image) const;

private:
    [[nodiscard]] QImage croppedMap(const KelViewportRenderer &renderer) const;
    [[nodiscard]] KelOsmScaleRenderer scaleBar(const QSize &size, double factor) const;
};

#endif
