// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELWORLDBACKGROUND_H
#define KELWORLDBACKGROUND_H

#include "KelViewPicture.h"

/// The built-in world map, light or dark.
class KelWorldBackground : public KelMapBackground
{
public:
    enum Brightness { Light, Dark };

    explicit KelWorldBackground(Brightness brightness)
        : m_brightness(brightness)
    {
    }

    void paint(QPainter &painter, const KelMapViewport &viewport, double density) const override;
    [[nodiscard]] QString credit() const override;
    [[nodiscard]] QColor baseColor() const override;

private:
    Brightness m_brightness;
};

#endif
