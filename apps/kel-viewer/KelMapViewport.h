// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMAPVIEWPORT_H
#define KELMAPVIEWPORT_H

#include <KelGeoPosition.h>

#include <QPointF>
#include <QSize>
#include <QSizeF>
#include <QTransform>

class KelGeoPositionRect;

/// What part of the world a map view shows: a Mercator map of continuous scale under a window of pixels.
///
/// The world is a square of worldSize() pixels that repeats to the east and west. Pixels are fractional, so that
/// panning and zooming are smooth; longitudes of positions under the window are always within ±180.
class KelMapViewport
{
public:
    /// The whole world in a window of the given size (at least 1 × 1 pixel).
    explicit KelMapViewport(const QSize &size = QSize(800, 600));

    [[nodiscard]] QSize size() const noexcept { return m_size; }
    /// Keeps the position in the middle and the scale.
    void setSize(const QSize &size);

    /// Side of the whole world in pixels.
    [[nodiscard]] double worldSize() const noexcept { return m_worldSize; }
    /// Length of one kilometre in pixels at the latitude in the middle of the window.
    [[nodiscard]] double pixelsPerKilometre() const;

    /// Window pixel of a position, on the copy of the world that holds the middle of the window.
    [[nodiscard]] QPointF project(const KelGeoPosition &position) const;
    [[nodiscard]] KelGeoPosition unproject(const QPointF &pixel) const;

    /// Pixel of the world's north-west corner, 180° west.
    [[nodiscard]] QPointF worldOrigin() const;

    /// Moves the map by that many pixels with the hand that drags it.
    void pan(const QPointF &pixels);
    /// Changes the scale and keeps what lies under the pixel there; the scale is limited at both ends.
    void zoomAt(const QPointF &pixel, double factor);
    /// Shows the whole area (across the date line where its west is greater than its east) with a margin around
    /// it, as a share of the window (0.1 leaves a tenth free on every side). An invalid area shows the whole world,
    /// a single place some hundred kilometres around it.
    void fit(const KelGeoPositionRect &area, double margin);

    /// The same view with every length multiplied, for devices of higher density.
    [[nodiscard]] KelMapViewport scaled(double factor) const;
    /// Maps pixels of an older view to pixels of this one; the nearer way round the world.
    [[nodiscard]] QTransform transformFrom(const KelMapViewport &older) const;

    friend bool operator==(const KelMapViewport &a, const KelMapViewport &b) = default;

private:
    void normalize();

    QSize m_size;
    QPointF m_centre = {0.5, 0.5}; ///< of the window, in units of the world's side, y from north to south
    double m_worldSize = 256.0;
};

#endif
