// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELVECTOROVERLAYS_H
#define KELVECTOROVERLAYS_H

#include <QSize>

class KelCopyrightRenderer;
class KelOsmScaleRenderer;
class QPainter;

/// Scale bar and credit for PDF and SVG: the same sizes and places as the library's own painting, which works on
/// pixels only.
class KelVectorOverlays
{
public:
    KelVectorOverlays(const QSize &pictureSize, double factor);

    void drawScale(QPainter &painter, const KelOsmScaleRenderer &scale) const;
    void drawCredit(QPainter &painter, const KelCopyrightRenderer &credit) const;

private:
    QSize m_size;
    double m_factor;
};

#endif
