// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelWorldBackground.h"

#include <KelWorldMapPainter.h>

#include <QPainter>

void KelWorldBackground::paint(QPainter &painter, const KelMapViewport &viewport, double density) const
{
    KelWorldMapFrame frame;
    frame.size = QSizeF(viewport.size());
    frame.worldSize = viewport.worldSize();
    frame.origin = viewport.worldOrigin();
    const KelWorldMapColors colors = m_brightness == Dark ? KelWorldMapColors::dark() : KelWorldMapColors::light();
    painter.setRenderHint(QPainter::Antialiasing);
    KelWorldMapPainter(frame, density, colors).paint(painter);
}

QString KelWorldBackground::credit() const
{
    return KelWorldMap::credit();
}
