// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPICTURECOMPOSER_H
#define KELPICTURECOMPOSER_H

#include "KelMapGeometry.h"
#include "KelMapPicture.h"
#include "KelMapTrackRenderer.h"
#include "KelPictureSource.h"
#include "KelRenderOptions.h"

#include <KelGPXTrackSelection.h>

#include <QColor>
#include <QImage>
#include <QMarginsF>

class QPainter;

/// Puts map, tracks, scale bar and credit together.
class KelPictureComposer : public KelPictureSource
{
public:
    KelPictureComposer(const KelRenderOptions &options, const KelGPXTrackSelection &selection,
                       const KelMapGeometry &geometry, const KelMapPicture &ownMap);

    /// What tracks should keep away from: the padding, line widths, and the overlays at the bottom. At least a tenth of
    /// the picture's width and of its height is left.
    [[nodiscard]] static QMarginsF margins(const KelRenderOptions &options, const KelGPXTrackSelection &selection,
                                           const QSize &size);

    /// The picture in pixels; null if there is too little memory.
    [[nodiscard]] QImage toImage() const override;
    /// The picture as vectors. A cropped map is faded pixel by pixel and stands in it as an image.
    void paint(QPainter &painter) const override;

private:
    [[nodiscard]] static double overlayFactor(const KelRenderOptions &options, const QSize &size);
    [[nodiscard]] static double widestLine(const KelRenderOptions &options, const KelGPXTrackSelection &selection);
    [[nodiscard]] static bool isCropped(const KelRenderOptions &options, const KelGPXTrackSelection &selection);
    [[nodiscard]] bool isCropped() const;
    [[nodiscard]] QImage mapImage() const;
    void paintMap(QPainter &painter) const;
    void paintTracks(QPainter &painter) const;
    [[nodiscard]] bool hasHalos() const;
    [[nodiscard]] QColor haloColor() const;
    [[nodiscard]] KelMapTrackRenderer trackRenderer() const;
    [[nodiscard]] QString credit() const;

    KelRenderOptions m_options;
    KelGPXTrackSelection m_selection;
    KelMapGeometry m_geometry;
    KelMapPicture m_ownMap;
    double m_overlayFactor;
};

#endif
