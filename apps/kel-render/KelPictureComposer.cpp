// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPictureComposer.h"

#include "KelMapCredit.h"
#include "KelVectorOverlays.h"
#include "KelWorldMap.h"
#include "KelWorldMapPainter.h"

#include <KelCopyrightRenderer.h>
#include <KelDistance.h>
#include <KelGPXConfiguredTrack.h>
#include <KelGPXTrackConfiguration.h>
#include <KelOsmScaleRenderer.h>

#include <QPainter>

#include <algorithm>

namespace
{

// The overlays are made for prints; half their size is easy to read on a screen, and less is enough for a small
// picture.
constexpr double OVERLAY_SIZE = 0.5;
constexpr double OVERLAY_FULL_WIDTH = 600.0;
constexpr double OVERLAY_HEIGHT = 62.0; // of the box with its distance from the edge, at factor 1
constexpr int OPAQUE = 255;
// However wide lines are: of the picture's sides, a margin, and both together.
constexpr double MOST_MARGIN = 0.45;
constexpr double MOST_MARGINS = 2 * MOST_MARGIN;

const QColor HALO_ON_LIGHT(255, 255, 255, 215);
const QColor HALO_ON_DARK(12, 17, 22, 215);

} // namespace

KelPictureComposer::KelPictureComposer(const KelRenderOptions &options, const KelGPXTrackSelection &selection,
                                       const KelMapGeometry &geometry, const KelMapPicture &ownMap)
    : m_options(options)
    , m_selection(selection)
    , m_geometry(geometry)
    , m_ownMap(ownMap)
    , m_overlayFactor(overlayFactor(options, geometry.size()))
{
}

double KelPictureComposer::overlayFactor(const KelRenderOptions &options, const QSize &size)
{
    const double room = size.width() / (OVERLAY_FULL_WIDTH * options.scaleFactor);
    return OVERLAY_SIZE * options.scaleFactor * std::min(1.0, room);
}

QMarginsF KelPictureComposer::margins(const KelRenderOptions &options, const KelGPXTrackSelection &selection,
                                      const QSize &size)
{
    const double line = widestLine(options, selection) * options.scaleFactor / 2;
    const auto margin = [&](int side) { return std::min(side * options.padding / 100.0 + line, side * MOST_MARGIN); };
    const double horizontal = margin(size.width());
    const double vertical = margin(size.height());
    const bool overlays = options.scale || options.attribution;
    const double bottom = overlays ? OVERLAY_HEIGHT * overlayFactor(options, size) + line : 0.0;
    return {horizontal, vertical, horizontal,
            std::min(std::max(vertical, bottom), size.height() * MOST_MARGINS - vertical)};
}

/// At scale factor 1, with the halo where it is painted or kept clear.
double KelPictureComposer::widestLine(const KelRenderOptions &options, const KelGPXTrackSelection &selection)
{
    const bool halos = options.style.haloWidth || isCropped(options, selection);
    double widest = 0.0;
    for (int row = 0; row < selection.count(); ++row) {
        const KelGPXTrackConfiguration configuration = selection.configuration(row);
        const double halo = halos ? configuration.haloWidth().value() : 0.0;
        widest = std::max(widest, configuration.lineWidth().value() + halo);
    }
    return widest;
}

bool KelPictureComposer::isCropped(const KelRenderOptions &options, const KelGPXTrackSelection &selection)
{
    // Without a map there is nothing to fade.
    return options.map != KelRenderOptions::Map::None && selection.effectiveCroppingOpacity() != OPAQUE;
}

bool KelPictureComposer::isCropped() const
{
    return isCropped(m_options, m_selection);
}

QImage KelPictureComposer::mapImage() const
{
    QImage image(m_geometry.size(), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        paintMap(painter);
    }
    if (!isCropped())
        return image;
    return trackRenderer().crop(image);
}

QImage KelPictureComposer::toImage() const
{
    QImage image = mapImage();
    if (image.isNull())
        return image;
    if (hasHalos())
        trackRenderer().drawHalosOver(&image, haloColor());
    trackRenderer().renderOver(&image, KelGPXTrackRenderer::Normal);
    if (m_options.scale) {
        // The bar's own lengths are multiplied by the factor again, hence pixels of a picture at factor 1.
        const KelOsmScaleRenderer scale(KelDistance(m_geometry.pixelsPerKilometre() / m_overlayFactor),
                                        m_geometry.size() / m_overlayFactor);
        scale.renderScale(&image, m_overlayFactor);
    }
    if (m_options.attribution && !credit().isEmpty())
        KelMapCredit(credit()).renderCopyRight(&image, m_overlayFactor);
    return image;
}

void KelPictureComposer::paint(QPainter &painter) const
{
    if (isCropped())
        painter.drawImage(0, 0, mapImage());
    else
        paintMap(painter);
    paintTracks(painter);
    const KelVectorOverlays overlays(m_geometry.size(), m_overlayFactor);
    if (m_options.scale) {
        overlays.drawScale(painter,
                           KelOsmScaleRenderer(KelDistance(m_geometry.pixelsPerKilometre() / m_overlayFactor),
                                               m_geometry.size() / m_overlayFactor));
    }
    if (m_options.attribution && !credit().isEmpty())
        overlays.drawCredit(painter, KelMapCredit(credit()));
}

void KelPictureComposer::paintMap(QPainter &painter) const
{
    switch (m_options.map) {
    case KelRenderOptions::Map::World:
        KelWorldMapPainter(m_geometry.frame(), m_options.scaleFactor,
                           m_options.dark ? KelWorldMapColors::dark() : KelWorldMapColors::light())
            .paint(painter);
        break;
    case KelRenderOptions::Map::Picture:
        m_ownMap.paint(painter, m_geometry);
        break;
    case KelRenderOptions::Map::None:
        break;
    }
}

void KelPictureComposer::paintTracks(QPainter &painter) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (hasHalos())
        trackRenderer().drawHalos(&painter, haloColor());
    trackRenderer().renderWith(&painter, KelGPXTrackRenderer::Normal);
    painter.restore();
}

bool KelPictureComposer::hasHalos() const
{
    // On a cropped map the halo is the strip that stays clear.
    return m_options.style.haloWidth && !isCropped();
}

QColor KelPictureComposer::haloColor() const
{
    return m_options.dark ? HALO_ON_DARK : HALO_ON_LIGHT;
}

KelMapTrackRenderer KelPictureComposer::trackRenderer() const
{
    return KelMapTrackRenderer(m_selection, m_geometry, m_options.scaleFactor);
}

QString KelPictureComposer::credit() const
{
    if (!m_options.attributionText.isEmpty())
        return m_options.attributionText;
    switch (m_options.map) {
    case KelRenderOptions::Map::World:
        return KelWorldMap::credit();
    case KelRenderOptions::Map::Picture:
        return KelCopyrightRenderer().copyrightText();
    case KelRenderOptions::Map::None:
        break;
    }
    return {};
}
