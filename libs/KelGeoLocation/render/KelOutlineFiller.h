// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELOUTLINEFILLER_H
#define KELOUTLINEFILLER_H

#include "KelPixelOutline.h"

#include <QRect>
#include <QRgb>
#include <QSize>
#include <QtGlobal>

#include <cstddef>
#include <memory>

class QColor;

/// Fills outlines in a part of an image of premultiplied pixels, with the very pixels of QPainter.
///
/// QPainter keeps a sorted list of touched pixels for each row and goes through it for every edge, so that its time
/// grows faster than the outline. Here each pixel of the part has a place of its own, and the time grows with the length
/// of the outline. Memory is bounded by the part: what short outlines touch is kept in lists only as long as these are
/// far smaller than the places.
///
/// Why no pixel differs: both add up in integers, for each pixel, what each edge covers, and neither the order of the
/// edges nor what lies elsewhere matters to a sum. What must be the same is where an edge enters and leaves each pixel,
/// rounding included. As it is a sum, an outline may come in pieces, and what two pieces have in common can be taken away
/// again.
///
/// Private to the library.
class KelOutlineFiller
{
public:
    /// Painting without antialiasing takes pixels whose middle lies in the outline.
    enum Smoothness { Antialiased,
                      Aliased };

    /// Whether no more than MOST_OF_FEW points will be added, of which sums need less room.
    enum Amount { Few,
                  Many };
    static constexpr std::size_t MOST_OF_FEW = 8000;

    enum Sign { Added,
                TakenAway };

    /// For \a part, which lies in an image of \a size. The image is not touched before paint().
    KelOutlineFiller(const QRect &part, const QSize &size, Smoothness smoothness, Amount amount);
    /// The same with all of one outline; where it cannot be in \a part, there is no place for it.
    KelOutlineFiller(const KelPixelOutline &outline, const QRect &part, const QSize &size, Smoothness smoothness);
    ~KelOutlineFiller();
    Q_DISABLE_COPY_MOVE(KelOutlineFiller)

    void add(const KelPixelOutline &outline, Sign sign = Added);

    /// False for outlines beyond the numbers that aliased painting can bear.
    [[nodiscard]] bool isExact() const;

    /// Paints a premultiplied color over an image of the size given, whose first row begins at \a bits.
    void paint(uchar *bits, qsizetype bytesPerLine, QRgb color, Qt::FillRule rule);

    /// As the raster painter makes it: by painting, which takes some microseconds.
    [[nodiscard]] static QRgb premultiplied(const QColor &color);

    /// The memory for what was added.
    [[nodiscard]] std::size_t bytes() const;

    /// Whether the version of Qt that runs fills and strokes small trial pictures with the same pixels. Tried once.
    [[nodiscard]] static bool paintsAsQPainter();

    class Part;

private:
    std::unique_ptr<Part> m_part;
};

#endif
