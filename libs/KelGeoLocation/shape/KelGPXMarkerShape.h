// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXMARKERSHAPE_H
#define KELGPXMARKERSHAPE_H

#include <KelEnumWrapper.h>
#include <KelGeoLocationGlobal.h>

#include <QList>
#include <QString>

class QColor;
class QDomElement;
class QIcon;
class QImage;
class QPainter;
class QPointF;
class QRectF;
class QSize;

/// The markers as single bits. The bit 4 belongs to no marker.
enum KelGPXMarkerShapeEnum : int {
    MarkerUnknown = 0,  ///< "unknown": no marker
    MarkerDisk = 1,     ///< "disk": ellipse, outlined with the whole pen
    MarkerCircle = 2,   ///< "circle": ellipse with a thin outline
    MarkerX = 8,        ///< "x": a cross of two thick diagonal bars
    MarkerBlock = 16,   ///< "block": filled rectangle, outlined with the whole pen
    MarkerRect = 32,    ///< "rect": filled rectangle with a thin outline
    MarkerRhombus = 64, ///< "rhombus": a square on its tip
    MarkerStar6 = 128,  ///< "star6": star of six rays
    MarkerStar9 = 256,  ///< "star9": star of nine slender rays
    MarkerStar12 = 512, ///< "star12": star of twelve short rays
    MarkerArrow = 1024  ///< "arrow": not a point marker; a line with this bit ends in an arrow head
};

/// The marker that is drawn at a point, or the arrow head at the end of a line.
///
/// A value is a combination of bits of KelGPXMarkerShapeEnum; 0 means "no marker". Its text form is a comma list
/// of keys ("disk", "star6", …), see KelEnumWrapper. Combinations can be held and stored, but only single bits have
/// a drawing of their own; a combination is drawn as an ellipse.
///
/// Disk and block are the *full-pen* markers (their bits are tested, so combinations with them count as well): they
/// are outlined with the painter's pen as it is and the pen's outer half therefore reaches beyond the radius. All
/// other markers are outlined thinly and are enlarged instead, so that both kinds look equally large.
class KELGEOLOCATION_EXPORT KelGPXMarkerShape : public KelEnumWrapper<KelGPXMarkerShapeEnum>
{
public:
    /// No marker (0).
    KelGPXMarkerShape();
    /// Implicit on purpose: an enumerator is a marker.
    KelGPXMarkerShape(KelGPXMarkerShapeEnum shape);
    /// From a combination of bits, as operator| and operator& deliver it.
    explicit KelGPXMarkerShape(int bits);
    /// From a comma list of keys; case and blanks around a key do not matter, unknown words are ignored.
    /// " DISK , STAR6" is disk and star6 (129), an empty text is 0.
    explicit KelGPXMarkerShape(const QString &keys);

    KelGPXMarkerShape(const KelGPXMarkerShape &) = default;
    KelGPXMarkerShape(KelGPXMarkerShape &&) noexcept = default;
    KelGPXMarkerShape &operator=(const KelGPXMarkerShape &) = default;
    KelGPXMarkerShape &operator=(KelGPXMarkerShape &&) noexcept = default;
    ~KelGPXMarkerShape() override;

    /// Inserts the keys of the enumeration.
    void fillTable(KelEnumToStringTable<KelGPXMarkerShapeEnum> *table) const override;

    /// The markers that a point can have, in the order in which they are offered: disk, circle, star6, star9,
    /// star12, x, block, rect, rhombus.
    [[nodiscard]] static QList<KelGPXMarkerShape> allPointShapes();
    /// What can be at the end of a line: unknown (nothing) and arrow, in this order.
    [[nodiscard]] static QList<KelGPXMarkerShape> allLineStringShapes();

    /// The value becomes what the child element "markerShape" of `parent` says. Without such a child it becomes disk;
    /// an empty child, or one that names no known key, makes it 0.
    void fromXml(const QDomElement &parent);
    /// Appends the child element "markerShape" with the keys to `parent`.
    void toXml(QDomElement &parent) const;

    /// Draws the marker around `center` with the painter's pen and brush; the painter comes back as it was.
    ///
    /// `radiusX` and `radiusY` are half the width and half the height in the painter's units. Unless the marker is a
    /// full-pen one, both grow by 0.4 times the pen's width (rounded to a whole number) and the outline becomes
    /// thin: a fifth of the pen's width for pens wider than 9, otherwise a cosmetic pixel. Values without a drawing
    /// of their own, 0 and arrow among them, are drawn as an ellipse.
    void draw(QPainter *painter, const QPointF &center, double radiusX, double radiusY) const;

    /// The marker on a transparent picture of (size.width + margin) × (size.height + margin) pixels, in
    /// premultiplied ARGB, drawn with a solid pen of width 5. The margin (pixels) is split evenly and gives the
    /// outline its room. A size that is empty with its margin gives a null image.
    [[nodiscard]] QImage createImage(const QSize &size, int margin, const QColor &penColor,
                                     const QColor &fillColor) const;
    /// The marker as an icon of 32 × 32 pixels, for lists of markers. Null for 0 and for any value that holds the
    /// arrow bit.
    [[nodiscard]] QIcon createIcon(const QColor &penColor, const QColor &fillColor) const;

protected:
    /// The rectangle around `center` whose sides are the given radii away from it.
    [[nodiscard]] QRectF targetRect(const QPointF &center, double radiusX, double radiusY) const;
    /// Turns antialiasing on and, unless the marker is a full-pen one, makes the painter's pen thin.
    void configurePainter(QPainter *painter) const;
    /// Draws the form that belongs to the value into `rect`.
    void drawShape(QPainter *painter, const QRectF &rect) const;
    /// A square on its tip that touches the middle of each side of `rect`.
    void drawRhombus(QPainter *painter, const QRectF &rect) const;
    /// All of `rect`, outlined.
    void drawBlock(QPainter *painter, const QRectF &rect) const;
    /// The bars of the cross are a fifth of `rect` thick; their ends are cut at whole pixels.
    void drawX(QPainter *painter, const QRectF &rect) const;
    /// A star of `rays` (at least 1) tips that touch the ellipse in `rect`; the notches between them lie on the
    /// ellipse that is `innerRatio` times as large. A notch, not a tip, is straight below the centre.
    void drawStar(QPainter *painter, const QRectF &rect, int rays, double innerRatio) const;

private:
    [[nodiscard]] bool usesFullPen() const;
};

#endif
