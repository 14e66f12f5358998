// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELWORLDMAPPAINTER_H
#define KELWORLDMAPPAINTER_H

#include "KelWorldMap.h"
#include "KelWorldMapColors.h"
#include "KelWorldMapFrame.h"

#include <QPainterPath>
#include <QRectF>

class QPainter;

/// Draws the built-in world as vectors: sea, land, coasts, borders and a graticule whose step fits the scale, on
/// every copy of the world that the picture shows. Only what reaches into the picture is handed to the painter, so
/// that PDF and SVG files stay small and no coordinate is too large for the painter.
class KelWorldMapPainter
{
public:
    /// factor: pixels of the picture per unit of line width and text size, above 1 for high densities.
    KelWorldMapPainter(const KelWorldMapFrame &frame, double factor, const KelWorldMapColors &colors);

    /// Paints the whole picture, background included. The painter's state is kept.
    void paint(QPainter &painter, const KelWorldMap &map = KelWorldMap::instance()) const;

    /// Distance of the graticule's lines, degrees: the smallest of 30, 20, 10, 5, 2, 1 degrees, 30, 20, 10 … minutes
    /// and seconds whose lines do not crowd.
    [[nodiscard]] double graticuleStep() const;
    /// That of the meridians, whose labels stand beside one another: the same, or 60, 90 or 180 degrees where the world
    /// is so small that the labels would overlap.
    [[nodiscard]] double meridianStep() const;
    /// Degrees with as many minutes and seconds as the step needs, such as "53°08′N"; no letter at 0° and 180°.
    [[nodiscard]] static QString graticuleLabel(double degrees, double step, char positive, char negative);

private:
    struct Paths
    {
        QPainterPath land;
        QPainterPath coasts;
        QPainterPath borders;
    };

    [[nodiscard]] Paths collect(const KelWorldMap &map) const;
    void addArea(QPainterPath &path, const KelWorldMap::Outline &outline, int level, double shift) const;
    void addLine(QPainterPath &path, const KelWorldMap::Outline &outline, int level, double shift) const;
    void drawGraticule(QPainter &painter) const;

    KelWorldMapFrame m_frame;
    double m_factor;
    KelWorldMapColors m_colors;
    QRectF m_clip; ///< the picture and a margin, so that what is cut off never shows
};

#endif
