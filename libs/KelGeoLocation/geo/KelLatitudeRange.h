// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELLATITUDERANGE_H
#define KELLATITUDERANGE_H

#include <KelGeoLocationGlobal.h>
#include <KelLatitude.h>
#include <KelRange.h>

#include <QString>

class QDebug;
class QUrlQuery;

/// A band between a southern and a northern latitude, both included.
///
/// The bounds are stored as they come; a default-constructed range is unset (both bounds 720) and becomes a single
/// latitude by expandTo(). Comparison, contains() and expandTo() are those of KelRange, with the tolerance of the
/// angles.
class KELGEOLOCATION_EXPORT KelLatitudeRange : public KelRange<KelLatitude>
{
public:
    /// Keys of the bounds in the query of a URL: "latitude_min" and "latitude_max".
    static const QString QUERY_ITEM_SOUTH;
    /// \copydoc QUERY_ITEM_SOUTH
    static const QString QUERY_ITEM_NORTH;

    KelLatitudeRange() = default;
    /// Both bounds as they are, unchecked.
    KelLatitudeRange(const KelLatitude &south, const KelLatitude &north)
        : KelRange<KelLatitude>(south, north)
    {
    }
    /// Takes over the bounds of any range of latitudes.
    explicit KelLatitudeRange(const KelRange<KelLatitude> &range)
        : KelRange<KelLatitude>(range)
    {
    }

    /// The range between two latitudes, whichever of them is the southern one.
    [[nodiscard]] static KelLatitudeRange spawn(const KelLatitude &a, const KelLatitude &b);
    /// Reads both bounds by KelLatitude::parse(); neither order nor validity is checked.
    [[nodiscard]] static KelLatitudeRange parse(const QString &south, const QString &north);
    /// Reads both bounds from the items of @p query; a missing one is invalid.
    [[nodiscard]] static KelLatitudeRange parse(const QUrlQuery &query);

    /// The lower bound.
    [[nodiscard]] KelLatitude south() const noexcept { return min(); }
    /// The upper bound.
    [[nodiscard]] KelLatitude north() const noexcept { return max(); }
    /// North minus south, in degrees.
    [[nodiscard]] KelLatitude height() const noexcept { return north() - south(); }

    /// Moves both bounds outwards by @p margin degrees, but not beyond the poles.
    void blowUp(const KelLatitude &margin);

    /// Whether south does not exceed north, and both lie within -90 ... +90 (with the tolerance of the angles).
    [[nodiscard]] bool isValid() const override;

    /// Adds both bounds to @p query, the northern one first.
    void writeTo(QUrlQuery &query) const;
    /// "S33.50000000 - N12.00000000", or both bounds in degrees, minutes and seconds (KelLatitude::toString()).
    [[nodiscard]] QString toString(bool dms) const;
};

/// Writes toString(false).
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelLatitudeRange &range);

#endif
