// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPictureBackground.h"

#include <KelCopyrightRenderer.h>

#include <QPainter>

KelPictureBackground::KelPictureBackground(const QImage &image, const KelGeoPositionRect &bounds,
                                           std::shared_ptr<const KelMapBackground> around)
    : m_image(image)
    , m_bounds(bounds)
    , m_around(std::move(around))
{
}

void KelPictureBackground::paint(QPainter &painter, const KelMapViewport &viewport, double density) const
{
    if (m_around)
        m_around->paint(painter, viewport, density);
    const QPointF topLeft = viewport.project(KelGeoPosition(m_bounds.north(), m_bounds.west()));
    QPointF bottomRight = viewport.project(KelGeoPosition(m_bounds.south(), m_bounds.east()));
    if (m_bounds.longitudeRange().crossesDateLine())
        bottomRight.rx() += viewport.worldSize();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const int copies = int(viewport.size().width() / viewport.worldSize()) + 1;
    for (int copy = -copies; copy <= copies; ++copy) {
        const QRectF target = QRectF(topLeft, bottomRight).translated(copy * viewport.worldSize(), 0);
        if (target.intersects(QRectF(QPointF(0, 0), QSizeF(viewport.size()))))
            painter.drawImage(target, m_image);
    }
}

QString KelPictureBackground::credit() const
{
    return KelCopyrightRenderer().copyrightText();
}

QColor KelPictureBackground::baseColor() const
{
    return m_around ? m_around->baseColor() : QColor(Qt::white);
}
