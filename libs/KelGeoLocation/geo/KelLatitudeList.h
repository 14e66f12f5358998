// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELLATITUDELIST_H
#define KELLATITUDELIST_H

#include <KelGeoLocationGlobal.h>
#include <KelLatitude.h>
#include <KelRange.h>

#include <QList>

#include <initializer_list>

/// A list of latitudes and what they have in common. Bounds and average of an empty list are the invalid 720.
class KELGEOLOCATION_EXPORT KelLatitudeList : public QList<KelLatitude>
{
public:
    KelLatitudeList() = default;
    /// Those latitudes, in that order.
    KelLatitudeList(std::initializer_list<KelLatitude> latitudes);
    KelLatitudeList(const KelLatitudeList &other) = default;
    KelLatitudeList(KelLatitudeList &&other) noexcept = default;
    KelLatitudeList &operator=(const KelLatitudeList &other) = default;
    KelLatitudeList &operator=(KelLatitudeList &&other) noexcept = default;
    virtual ~KelLatitudeList();

    /// The arithmetic mean.
    [[nodiscard]] KelLatitude average() const;
    /// The greatest latitude.
    [[nodiscard]] KelLatitude northernBound() const;
    /// The least latitude.
    [[nodiscard]] KelLatitude southernBound() const;
    /// From the southern to the northern bound.
    [[nodiscard]] KelRange<KelLatitude> range() const;
};

#endif
