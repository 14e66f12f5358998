// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMAPTRACKRENDERER_H
#define KELMAPTRACKRENDERER_H

#include "KelMapGeometry.h"

#include <KelGPXTrackRenderer.h>

/// Draws tracks where a map geometry puts them.
class KelMapTrackRenderer : public KelGPXTrackRenderer
{
public:
    KelMapTrackRenderer(const KelGPXTrackSelection &selection, const KelMapGeometry &geometry, double renderingFactor);

    [[nodiscard]] QPointF projectPosition(const KelGeoPosition &position) const override;

    /// Paints the halos of all tracks that have one, in one colour, to lie under the tracks: the renderer itself
    /// keeps a halo clear when a map is cropped, but does not show it.
    void drawHalos(QPainter *painter, const QColor &color) const;

    /// The same pixels on an image, antialiased, and faster.
    void drawHalosOver(QImage *image, const QColor &color) const;

private:
    template<typename Draw>
    void forEachHalo(const QColor &color, Draw draw) const;

    KelGPXTrackSelection m_selection;
    KelMapGeometry m_geometry;
};

#endif
