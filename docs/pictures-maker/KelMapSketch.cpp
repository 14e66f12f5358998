// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelMapSketch.h"

#include "KelWorldMapPainter.h"

#include <KelMapProjection.h>

#include <QPainter>

KelMapSketch::KelMapSketch(const KelGPXTrackSelection &tracks, const KelGeoPositionRect &area, const QSize &size,
                           Ground ground)
    : KelGPXTrackRenderer(tracks, size, 1.0)
    , m_ground(ground)
{
    const KelMapProjection projection(area, size);
    const KelGeoPosition northWest = projection.convert(QPoint(0, 0));
    const KelGeoPosition southEast = projection.convert(QPoint(size.width(), size.height()));
    const double west = KelMapProjection::longitudeToNormalized(northWest.longitude().decimalDegrees());
    const double east = KelMapProjection::longitudeToNormalized(southEast.longitude().decimalDegrees());
    const double north = KelMapProjection::latitudeToNormalized(northWest.latitude().decimalDegrees());
    m_frame.size = size;
    m_frame.worldSize = size.width() / (east - west);
    m_frame.origin = QPointF(-west, -north) * m_frame.worldSize;
    // Across a tenth of the picture: the whole of it may be more than half the globe.
    const QPoint middle(size.width() / 2, size.height() / 2);
    const QPoint beside = middle + QPoint(size.width() / 10, 0);
    m_pixelsPerKilometre = (beside.x() - middle.x()) / projection.convert(middle).distance(projection.convert(beside));
}

QPointF KelMapSketch::projectPosition(const KelGeoPosition &position) const
{
    return m_frame.toPixel(KelMapProjection::longitudeToNormalized(position.longitude().decimalDegrees()),
                           KelMapProjection::latitudeToNormalized(position.latitude().decimalDegrees()));
}

QImage KelMapSketch::map() const
{
    QImage image(targetImageSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(KelWorldMapColors::light().land);
    if (m_ground == World) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        KelWorldMapPainter(m_frame, 0.8, KelWorldMapColors::light()).paint(painter);
    }
    return image;
}

QImage KelMapSketch::picture() const
{
    QImage image = map();
    QPainter painter(&image);
    painter.drawImage(0, 0, render(Normal));
    return image;
}

double KelMapSketch::pixelsPerKilometre() const
{
    return m_pixelsPerKilometre;
}

QImage KelMapSketch::chequered(const QImage &picture)
{
    constexpr int side = 8;
    QImage image(picture.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    for (int y = 0; y < image.height(); y += side) {
        for (int x = (y / side % 2) * side; x < image.width(); x += 2 * side)
            painter.fillRect(x, y, side, side, QColor(0xdd, 0xdd, 0xdd));
    }
    painter.drawImage(0, 0, picture);
    return image;
}
