// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELSHAPEPICTURES_H
#define KELSHAPEPICTURES_H

#include <QDir>

/// What one configuration changes: markers, shapes, pens, painted parts, smoothing.
class KelShapePictures
{
public:
    explicit KelShapePictures(const QDir &folder);

    [[nodiscard]] bool drawAll() const;

private:
    [[nodiscard]] bool drawMarkers() const;
    [[nodiscard]] bool drawShapes() const;
    [[nodiscard]] bool drawPenStyles() const;
    [[nodiscard]] bool drawDisplayOptions() const;
    [[nodiscard]] bool drawSmoothing() const;

    QDir m_folder;
};

#endif
