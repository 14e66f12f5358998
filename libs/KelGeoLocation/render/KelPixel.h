// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELPIXEL_H
#define KELPIXEL_H

#include <limits>

/// Private helpers for pixel coordinates.
namespace KelPixel
{

/// The value without its fraction. Not a number gives 0 and what does not fit is limited to the range of int, where
/// a plain cast would be undefined: scales and projections come from hosts and may degenerate.
[[nodiscard]] constexpr int truncated(double value) noexcept
{
    if (value != value)
        return 0;
    if (value <= std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    if (value >= std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    return static_cast<int>(value);
}

} // namespace KelPixel

#endif
