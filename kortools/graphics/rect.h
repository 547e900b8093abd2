// SPDX-License-Identifier: MIT
// CXRect: a rectangle in whole units, mostly pixels; right and bottom lie outside it. A plain value
// in the layout of the window system's record, from and to which it converts freely. What the
// system offers for rectangles is done by the system, and by the same rules where there is none:
// coordinates wrap around, and a rectangle that is not wider and higher than 0 is empty.
//
//   CXRect rect(CXPoint(10, 10), CXSize(100, 50));
//   rect.DeflateRect(1, 1);
//   CXRect const visible = rect & client; // all zero when they do not meet
//
// Any rectangle argument may be the object itself.
#pragma once

#include "kortools/export.h"
#include "kortools/graphics/native_records.h"
#include "kortools/graphics/point.h"
#include "kortools/platform/rectangles.h"
#include "kortools/platform/wrap.h"

#include <bit>
#include <concepts>
#include <ostream>
#include <type_traits>

class KORTOOLS_API __attribute__((may_alias)) CXRect {
public:
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    constexpr CXRect() = default;
    constexpr CXRect(int l, int t, int r, int b)
        : left(l)
        , top(t)
        , right(r)
        , bottom(b)
    {
    }
    constexpr CXRect(CXPoint const &topLeft, CXPoint const &bottomRight)
        : CXRect(topLeft.x, topLeft.y, bottomRight.x, bottomRight.y)
    {
    }
    constexpr CXRect(CXPoint const &topLeft, CXSize const &size)
        : CXRect(topLeft, topLeft + size)
    {
    }
    template <kortools::graphics::RectRecord R>
    constexpr CXRect(R const &rect)
        : CXRect(rect.left, rect.top, rect.right, rect.bottom)
    {
    }
    template <kortools::graphics::RectRecord R>
    constexpr CXRect(R const *rect)
        : CXRect(*rect)
    {
    }

    // --- Queries

    constexpr int Width() const { return kortools::platform::wrap_subtract(right, left); }
    constexpr int Height() const { return kortools::platform::wrap_subtract(bottom, top); }
    constexpr CXSize Size() const { return { Width(), Height() }; }
    constexpr CXPoint TopLeft() const { return { left, top }; }
    constexpr CXPoint BottomRight() const { return { right, bottom }; }
    constexpr CXPoint CenterPoint() const // halves truncate toward zero: of -3 and 0, -1
    {
        return { kortools::platform::wrap_add(left, right) / 2,
            kortools::platform::wrap_add(top, bottom) / 2 };
    }
    bool IsRectEmpty() const // not wider and higher than 0
    {
        return kortools::platform::is_empty(GetRecord());
    }
    constexpr bool IsRectNull() const { return *this == CXRect(); } // all four are 0
    bool PtInRect(CXPoint const &point) const // never inside one that is not normalised
    {
        return kortools::platform::contains(GetRecord(), point.x, point.y);
    }
    bool EqualRect(CXRect const &rect) const
    {
        return kortools::platform::is_equal(GetRecord(), rect.GetRecord());
    }

    // --- Changes

    constexpr void SetRect(int l, int t, int r, int b) { *this = CXRect(l, t, r, b); }
    constexpr void SetRect(CXPoint const &topLeft, CXPoint const &bottomRight)
    {
        *this = CXRect(topLeft, bottomRight);
    }
    constexpr void SetRectEmpty() { *this = CXRect(); }
    constexpr void CopyRect(CXRect const &rect) { *this = rect; }

    // Move the sides outwards or inwards, both of an axis by the same amount or each by its own.
    void InflateRect(int dx, int dy)
    {
        kortools::platform::Rectangle rect = GetRecord();
        kortools::platform::inflate(rect, dx, dy);
        *this = rect;
    }
    void InflateRect(CXSize const &by) { InflateRect(by.cx, by.cy); }
    void InflateRect(CXRect const &by) { InflateRect(by.left, by.top, by.right, by.bottom); }
    void InflateRect(int l, int t, int r, int b);
    void DeflateRect(int dx, int dy) { InflateRect(-CXSize(dx, dy)); }
    void DeflateRect(CXSize const &by) { DeflateRect(by.cx, by.cy); }
    void DeflateRect(CXRect const &by) { DeflateRect(by.left, by.top, by.right, by.bottom); }
    void DeflateRect(int l, int t, int r, int b);

    void OffsetRect(int dx, int dy)
    {
        kortools::platform::Rectangle rect = GetRecord();
        kortools::platform::offset(rect, dx, dy);
        *this = rect;
    }
    void OffsetRect(CXPoint const &by) { OffsetRect(by.x, by.y); }
    void OffsetRect(CXSize const &by) { OffsetRect(by.cx, by.cy); }
    constexpr void MoveToX(int x) // keep the size
    {
        right = kortools::platform::wrap_add(Width(), x);
        left = x;
    }
    constexpr void MoveToY(int y)
    {
        bottom = kortools::platform::wrap_add(Height(), y);
        top = y;
    }
    constexpr void MoveToXY(int x, int y)
    {
        MoveToX(x);
        MoveToY(y);
    }
    constexpr void MoveToXY(CXPoint const &point) { MoveToXY(point.x, point.y); }
    constexpr void NormalizeRect() // swaps left and right, top and bottom, where reversed
    {
        *this = { left < right ? left : right, top < bottom ? top : bottom,
            left < right ? right : left, top < bottom ? bottom : top };
    }

    // The common part; the smallest rectangle around both, of which an empty one counts for
    // nothing; `a` without `b` where `b` covers one whole side of it, else `a`. False, with all
    // four coordinates 0, when the result has no area.
    bool IntersectRect(CXRect const &a, CXRect const &b)
    {
        return Combine(a, b, kortools::platform::intersect);
    }
    bool UnionRect(CXRect const &a, CXRect const &b)
    {
        return Combine(a, b, kortools::platform::unite);
    }
    bool SubtractRect(CXRect const &a, CXRect const &b)
    {
        return Combine(a, b, kortools::platform::subtract);
    }

    // A copy with each coordinate x num / den: the product wraps around, the quotient truncates
    // toward zero. Throws CXInvalidArgException for den 0.
    //
    //   CXRect(1, 1, 3, 3).MulDiv(3, 2)  =>  (1, 1, 4, 4)
    CXRect MulDiv(int num, int den) const;

    // --- Operators: move by a point or size, inflate or deflate by a rectangle's four amounts,
    // intersect, unite

    CXRect &operator+=(CXPoint const &by) { return OffsetRect(by), *this; }
    CXRect &operator+=(CXSize const &by) { return OffsetRect(by), *this; }
    CXRect &operator+=(CXRect const &by) { return InflateRect(by), *this; }
    CXRect &operator-=(CXPoint const &by) { return OffsetRect(-by), *this; }
    CXRect &operator-=(CXSize const &by) { return OffsetRect(-by), *this; }
    CXRect &operator-=(CXRect const &by) { return DeflateRect(by), *this; }
    CXRect &operator&=(CXRect const &rect) { return IntersectRect(*this, rect), *this; }
    CXRect &operator|=(CXRect const &rect) { return UnionRect(*this, rect), *this; }
    CXRect operator+(CXPoint const &by) const { return CXRect(*this) += by; }
    CXRect operator+(CXSize const &by) const { return CXRect(*this) += by; }
    CXRect operator+(CXRect const &by) const { return CXRect(*this) += by; }
    CXRect operator-(CXPoint const &by) const { return CXRect(*this) -= by; }
    CXRect operator-(CXSize const &by) const { return CXRect(*this) -= by; }
    CXRect operator-(CXRect const &by) const { return CXRect(*this) -= by; }
    CXRect operator&(CXRect const &rect) const { return CXRect(*this) &= rect; }
    CXRect operator|(CXRect const &rect) const { return CXRect(*this) |= rect; }
    constexpr bool operator==(CXRect const &) const = default;

    template <kortools::graphics::RectRecord R> constexpr operator R() const
    {
        return std::bit_cast<R>(*this);
    }
    template <kortools::graphics::RectRecord R> operator R *()
    {
        return reinterpret_cast<R *>(this);
    }
    template <kortools::graphics::RectRecord R> operator R const *() const
    {
        return reinterpret_cast<R const *>(this);
    }

private:
    constexpr kortools::platform::Rectangle GetRecord() const
    {
        return { left, top, right, bottom };
    }
    template <class Rule> bool Combine(CXRect const &a, CXRect const &b, Rule const &rule)
    {
        kortools::platform::Rectangle result {};
        bool const has_area = rule(result, a.GetRecord(), b.GetRecord());
        *this = result;
        return has_area;
    }
};

using CRect = CXRect; // the name in the interface of the views

static_assert(sizeof(CXRect) == 16 && std::is_standard_layout_v<CXRect>);
static_assert(std::is_trivially_copyable_v<CXRect>);

inline CXRect CXPoint::operator+(CXRect const &rect) const
{
    return rect + *this;
}

inline CXRect CXPoint::operator-(CXRect const &rect) const
{
    return rect - *this;
}

inline CXRect CXSize::operator+(CXRect const &rect) const
{
    return rect + *this;
}

inline CXRect CXSize::operator-(CXRect const &rect) const
{
    return rect - *this;
}

// How GoogleTest shows rectangles.
template <std::same_as<CXRect> T> void PrintTo(T const &rect, std::ostream *stream)
{
    *stream << '(' << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom
            << ')';
}
