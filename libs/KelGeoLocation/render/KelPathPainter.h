// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPATHPAINTER_H
#define KELPATHPAINTER_H

#include <QImage>
#include <QList>
#include <QPainter>
#include <QRect>
#include <QSize>

class QBrush;
class QColor;
class QPainterPath;
class QPen;
class QPointF;

/// Paints long paths on an image, lines tile by tile and in several threads, with the very pixels of QPainter::drawPath()
/// and QPainter::fillPath().
///
/// The time that a raster painter takes grows faster than the length of a path: it goes through the whole outline for
/// every few rows of pixels. A tile sees only the part of the path that comes near it.
///
/// Why no pixel differs: the rasterizer adds up, for each pixel, what each edge of the outline covers, in integers, and
/// edges to the left count with their exact height only. So what is painted does not depend on edges elsewhere, as
/// long as the outline stays closed. Tiles are clips, not images of their own, because coordinates must be rounded
/// exactly as in the whole image.
///
/// Private to the library. The painter keeps the image's memory: nothing else may copy or resize the image while the
/// painter lives, but others may paint on it between two calls.
class KelPathPainter
{
public:
    /// \a image is not null and shares its memory with no other image. Tiles are painted with these hints.
    KelPathPainter(QImage *image, QPainter::RenderHints hints);

    /// Paints what QPainter::strokePath() would, for a painter that is moved by \a offset. False, and nothing is
    /// painted, where that is better done plainly or might look different: short paths, curves, coordinates far away
    /// from the image, pens that are dashed, thin or not round.
    [[nodiscard]] bool stroke(const QPainterPath &path, const QPen &pen, const QPointF &offset);

    /// The same for QPainter::fillPath(), which is fast enough where all of the path is seen: only what lies outside
    /// of the image is left out, and there must be enough of it.
    [[nodiscard]] bool fill(const QPainterPath &path, const QBrush &brush, const QPointF &offset);

private:
    template <typename OutlineIn>
    bool fillStripes(const QList<QRect> &stripes, OutlineIn outlineIn, const QColor &color, Qt::FillRule rule);

    uchar *m_bits;
    QSize m_size;
    qsizetype m_bytesPerLine;
    QPainter::RenderHints m_hints;
};

#endif
