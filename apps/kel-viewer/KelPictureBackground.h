// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPICTUREBACKGROUND_H
#define KELPICTUREBACKGROUND_H

#include "KelViewPicture.h"

#include <KelGeoPositionRect.h>

#include <QImage>

/// A map picture of the user's own, in Mercator projection, lying where its bounds say; the world map around it.
class KelPictureBackground : public KelMapBackground
{
public:
    KelPictureBackground(const QImage &image, const KelGeoPositionRect &bounds,
                         std::shared_ptr<const KelMapBackground> around);

    void paint(QPainter &painter, const KelMapViewport &viewport, double density) const override;
    /// The attribution that the library knows; a picture carries its own beside it.
    [[nodiscard]] QString credit() const override;
    [[nodiscard]] QColor baseColor() const override;

private:
    QImage m_image;
    KelGeoPositionRect m_bounds;
    std::shared_ptr<const KelMapBackground> m_around;
};

#endif
