// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelViewPicture.h"

#include "KelMapCredit.h"
#include "KelVectorOverlays.h"
#include "KelViewportRenderer.h"

#include <KelOsmScaleRenderer.h>

#include <QPainter>

namespace
{

/// The overlays are made for pictures of print size; on a screen half of it is easy to read.
constexpr double OVERLAY_SIZE = 0.5;
constexpr int OPAQUE = 255;

} // namespace

QImage KelViewPicture::toImage() const
{
    const KelMapViewport device = viewport.scaled(density);
    const KelViewportRenderer renderer(selection, device, density);
    QImage result = croppedMap(renderer);
    if (result.isNull())
        return result;
    {
        QPainter painter(&result);
        painter.drawImage(0, 0,
                          quality == Full ? renderer.render(KelGPXTrackRenderer::Normal)
                                          : renderer.renderQuickAndDirty(KelGPXTrackRenderer::Normal));
    }
    if (overlays)
        paintOverlays(result);
    return result;
}

void KelViewPicture::paint(QPainter &painter) const
{
    const KelMapViewport device = viewport.scaled(density);
    painter.save();
    painter.setClipRect(QRect(QPoint(0, 0), device.size()));
    const KelViewportRenderer renderer(selection, device, density);
    if (background && selection.effectiveCroppingOpacity() == OPAQUE)
        background->paint(painter, device, density);
    else
        painter.drawImage(0, 0, croppedMap(renderer));
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.renderWith(&painter, KelGPXTrackRenderer::Normal);
    painter.restore();
    if (!overlays)
        return;
    const double factor = OVERLAY_SIZE * density;
    const KelVectorOverlays vectors(device.size(), factor);
    vectors.drawScale(painter, scaleBar(device.size(), factor));
    if (background)
        vectors.drawCredit(painter, KelMapCredit(background->credit()));
}

QImage KelViewPicture::croppedMap(const KelViewportRenderer &renderer) const
{
    const KelMapViewport device = viewport.scaled(density);
    QImage map(device.size(), QImage::Format_ARGB32_Premultiplied);
    if (map.isNull())
        return map;
    map.fill(Qt::white);
    if (background) {
        QPainter painter(&map);
        background->paint(painter, device, density);
    }
    return renderer.crop(map);
}

KelOsmScaleRenderer KelViewPicture::scaleBar(const QSize &size, double factor) const
{
    // The bar's own lengths are multiplied by the factor again, hence pixels of a picture at factor 1.
    return {KelDistance(viewport.pixelsPerKilometre() * density / factor), size / factor};
}

void KelViewPicture::paintOverlays(QImage &image) const
{
    const double factor = OVERLAY_SIZE * density;
    scaleBar(image.size(), factor).renderScale(&image, factor);
    if (background)
        KelMapCredit(background->credit()).renderCopyRight(&image, factor);
}
