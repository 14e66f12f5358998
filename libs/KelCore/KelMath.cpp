// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelMath.h"

#include <cmath>

bool KelMath::epsilonEqual(double a, double b, double epsilon) noexcept
{
    return std::abs(a - b) <= epsilon;
}
