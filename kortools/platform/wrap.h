// SPDX-License-Identifier: MIT
// Integer arithmetic that wraps around, as the window system's does.
#pragma once

namespace kortools::platform {

constexpr int wrap_add(int a, int b)
{
    return static_cast<int>(static_cast<unsigned int>(a) + static_cast<unsigned int>(b));
}

constexpr int wrap_subtract(int a, int b)
{
    return static_cast<int>(static_cast<unsigned int>(a) - static_cast<unsigned int>(b));
}

constexpr int wrap_multiply(int a, int b)
{
    return static_cast<int>(static_cast<unsigned int>(a) * static_cast<unsigned int>(b));
}

} // namespace kortools::platform
