// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPATHPAINTER_H
#define KELPATHPAINTER_H

#include "KelOutlineFiller.h"

#include <QColor>
#include <QImage>
#include <QList>
#include <QPainter>
#include <QRect>
#include <QRgb>
#include <QRgba64>
#include <QSize>

#include <optional>

class QBrush;
class QPainterPath;
class QPen;
class QPointF;

/// Paints paths on an image, long ones in several threads, with the very pixels of QPainter::strokePath() and
/// QPainter::fillPath(), but in a time that grows only with the length of the path.
///
/// Outlines of strokes are QPainter's own, those of long lines in stripes of rows: a stripe sees the part of the line
/// that comes near it, with two more segments at each end, so that joins look at the same neighbours. What is painted
/// in a stripe does not depend on edges elsewhere, as long as the outline stays closed. Long parts are outlined piece by
/// piece, so that memory is bounded by the picture, not by the outline, which takes hundreds of bytes for each segment;
/// dashes are gathered into such pieces, one after the other; outlines of areas, and lines that come back to the same
/// points all the time, are held whole.
///
/// Private to the library. The painter keeps the image's memory: nothing else may copy or resize the image while the
/// painter lives, but others may paint on it between two calls.
class KelPathPainter
{
public:
    static constexpr int SEGMENTS_PER_PIECE = 2000;

    /// \a image is not null, of premultiplied pixels, and shares its memory with no other. Of the hints, that for
    /// antialiasing counts. The pieces in which strokes are outlined (see above) change no pixel.
    KelPathPainter(QImage *image, QPainter::RenderHints hints, int segmentsPerPiece = SEGMENTS_PER_PIECE);

    /// Paints what QPainter::strokePath() would, for a painter that is moved by \a offset. False, and nothing is
    /// painted, where that might look different: coordinates far away from the image, pens that are thin, not round, or
    /// dashed in a way of their own, paths of nothing but single lines with pens that are not dashed, paths with curves
    /// that are long or dashed, images with more than 32,767 rows or columns, versions of Qt that paint otherwise.
    [[nodiscard]] bool stroke(const QPainterPath &path, const QPen &pen, const QPointF &offset);

    /// The same for QPainter::fillPath(), with plain colours.
    [[nodiscard]] bool fill(const QPainterPath &path, const QBrush &brush, const QPointF &offset);

private:
    [[nodiscard]] bool isPaintable(const QPainterPath &path, const QPointF &offset) const;
    [[nodiscard]] QList<QRect> stripes() const;
    [[nodiscard]] QRgb premultiplied(const QColor &color);
    [[nodiscard]] bool strokeDashes(const QPainterPath &path, const QPen &pen, const QPointF &offset);
    template<typename AddTo>
    bool strokePieces(const QList<QRect> &stripes, const QPainterPath &path, const QPen &pen, const QPointF &offset,
                      AddTo addTo);
    template<typename FillerIn>
    bool fillStripes(const QList<QRect> &stripes, FillerIn fillerIn, const QColor &color, Qt::FillRule rule);

    uchar *m_bits;
    QSize m_size;
    qsizetype m_bytesPerLine;
    KelOutlineFiller::Smoothness m_smoothness;
    int m_segmentsPerPiece;
    std::optional<QRgba64> m_color; // the last one
    QRgb m_premultiplied = 0;
};

#endif
