// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPICTURESOURCE_H
#define KELPICTURESOURCE_H

#include <QImage>

class QPainter;

/// A picture that can be had in pixels or, where the device keeps them, as vectors.
class KelPictureSource
{
public:
    virtual ~KelPictureSource() = default;

    /// Null if there is too little memory.
    [[nodiscard]] virtual QImage toImage() const = 0;
    virtual void paint(QPainter &painter) const = 0;
};

#endif
