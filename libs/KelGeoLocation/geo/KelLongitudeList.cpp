// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelLongitudeList.h"

#include <algorithm>
#include <iterator>
#include <numeric>

KelLongitudeList::KelLongitudeList(std::initializer_list<KelLongitude> longitudes)
    : QList<KelLongitude>(longitudes)
{
}

KelLongitudeList::~KelLongitudeList() = default;

KelLongitude KelLongitudeList::average() const
{
    return std::accumulate(cbegin(), cend(), KelLongitude(0.0)) / static_cast<double>(size());
}

KelLongitude KelLongitudeList::easternBound() const
{
    return isEmpty() ? KelLongitude() : *std::max_element(cbegin(), cend());
}

KelLongitude KelLongitudeList::westernBound() const
{
    return isEmpty() ? KelLongitude() : *std::min_element(cbegin(), cend());
}

KelRange<KelLongitude> KelLongitudeList::naiveRange() const
{
    return KelRange<KelLongitude>(westernBound(), easternBound());
}

KelLongitudeList KelLongitudeList::onlyWesternHemisphere() const
{
    KelLongitudeList result;
    std::copy_if(cbegin(), cend(), std::back_inserter(result),
                 [](const KelLongitude &longitude) { return longitude.isInWesternHemisphere(); });
    return result;
}

KelLongitudeList KelLongitudeList::onlyEasternHemisphere() const
{
    KelLongitudeList result;
    std::copy_if(cbegin(), cend(), std::back_inserter(result),
                 [](const KelLongitude &longitude) { return longitude.isInEasternHemisphere(); });
    return result;
}

KelRange<KelLongitude> KelLongitudeList::effectiveRange() const
{
    const KelLongitudeList western = onlyWesternHemisphere();
    const KelLongitudeList eastern = onlyEasternHemisphere();
    if (!western.isEmpty() && !eastern.isEmpty() && western.average().absDistance(eastern.average()) > 180.0)
        return KelRange<KelLongitude>(eastern.westernBound(), western.easternBound());
    return naiveRange();
}
