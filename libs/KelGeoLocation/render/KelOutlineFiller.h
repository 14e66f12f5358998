// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELOUTLINEFILLER_H
#define KELOUTLINEFILLER_H

#include "KelPixelOutline.h"

#include <QRect>
#include <QSize>
#include <QtGlobal>

#include <memory>

class QColor;

/// Fills an outline in a part of an image of premultiplied pixels, with the very pixels of QPainter.
///
/// QPainter keeps a sorted list of touched pixels for each row and goes through it for every edge, so that its time
/// grows faster than the outline. Here each pixel of the part has a place of its own, and the time grows with the length
/// of the outline.
///
/// Why no pixel differs: both add up in integers, for each pixel, what each edge covers, and neither the order of the
/// edges nor what lies elsewhere matters to a sum. What must be the same is where an edge enters and leaves each pixel,
/// rounding included.
///
/// Private to the library.
class KelOutlineFiller
{
public:
    /// Painting without antialiasing takes pixels whose middle lies in the outline.
    enum Smoothness { Antialiased,
                      Aliased };

    /// Takes up what the outline covers in \a part, which lies in an image of \a size. The image is not touched.
    KelOutlineFiller(const KelPixelOutline &outline, const QRect &part, const QSize &size, Smoothness smoothness);
    ~KelOutlineFiller();
    Q_DISABLE_COPY_MOVE(KelOutlineFiller)

    /// False for outlines beyond the numbers that aliased painting can bear.
    [[nodiscard]] bool isExact() const;

    /// Paints a color over an image of the size given, whose first row begins at \a bits.
    void paint(uchar *bits, qsizetype bytesPerLine, const QColor &color, Qt::FillRule rule) const;

    /// Whether the version of Qt that runs fills a small trial picture with the same pixels. Tried once.
    [[nodiscard]] static bool paintsAsQPainter();

    class Part;

private:
    std::unique_ptr<Part> m_part;
};

#endif
