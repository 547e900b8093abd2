// SPDX-License-Identifier: MIT
#include "kortools/platform/rectangles.h"

namespace kortools::platform {

bool is_empty(Rectangle const &rect)
{
    return portable::is_empty(rect);
}

bool is_equal(Rectangle const &a, Rectangle const &b)
{
    return portable::is_equal(a, b);
}

bool contains(Rectangle const &rect, int x, int y)
{
    return portable::contains(rect, x, y);
}

void inflate(Rectangle &rect, int dx, int dy)
{
    portable::inflate(rect, dx, dy);
}

void offset(Rectangle &rect, int dx, int dy)
{
    portable::offset(rect, dx, dy);
}

bool intersect(Rectangle &result, Rectangle const &a, Rectangle const &b)
{
    return portable::intersect(result, a, b);
}

bool unite(Rectangle &result, Rectangle const &a, Rectangle const &b)
{
    return portable::unite(result, a, b);
}

bool subtract(Rectangle &result, Rectangle const &a, Rectangle const &b)
{
    return portable::subtract(result, a, b);
}

} // namespace kortools::platform
