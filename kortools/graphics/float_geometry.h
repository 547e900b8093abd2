// SPDX-License-Identifier: MIT
// CFPoint and CFSize: a position and an extent in real units: millimetres, inches, parts of a page.
// Plain values. Made whole, a component is v + 0.5 truncated toward zero whatever its sign: 2.5
// gives 3, but -2.5 gives -2 and -0.7 gives 0. (CFRect rounds otherwise, and so does NearestInt.)
// What an int cannot hold becomes its nearest limit, and a NaN 0.
//
//   CFSize const page = MMToInch(CFSize(210, 297)); // A4 in inches
//   CXSize const pixels = page * 96;
#pragma once

#include "kortools/graphics/point.h"
#include "kortools/graphics/rect.h"
#include "kortools/graphics/rounding.h"

#include <concepts>
#include <ostream>

class CFPoint {
public:
    float x = 0;
    float y = 0;

    constexpr CFPoint() = default;
    constexpr CFPoint(float left, float top)
        : x(left)
        , y(top)
    {
    }
    constexpr CFPoint(CXPoint const &point)
        : CFPoint(static_cast<float>(point.x), static_cast<float>(point.y))
    {
    }
    constexpr operator CXPoint() const
    {
        return { kortools::graphics::truncate(x + 0.5), kortools::graphics::truncate(y + 0.5) };
    }
    constexpr bool operator==(CFPoint const &) const = default;
};

// A size of real numbers.
class CFSize {
public:
    float cx = 0;
    float cy = 0;

    constexpr CFSize() = default;
    constexpr CFSize(float width, float height)
        : cx(width)
        , cy(height)
    {
    }
    constexpr CFSize(CXSize const &size)
        : CFSize(static_cast<float>(size.cx), static_cast<float>(size.cy))
    {
    }
    constexpr CFSize(CXRect const &rect)
        : CFSize(rect.Size())
    {
    }
    constexpr operator CXSize() const { return CXPoint(CFPoint(cx, cy)); }
    constexpr operator CFPoint() const { return { cx, cy }; }

    // With a size component by component, with a number on both.
    constexpr CFSize operator+(CFSize const &size) const { return { cx + size.cx, cy + size.cy }; }
    constexpr CFSize operator-(CFSize const &size) const { return { cx - size.cx, cy - size.cy }; }
    constexpr CFSize operator*(CFSize const &size) const { return { cx * size.cx, cy * size.cy }; }
    constexpr CFSize operator/(CFSize const &size) const { return { cx / size.cx, cy / size.cy }; }
    constexpr CFSize operator+(float value) const { return *this + CFSize(value, value); }
    constexpr CFSize operator-(float value) const { return *this - CFSize(value, value); }
    constexpr CFSize operator*(float value) const { return *this * CFSize(value, value); }
    constexpr CFSize operator/(float value) const { return *this / CFSize(value, value); }
    constexpr CFSize &operator*=(CFSize const &size) { return *this = *this * size; }
    constexpr CFSize &operator/=(CFSize const &size) { return *this = *this / size; }
    constexpr CFSize &operator*=(float value) { return *this = *this * value; }
    constexpr CFSize &operator/=(float value) { return *this = *this / value; }
    constexpr bool operator==(CFSize const &) const = default;
};

static_assert(sizeof(CFPoint) == 8 && sizeof(CFSize) == 8);

namespace kortools::graphics {

inline constexpr float mm_per_inch = 25.4F;

} // namespace kortools::graphics

constexpr float MMToInch(float mm)
{
    return mm / kortools::graphics::mm_per_inch;
}

// The same the other way round.
constexpr float InchToMM(float inches)
{
    return inches * kortools::graphics::mm_per_inch;
}

// Both sides.
constexpr CFSize MMToInch(CFSize const &mm)
{
    return mm / kortools::graphics::mm_per_inch;
}

// Both sides.
constexpr CFSize InchToMM(CFSize const &inches)
{
    return inches * kortools::graphics::mm_per_inch;
}

// How GoogleTest shows points and sizes.
template <std::same_as<CFPoint> T> void PrintTo(T const &point, std::ostream *stream)
{
    *stream << '(' << point.x << ", " << point.y << ')';
}

template <std::same_as<CFSize> T> void PrintTo(T const &size, std::ostream *stream)
{
    *stream << size.cx << " x " << size.cy;
}
