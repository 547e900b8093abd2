// SPDX-License-Identifier: MIT
// The window system's rules for rectangles of integers: right and bottom lie outside, and a
// rectangle that is not wider and higher than 0 is empty. Coordinates wrap around. A result may be
// one of the operands.
//
// Windows is asked; elsewhere the portable rules, which give the same results, are inlined.
#pragma once

#include "kortools/export.h"
#include "kortools/platform/wrap.h"

#include <algorithm>

namespace kortools::platform {

struct Rectangle {
    int left;
    int top;
    int right;
    int bottom;

    bool operator==(Rectangle const &) const = default;
};

namespace portable {

constexpr bool is_empty(Rectangle const &rect)
{
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

constexpr bool is_equal(Rectangle const &a, Rectangle const &b)
{
    return a == b;
}

constexpr bool contains(Rectangle const &rect, int x, int y)
{
    return x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
}

// Moves each side outwards.
constexpr void inflate(Rectangle &rect, int dx, int dy)
{
    rect = { wrap_subtract(rect.left, dx), wrap_subtract(rect.top, dy), wrap_add(rect.right, dx),
        wrap_add(rect.bottom, dy) };
}

constexpr void offset(Rectangle &rect, int dx, int dy)
{
    rect = { wrap_add(rect.left, dx), wrap_add(rect.top, dy), wrap_add(rect.right, dx),
        wrap_add(rect.bottom, dy) };
}

// These return whether the result has an area; when it has none it is all zero. What an empty
// rectangle has in common with another one is empty, too.
constexpr bool intersect(Rectangle &result, Rectangle const &a, Rectangle const &b)
{
    Rectangle const common { std::max(a.left, b.left), std::max(a.top, b.top),
        std::min(a.right, b.right), std::min(a.bottom, b.bottom) };
    bool const has_area = !portable::is_empty(common);
    result = has_area ? common : Rectangle {};
    return has_area;
}

// Of two that are both empty nothing is left; one alone counts for nothing.
constexpr bool unite(Rectangle &result, Rectangle const &a, Rectangle const &b)
{
    bool const has_a = !portable::is_empty(a);
    bool const has_b = !portable::is_empty(b);
    if (has_a && has_b)
        result = { std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom) };
    else
        result = has_a ? a : has_b ? b : Rectangle {};
    return has_a || has_b;
}

// What is left of `a` when `b` covers one whole side of it; else `a` itself.
constexpr bool subtract(Rectangle &result, Rectangle const &a, Rectangle const &b)
{
    Rectangle left = portable::is_empty(a) ? Rectangle {} : a;
    Rectangle cut {};
    if (portable::intersect(cut, a, b)) {
        bool const is_full_height = cut.top == a.top && cut.bottom == a.bottom;
        bool const is_full_width = cut.left == a.left && cut.right == a.right;
        if (is_full_height && is_full_width)
            left = {};
        else if (is_full_height && cut.left == a.left)
            left.left = cut.right;
        else if (is_full_height && cut.right == a.right)
            left.right = cut.left;
        else if (is_full_width && cut.top == a.top)
            left.top = cut.bottom;
        else if (is_full_width && cut.bottom == a.bottom)
            left.bottom = cut.top;
    }
    result = left;
    return !portable::is_empty(left);
}

} // namespace portable

#if defined(_WIN32)
KORTOOLS_API bool is_empty(Rectangle const &rect);
KORTOOLS_API bool is_equal(Rectangle const &a, Rectangle const &b);
KORTOOLS_API bool contains(Rectangle const &rect, int x, int y);
KORTOOLS_API void inflate(Rectangle &rect, int dx, int dy);
KORTOOLS_API void offset(Rectangle &rect, int dx, int dy);
KORTOOLS_API bool intersect(Rectangle &result, Rectangle const &a, Rectangle const &b);
KORTOOLS_API bool unite(Rectangle &result, Rectangle const &a, Rectangle const &b);
KORTOOLS_API bool subtract(Rectangle &result, Rectangle const &a, Rectangle const &b);
#else
using portable::contains;
using portable::inflate;
using portable::intersect;
using portable::is_empty;
using portable::is_equal;
using portable::offset;
using portable::subtract;
using portable::unite;
#endif

} // namespace kortools::platform
