// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelLatitudeList.h"

#include <algorithm>
#include <numeric>

KelLatitudeList::KelLatitudeList(std::initializer_list<KelLatitude> latitudes)
    : QList<KelLatitude>(latitudes)
{
}

KelLatitudeList::~KelLatitudeList() = default;

KelLatitude KelLatitudeList::average() const
{
    return std::accumulate(cbegin(), cend(), KelLatitude(0.0)) / static_cast<double>(size());
}

KelLatitude KelLatitudeList::northernBound() const
{
    return isEmpty() ? KelLatitude() : *std::max_element(cbegin(), cend());
}

KelLatitude KelLatitudeList::southernBound() const
{
    return isEmpty() ? KelLatitude() : *std::min_element(cbegin(), cend());
}

KelRange<KelLatitude> KelLatitudeList::range() const
{
    return KelRange<KelLatitude>(southernBound(), northernBound());
}
