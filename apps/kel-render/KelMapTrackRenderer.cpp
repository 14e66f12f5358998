// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelMapTrackRenderer.h"

#include <KelDistance.h>
#include <KelGPXConfiguredTrack.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackSelection.h>
#include <KelGeoPosition.h>
#include <KelIntRange.h>

#include <QPainter>
#include <QPainterPath>
#include <QPen>

KelMapTrackRenderer::KelMapTrackRenderer(const KelGPXTrackSelection &selection, const KelMapGeometry &geometry,
                                         double renderingFactor)
    : KelGPXTrackRenderer(selection, geometry.size(), renderingFactor)
    , m_selection(selection)
    , m_geometry(geometry)
{
}

QPointF KelMapTrackRenderer::projectPosition(const KelGeoPosition &position) const
{
    return m_geometry.toPixel(position);
}

void KelMapTrackRenderer::drawHalos(QPainter *painter, const QColor &color) const
{
    const KelIntRange shifts = visibleShifts(painter);
    forEachHalo(color, [&](const QPainterPath &path, const QPen &pen) {
        for (int shift = shifts.min(); shift <= shifts.max(); ++shift) {
            painter->save();
            painter->translate(aroundTheWorldOffset() * shift);
            painter->strokePath(path, pen);
            painter->restore();
        }
    });
}

void KelMapTrackRenderer::drawHalosOver(QImage *image, const QColor &color) const
{
    forEachHalo(color, [&](const QPainterPath &path, const QPen &pen) { strokeOver(image, path, pen); });
}

template<typename Draw>
void KelMapTrackRenderer::forEachHalo(const QColor &color, Draw draw) const
{
    for (int row = 0; row < m_selection.count(); ++row) {
        const KelGPXConfiguredTrack track = m_selection.value(row);
        if (track.haloWidth().isNull())
            continue;
        const QPainterPath path = createPainterPath(track);
        if (path.isEmpty())
            continue; // drawn as a point, whose marker has an outline of its own
        QPen pen = solidPenFromTrack(track.configuration(), Foreground);
        pen.setColor(color);
        draw(path, pen);
    }
}
