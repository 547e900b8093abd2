// SPDX-License-Identifier: MIT
#include "kortools/platform/rectangles.h"

#include <bit>
#include <windows.h>

namespace kortools::platform {
namespace {

RECT to_native(Rectangle const &rect)
{
    return std::bit_cast<RECT>(rect);
}

bool store(BOOL outcome, RECT const &native, Rectangle &result)
{
    result = std::bit_cast<Rectangle>(native);
    return outcome != FALSE;
}

} // namespace

bool is_empty(Rectangle const &rect)
{
    RECT const native = to_native(rect);
    return IsRectEmpty(&native) != FALSE;
}

bool is_equal(Rectangle const &a, Rectangle const &b)
{
    RECT const native_a = to_native(a);
    RECT const native_b = to_native(b);
    return EqualRect(&native_a, &native_b) != FALSE;
}

bool contains(Rectangle const &rect, int x, int y)
{
    RECT const native = to_native(rect);
    return PtInRect(&native, POINT { x, y }) != FALSE;
}

void inflate(Rectangle &rect, int dx, int dy)
{
    RECT native = to_native(rect);
    store(InflateRect(&native, dx, dy), native, rect);
}

void offset(Rectangle &rect, int dx, int dy)
{
    RECT native = to_native(rect);
    store(OffsetRect(&native, dx, dy), native, rect);
}

bool intersect(Rectangle &result, Rectangle const &a, Rectangle const &b)
{
    RECT const native_a = to_native(a);
    RECT const native_b = to_native(b);
    RECT native {};
    return store(IntersectRect(&native, &native_a, &native_b), native, result);
}

bool unite(Rectangle &result, Rectangle const &a, Rectangle const &b)
{
    RECT const native_a = to_native(a);
    RECT const native_b = to_native(b);
    RECT native {};
    return store(UnionRect(&native, &native_a, &native_b), native, result);
}

bool subtract(Rectangle &result, Rectangle const &a, Rectangle const &b)
{
    RECT const native_a = to_native(a);
    RECT const native_b = to_native(b);
    RECT native {};
    return store(SubtractRect(&native, &native_a, &native_b), native, result);
}

} // namespace kortools::platform
