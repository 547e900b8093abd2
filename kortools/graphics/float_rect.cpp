// SPDX-License-Identifier: MIT
#include "kortools/graphics/float_rect.h"

#include "kortools/graphics/rounding.h"

#include <algorithm>
#include <utility>

namespace {

int round_away_from_zero(float value)
{
    return kortools::graphics::truncate(value > 0 ? value + 0.5 : value - 0.5);
}

bool lies_in(float value, float minimum, float maximum)
{
    return value >= minimum && maximum >= value;
}

// The end of `a` when it lies in `b`, else that of `b` when it lies in `a`.
bool intersect_end(float &result, float a, float b, std::pair<float, float> const &interval_a,
    std::pair<float, float> const &interval_b)
{
    if (lies_in(a, interval_b.first, interval_b.second))
        result = a;
    else if (lies_in(b, interval_a.first, interval_a.second))
        result = b;
    else
        return false;
    return true;
}

bool intersect_axis(float &minimum, float &maximum, std::pair<float, float> const &a,
    std::pair<float, float> const &b)
{
    return intersect_end(minimum, a.first, b.first, a, b)
        && intersect_end(maximum, a.second, b.second, a, b);
}

} // namespace

CFRect::CFRect(CXRect const &rect)
    : CFRect(static_cast<float>(rect.left), static_cast<float>(rect.right),
        static_cast<float>(rect.top), static_cast<float>(rect.bottom))
{
}

CFRect::operator CXRect() const
{
    return { round_away_from_zero(left), round_away_from_zero(top), round_away_from_zero(right),
        round_away_from_zero(bottom) };
}

void CFRect::OffsetRect(float dx, float dy)
{
    *this = { left + dx, right + dx, top + dy, bottom + dy };
}

void CFRect::InflateRect(float dx, float dy)
{
    *this = { left - dx, right + dx, top - dy, bottom + dy };
}

void CFRect::NormalizeRect()
{
    if (left > right)
        std::swap(left, right);
    if (top > bottom)
        std::swap(top, bottom);
}

bool CFRect::IsNormalized() const
{
    return right >= left && bottom >= top;
}

bool CFRect::IsNull() const
{
    return *this == CFRect();
}

bool CFRect::IsEmpty() const
{
    return Width() > 0 && Height() > 0;
}

void CFRect::UnionRect(CFRect const &a, CFRect const &b)
{
    *this = { std::min(a.left, b.left), std::max(a.right, b.right), std::min(a.top, b.top),
        std::max(a.bottom, b.bottom) };
}

bool CFRect::IntersectRect(CFRect const &a, CFRect const &b)
{
    CFRect const first = a; // either may be this one
    CFRect const second = b;
    return intersect_axis(left, right, { first.left, first.right }, { second.left, second.right })
        && intersect_axis(top, bottom, { first.top, first.bottom }, { second.top, second.bottom });
}

CFRect CFRect::operator*(CFSize const &factors) const
{
    return { left * factors.cx, right * factors.cx, top * factors.cy, bottom * factors.cy };
}

CFRect CFRect::operator/(CFSize const &divisors) const
{
    return { left / divisors.cx, right / divisors.cx, top / divisors.cy, bottom / divisors.cy };
}
