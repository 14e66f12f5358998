// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKPICTURES_H
#define KELTRACKPICTURES_H

#include <QDir>

/// What the renderers do with tracks on a map: halo and crop, the date line, copies of the world, enclaves, overlays.
class KelTrackPictures
{
public:
    explicit KelTrackPictures(const QDir &folder);

    [[nodiscard]] bool drawAll() const;

private:
    [[nodiscard]] bool drawHaloAndCrop() const;
    [[nodiscard]] bool drawDateLine() const;
    [[nodiscard]] bool drawWorldCopies() const;
    [[nodiscard]] bool drawEnclaves() const;
    [[nodiscard]] bool drawScaleBar() const;

    QDir m_folder;
};

#endif
