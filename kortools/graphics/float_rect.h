// SPDX-License-Identifier: MIT
// CFRect: a rectangle in real units, the x interval first: left, right, top, bottom, in memory as
// in every argument list. A plain value. Made whole, each coordinate is rounded half away from
// zero: 2.5 gives 3 and -2.5 gives -3; what an int cannot hold becomes its nearest limit, a NaN 0.
//
//   CFRect const printed = MMToInch(CFRect(10, 200, 10, 287));
//   CXRect const pixels = printed * 96;
#pragma once

#include "kortools/export.h"
#include "kortools/graphics/float_geometry.h"
#include "kortools/graphics/rect.h"

#include <concepts>
#include <ostream>

class KORTOOLS_API CFRect {
public:
    float left = 0;
    float right = 0;
    float top = 0;
    float bottom = 0;

    constexpr CFRect() = default;
    constexpr CFRect(float l, float r, float t, float b)
        : left(l)
        , right(r)
        , top(t)
        , bottom(b)
    {
    }
    CFRect(CXRect const &rect);
    operator CXRect() const;

    // A reversed rectangle has negative extents.
    constexpr void SetRect(float l, float r, float t, float b) { *this = CFRect(l, r, t, b); }
    constexpr float Width() const { return right - left; }
    constexpr float Height() const { return bottom - top; }

    void OffsetRect(float dx, float dy);  // moves it
    void InflateRect(float dx, float dy); // moves each side outwards
    void NormalizeRect();                 // swaps the ends of a reversed interval
    bool IsNormalized() const;
    bool IsNull() const; // all four are 0

    // True when the rectangle HAS an area, being wider and higher than 0. The name says the
    // opposite; callers rely on the sense.
    bool IsEmpty() const;

    // On each axis from the smaller minimum to the larger maximum, whatever the two are: an empty
    // rectangle counts like any other.
    void UnionRect(CFRect const &a, CFRect const &b);

    // The common part, which may be a line or a point. False when they do not meet on an axis; then
    // what was found before, x first, has been stored. Either may be this rectangle.
    bool IntersectRect(CFRect const &a, CFRect const &b);

    // All four by a number; the x interval by cx and the y interval by cy.
    CFRect operator*(float factor) const { return *this * CFSize(factor, factor); }
    CFRect operator/(float divisor) const { return *this / CFSize(divisor, divisor); }
    CFRect operator*(CFSize const &factors) const;
    CFRect operator/(CFSize const &divisors) const;
    CFRect &operator*=(float factor) { return *this = *this * factor; }
    CFRect &operator/=(float divisor) { return *this = *this / divisor; }
    CFRect &operator*=(CFSize const &factors) { return *this = *this * factors; }
    CFRect &operator/=(CFSize const &divisors) { return *this = *this / divisors; }
    constexpr bool operator==(CFRect const &) const = default;
};

static_assert(sizeof(CFRect) == 16);

// All four sides.
inline CFRect MMToInch(CFRect const &mm)
{
    return mm / kortools::graphics::mm_per_inch;
}

// All four sides.
inline CFRect InchToMM(CFRect const &inches)
{
    return inches * kortools::graphics::mm_per_inch;
}

// How GoogleTest shows rectangles.
template <std::same_as<CFRect> T> void PrintTo(T const &rect, std::ostream *stream)
{
    *stream << "x " << rect.left << " to " << rect.right << ", y " << rect.top << " to "
            << rect.bottom;
}
