// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelWorldBackground.h"

#include <KelWorldMapPainter.h>

#include <QPainter>

namespace
{

KelWorldMapColors colorsOf(KelWorldBackground::Brightness brightness)
{
    return brightness == KelWorldBackground::Dark ? KelWorldMapColors::dark() : KelWorldMapColors::light();
}

} // namespace

void KelWorldBackground::paint(QPainter &painter, const KelMapViewport &viewport, double density) const
{
    KelWorldMapFrame frame;
    frame.size = QSizeF(viewport.size());
    frame.worldSize = viewport.worldSize();
    frame.origin = viewport.worldOrigin();
    painter.setRenderHint(QPainter::Antialiasing);
    KelWorldMapPainter(frame, density, colorsOf(m_brightness)).paint(painter);
}

QString KelWorldBackground::credit() const
{
    return KelWorldMap::credit();
}

QColor KelWorldBackground::baseColor() const
{
    return colorsOf(m_brightness).sea;
}
