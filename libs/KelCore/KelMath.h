// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMATH_H
#define KELMATH_H

#include <KelCoreGlobal.h>

/// Small mathematics that several libraries of the family share.
class KELCORE_EXPORT KelMath
{
public:
    KelMath() = delete;

    /// True if the two numbers differ by no more than epsilon: |a - b| <= epsilon, the limit included.
    /// False if either number is NaN, and for two infinities, whose difference is not a number.
    [[nodiscard]] static bool epsilonEqual(double a, double b, double epsilon) noexcept;
};

#endif
