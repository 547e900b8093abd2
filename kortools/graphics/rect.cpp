// SPDX-License-Identifier: MIT
#include "kortools/graphics/rect.h"

#include "kortools/core/throw.h"
#include "kortools/platform/wrap.h"

namespace platform = kortools::platform;

void CXRect::InflateRect(int l, int t, int r, int b)
{
    *this = { platform::wrap_subtract(left, l), platform::wrap_subtract(top, t),
        platform::wrap_add(right, r), platform::wrap_add(bottom, b) };
}

void CXRect::DeflateRect(int l, int t, int r, int b)
{
    *this = { platform::wrap_add(left, l), platform::wrap_add(top, t),
        platform::wrap_subtract(right, r), platform::wrap_subtract(bottom, b) };
}

CXRect CXRect::MulDiv(int num, int den) const
{
    if (den == 0)
        kortools::core::throw_invalid_argument();
    auto const scale = [=](int value) { // the wider quotient lets -2^31 / -1 wrap, not trap
        long long const product = platform::wrap_multiply(value, num);
        return static_cast<int>(product / den);
    };
    return { scale(left), scale(top), scale(right), scale(bottom) };
}
