// SPDX-License-Identifier: MIT
// Real numbers made whole. What an int cannot hold becomes its nearest limit, and a NaN 0.
#pragma once

#include <cmath>
#include <limits>

namespace kortools::graphics {

constexpr int truncate(double value)
{
    if (!(value > std::numeric_limits<int>::min()))
        return value < 0 ? std::numeric_limits<int>::min() : 0;
    return value < std::numeric_limits<int>::max() ? static_cast<int>(value)
                                                   : std::numeric_limits<int>::max();
}

} // namespace kortools::graphics

// The nearer of the whole numbers around `x`, the lower one when both are equally near:
//
//   2.5  =>  2
//   -2.5  =>  -3
inline int NearestInt(float x)
{
    float const below = std::floor(x);
    float const above = std::ceil(x);
    return kortools::graphics::truncate(x - below <= above - x ? below : above);
}
