// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELWORLDMAPCOLORS_H
#define KELWORLDMAPCOLORS_H

#include <QColor>

/// The colours of the built-in map: quiet ones, so that every saturated colour on top stands out.
struct KelWorldMapColors
{
    QColor sea;
    QColor shallows; ///< a soft seam of the sea along the coasts
    QColor land;
    QColor coast;
    QColor border;
    QColor graticule;
    QColor label;

    [[nodiscard]] static KelWorldMapColors light()
    {
        return {QColor(0xc6, 0xdb, 0xe6),     QColor(0xd6, 0xe6, 0xee), QColor(0xf5, 0xf2, 0xea),
                QColor(0x8f, 0xab, 0xb8),     QColor(0xcf, 0xc4, 0xb2), QColor(0x4a, 0x6b, 0x80, 46),
                QColor(0x4a, 0x63, 0x73, 200)};
    }

    [[nodiscard]] static KelWorldMapColors dark()
    {
        return {QColor(0x1b, 0x26, 0x30),     QColor(0x22, 0x30, 0x3c), QColor(0x33, 0x3b, 0x41),
                QColor(0x5a, 0x6d, 0x7a),     QColor(0x52, 0x5b, 0x61), QColor(0xb8, 0xd0, 0xe0, 34),
                QColor(0xb8, 0xc8, 0xd2, 190)};
    }
};

#endif
