// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELLONGITUDELIST_H
#define KELLONGITUDELIST_H

#include <KelGeoLocationGlobal.h>
#include <KelLongitude.h>
#include <KelRange.h>

#include <QList>

#include <initializer_list>

/// A list of longitudes and what they have in common. Bounds and average of an empty list are the invalid 720.
///
/// Bounds and average take the longitudes as plain numbers; effectiveRange() knows about the date line.
class KELGEOLOCATION_EXPORT KelLongitudeList : public QList<KelLongitude>
{
public:
    KelLongitudeList() = default;
    /// Those longitudes, in that order.
    KelLongitudeList(std::initializer_list<KelLongitude> longitudes);
    KelLongitudeList(const KelLongitudeList &other) = default;
    KelLongitudeList(KelLongitudeList &&other) noexcept = default;
    KelLongitudeList &operator=(const KelLongitudeList &other) = default;
    KelLongitudeList &operator=(KelLongitudeList &&other) noexcept = default;
    virtual ~KelLongitudeList();

    /// The arithmetic mean.
    [[nodiscard]] KelLongitude average() const;
    /// The numerically greatest longitude.
    [[nodiscard]] KelLongitude easternBound() const;
    /// The numerically least longitude.
    [[nodiscard]] KelLongitude westernBound() const;
    /// From the western to the eastern bound.
    [[nodiscard]] KelRange<KelLongitude> naiveRange() const;

    /// The western longitudes in their order (KelLongitude::isInWesternHemisphere()).
    [[nodiscard]] KelLongitudeList onlyWesternHemisphere() const;
    /// The eastern longitudes in their order; 0 and both +180 and -180 are among them.
    [[nodiscard]] KelLongitudeList onlyEasternHemisphere() const;

    /// The sector that the longitudes cover.
    ///
    /// When the averages of the western and of the eastern ones are more than half a turn apart, the longitudes lie
    /// around the date line, and the range runs from the least eastern to the greatest western one: 170, 175 and -175
    /// give min 170, max -175. Such a range has min > max; make a KelLongitudeRange of it. In all other cases it is
    /// the naiveRange().
    [[nodiscard]] KelRange<KelLongitude> effectiveRange() const;
};

#endif
