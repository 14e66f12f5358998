// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMAPPICTURE_H
#define KELMAPPICTURE_H

#include "KelMapBounds.h"

#include <QImage>
#include <QString>

class KelDiagnostics;
class KelMapGeometry;
class QPainter;

/// The user's own map: a picture in Mercator projection and the area that it shows from edge to edge.
class KelMapPicture
{
public:
    KelMapPicture() = default;

    /// Reads the picture; false after telling the diagnostics why not.
    bool load(const QString &fileName, const KelMapBounds &bounds, KelDiagnostics &diagnostics);

    [[nodiscard]] QSize size() const { return m_image.size(); }
    [[nodiscard]] const KelMapBounds &bounds() const noexcept { return m_bounds; }

    /// Draws the picture where it belongs, on every copy of the world; what it does not cover is light grey.
    void paint(QPainter &painter, const KelMapGeometry &geometry) const;

private:
    QImage m_image;
    KelMapBounds m_bounds;
};

#endif
