// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXFULLSHAPE_H
#define KELGPXFULLSHAPE_H

#include <KelGPXMarkerShape.h>
#include <KelGPXTrackShape.h>
#include <KelGeoLocationGlobal.h>

#include <QString>

class QColor;
class QDebug;
class QIcon;

/// A track shape together with a marker shape: what a user picks from a list in one go ("arrow" is a line with the
/// arrow marker). The default is unknown without a marker.
///
/// Any pair can be held; normalize() makes the marker fit the track shape.
class KELGEOLOCATION_EXPORT KelGPXFullShape
{
public:
    KelGPXFullShape();
    /// The pair as it is, fitting or not.
    KelGPXFullShape(const KelGPXTrackShape &trackShape, const KelGPXMarkerShape &markerShape);

    KelGPXFullShape(const KelGPXFullShape &) = default;
    KelGPXFullShape(KelGPXFullShape &&) noexcept = default;
    KelGPXFullShape &operator=(const KelGPXFullShape &) = default;
    KelGPXFullShape &operator=(KelGPXFullShape &&) noexcept = default;
    virtual ~KelGPXFullShape();

    /// The form of the track.
    [[nodiscard]] const KelGPXTrackShape &trackShape() const noexcept;
    /// Replaces the form and leaves the marker alone.
    void setTrackShape(const KelGPXTrackShape &trackShape);
    /// The marker at a point, or the arrow of a line.
    [[nodiscard]] const KelGPXMarkerShape &markerShape() const noexcept;
    /// Replaces the marker and leaves the form alone.
    void setMarkerShape(const KelGPXMarkerShape &markerShape);

    /// Both parts are equal.
    [[nodiscard]] bool operator==(const KelGPXFullShape &other) const;

    /// The name to show to the user, KelGPXTrackShape::humanReadable() with this marker.
    [[nodiscard]] QString describe() const;
    /// KelGPXTrackShape::toolTip() of the track shape.
    [[nodiscard]] QString toolTip() const;
    /// The marker's icon, KelGPXMarkerShape::createIcon(); null where the marker has none.
    [[nodiscard]] QIcon createIcon(const QColor &penColor, const QColor &fillColor) const;

    /// Drops the marker bits that do not go with the track shape: a point keeps every marker but the arrow, a line
    /// only the arrow, any other shape none.
    void normalize();
    /// A copy after normalize().
    [[nodiscard]] KelGPXFullShape normalized() const;

private:
    KelGPXTrackShape m_trackShape;
    KelGPXMarkerShape m_markerShape;
};

/// Writes the keys of both shapes: "point/disk".
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelGPXFullShape &shape);

/// Equal shapes have equal hashes.
[[nodiscard]] KELGEOLOCATION_EXPORT size_t qHash(const KelGPXFullShape &shape, size_t seed = 0) noexcept;

#endif
