// SPDX-License-Identifier: MIT
#include "kortools/graphics/rect.h"

#include "kortools/core/throw.h"
#include "kortools/platform/rectangles.h"

namespace platform = kortools::platform;
using platform::Rectangle;

namespace {

Rectangle to_record(CXRect const &rect)
{
    return rect; // the same fields under the seam's name
}

} // namespace

bool CXRect::IsRectEmpty() const
{
    return platform::is_empty(to_record(*this));
}

bool CXRect::PtInRect(CXPoint const &point) const
{
    return platform::contains(to_record(*this), point.x, point.y);
}

bool CXRect::EqualRect(CXRect const &rect) const
{
    return platform::is_equal(to_record(*this), to_record(rect));
}

void CXRect::InflateRect(int dx, int dy)
{
    Rectangle rect = to_record(*this);
    platform::inflate(rect, dx, dy);
    *this = rect;
}

void CXRect::InflateRect(int l, int t, int r, int b)
{
    *this = { platform::wrap_subtract(left, l), platform::wrap_subtract(top, t),
        platform::wrap_add(right, r), platform::wrap_add(bottom, b) };
}

void CXRect::DeflateRect(int dx, int dy)
{
    InflateRect(-CXSize(dx, dy));
}

void CXRect::DeflateRect(int l, int t, int r, int b)
{
    *this = { platform::wrap_add(left, l), platform::wrap_add(top, t),
        platform::wrap_subtract(right, r), platform::wrap_subtract(bottom, b) };
}

void CXRect::OffsetRect(int dx, int dy)
{
    Rectangle rect = to_record(*this);
    platform::offset(rect, dx, dy);
    *this = rect;
}

bool CXRect::IntersectRect(CXRect const &a, CXRect const &b)
{
    Rectangle result;
    bool const has_area = platform::intersect(result, to_record(a), to_record(b));
    *this = result;
    return has_area;
}

bool CXRect::UnionRect(CXRect const &a, CXRect const &b)
{
    Rectangle result;
    bool const has_area = platform::unite(result, to_record(a), to_record(b));
    *this = result;
    return has_area;
}

bool CXRect::SubtractRect(CXRect const &a, CXRect const &b)
{
    Rectangle result;
    bool const has_area = platform::subtract(result, to_record(a), to_record(b));
    *this = result;
    return has_area;
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
