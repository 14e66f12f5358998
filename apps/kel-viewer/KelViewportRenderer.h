// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELVIEWPORTRENDERER_H
#define KELVIEWPORTRENDERER_H

#include "KelMapViewport.h"

#include <KelGPXTrackRenderer.h>

/// Draws tracks where a map view shows them. Line widths grow with the device's density.
class KelViewportRenderer : public KelGPXTrackRenderer
{
public:
    KelViewportRenderer(const KelGPXTrackSelection &selection, const KelMapViewport &viewport, double renderingFactor)
        : KelGPXTrackRenderer(selection, viewport.size(), renderingFactor)
        , m_viewport(viewport)
    {
    }

    [[nodiscard]] QPointF projectPosition(const KelGeoPosition &position) const override
    {
        return m_viewport.project(position);
    }

private:
    KelMapViewport m_viewport;
};

#endif
