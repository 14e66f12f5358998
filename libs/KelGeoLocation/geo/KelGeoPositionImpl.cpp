// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGeoPositionImpl.h"

KelGeoPositionImpl::KelGeoPositionImpl(const KelLatitude &theLatitude, const KelLongitude &theLongitude) noexcept
    : longitude(theLongitude)
    , latitude(theLatitude)
{
}

KelGeoPositionImpl::~KelGeoPositionImpl() = default;
