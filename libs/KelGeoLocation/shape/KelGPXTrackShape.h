// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKSHAPE_H
#define KELGPXTRACKSHAPE_H

#include <KelEnumWrapper.h>
#include <KelGeoLocationGlobal.h>

#include <QList>
#include <QString>

class KelGPXMarkerShape;
class KelGPXTrackDisplayOptions;
class QDomElement;

/// The geometric forms of a track as single bits.
enum KelGPXTrackShapeEnum : int {
    TrackShapeUnknown = 0,    ///< "unknown"
    TrackShapePoint = 1,      ///< "point": one marker
    TrackShapeHop = 2,        ///< "hop": two points, joined as a flight
    TrackShapeLineString = 4, ///< "linestring": all points joined to a line
    TrackShapePolygon = 8,    ///< "polygon": the points surround an area
    TrackShapeAuto = 256      ///< "auto": to be found out from the points
};

/// The geometric form in which a track's points are drawn.
///
/// A value is a combination of bits of KelGPXTrackShapeEnum, in practice exactly one of them or 0. Its text form is
/// a comma list of keys, see KelEnumWrapper. What is said of single shapes below holds for exactly that value;
/// combinations fall under "any other value".
class KELGEOLOCATION_EXPORT KelGPXTrackShape : public KelEnumWrapper<KelGPXTrackShapeEnum>
{
public:
    /// Unknown (0).
    KelGPXTrackShape();
    /// Implicit on purpose: an enumerator is a shape.
    KelGPXTrackShape(KelGPXTrackShapeEnum shape);
    /// From a combination of bits, as operator| and operator& deliver it.
    explicit KelGPXTrackShape(int bits);
    /// From a comma list of keys; case and blanks around a key do not matter, unknown words are ignored.
    explicit KelGPXTrackShape(const QString &keys);

    KelGPXTrackShape(const KelGPXTrackShape &) = default;
    KelGPXTrackShape(KelGPXTrackShape &&) noexcept = default;
    KelGPXTrackShape &operator=(const KelGPXTrackShape &) = default;
    KelGPXTrackShape &operator=(KelGPXTrackShape &&) noexcept = default;
    ~KelGPXTrackShape() override;

    /// Inserts the keys of the enumeration.
    void fillTable(KelEnumToStringTable<KelGPXTrackShapeEnum> *table) const override;

    /// The value becomes what the child element "trackShape" of `parent` says. Without such a child it becomes auto;
    /// an empty child, or one that names no known key, makes it 0.
    void fromXml(const QDomElement &parent);
    /// Appends the child element "trackShape" with the keys to `parent`.
    void toXml(QDomElement &parent) const;

    /// The shape of a KML placemark, told by its direct child elements. They are looked for in this order, whatever
    /// their order in the document: "Polygon", "LineString", "Point", and "shape", which names the shape by its
    /// keys. With none of them the shape is auto; a geometry inside another element is not seen.
    [[nodiscard]] static KelGPXTrackShape decodeKml(const QDomElement &placemark);

    /// The name to show to the user (translated): a line whose marker holds the arrow bit is an arrow. Empty for any
    /// other value than those named in the enumeration.
    [[nodiscard]] QString humanReadable(const KelGPXMarkerShape &marker) const;
    /// One sentence of explanation (translated); empty as humanReadable() is.
    [[nodiscard]] QString toolTip() const;

    /// The shapes into which a track of this natural shape may be switched, the one to be offered first in front:
    /// point: [point]; hop: [hop]; linestring: [polygon, linestring]; polygon: [point, polygon]; any other value: [].
    [[nodiscard]] QList<KelGPXTrackShape> possibleShapes() const;
    /// The markers that go with this shape: those of points for point, those of lines for linestring, the single
    /// marker "unknown" for any other value.
    [[nodiscard]] QList<KelGPXMarkerShape> createMarkerShapes() const;

    /// The options that may be switched for this shape: point: all three; hop: stroke and the one without a key;
    /// linestring: stroke; polygon: stroke and fill; any other value: none.
    [[nodiscard]] KelGPXTrackDisplayOptions availableDisplayOptions() const;
    /// Stroke, whatever the shape.
    [[nodiscard]] KelGPXTrackDisplayOptions defaultDisplayOptions() const;
};

#endif
