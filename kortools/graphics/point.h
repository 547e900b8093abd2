// SPDX-License-Identifier: MIT
// CXPoint and CXSize: a position and an extent in whole units, mostly pixels. CFPoint and CFSize
// are for measurements in real units. Plain values in the layout of the window system's records,
// from and to which they convert freely; their arithmetic wraps around as the system's does.
//
// A point less a point is a size; every other sum keeps the type of its left side, except that a
// size with a point gives a point and anything with a rectangle the rectangle moved.
//
//   CXPoint const corner(10, 20);
//   CXSize const moved = CXPoint(15, 18) - corner;   // (5, -2)
//   CXRect const there = corner + CXRect(0, 0, 4, 4); // (10, 20, 14, 24)
#pragma once

#include "kortools/graphics/native_records.h"
#include "kortools/platform/wrap.h"

#include <bit>
#include <concepts>
#include <ostream>
#include <type_traits>

class CXRect;

// Reading through a pointer to the system's record is reading this one: the compiler must not
// take them for different objects.
class __attribute__((may_alias)) CXSize {
public:
    int cx = 0;
    int cy = 0;

    constexpr CXSize() = default;
    constexpr CXSize(int width, int height)
        : cx(width)
        , cy(height)
    {
    }
    constexpr CXSize(CXPoint const &point);
    template <kortools::graphics::SizeRecord S>
    constexpr CXSize(S const &size)
        : cx(size.cx)
        , cy(size.cy)
    {
    }
    template <kortools::graphics::PointRecord P>
    constexpr explicit CXSize(P const &point)
        : cx(point.x)
        , cy(point.y)
    {
    }

    constexpr void SetSize(int width, int height) { *this = CXSize(width, height); }

    constexpr CXSize &operator+=(CXSize const &size)
    {
        cx = kortools::platform::wrap_add(cx, size.cx);
        cy = kortools::platform::wrap_add(cy, size.cy);
        return *this;
    }
    constexpr CXSize &operator-=(CXSize const &size) { return *this += -size; }
    constexpr CXSize operator-() const
    {
        return { kortools::platform::wrap_subtract(0, cx),
            kortools::platform::wrap_subtract(0, cy) };
    }
    constexpr CXSize operator+(CXSize const &size) const { return CXSize(*this) += size; }
    constexpr CXSize operator-(CXSize const &size) const { return CXSize(*this) -= size; }
    constexpr CXPoint operator+(CXPoint const &point) const;
    constexpr CXPoint operator-(CXPoint const &point) const; // this less the point
    CXRect operator+(CXRect const &rect) const;              // the rectangle moved by the size
    CXRect operator-(CXRect const &rect) const;              // and moved the other way
    constexpr bool operator==(CXSize const &) const = default;

    template <kortools::graphics::SizeRecord S> constexpr operator S() const
    {
        return std::bit_cast<S>(*this);
    }
    template <kortools::graphics::SizeRecord S> operator S *()
    {
        return reinterpret_cast<S *>(this);
    }
    template <kortools::graphics::SizeRecord S> operator S const *() const
    {
        return reinterpret_cast<S const *>(this);
    }
};

class __attribute__((may_alias)) CXPoint {
public:
    int x = 0;
    int y = 0;

    constexpr CXPoint() = default;
    constexpr CXPoint(int left, int top)
        : x(left)
        , y(top)
    {
    }
    constexpr CXPoint(CXSize const &size)
        : x(size.cx)
        , y(size.cy)
    {
    }
    template <kortools::graphics::PointRecord P>
    constexpr CXPoint(P const &point)
        : x(point.x)
        , y(point.y)
    {
    }
    template <kortools::graphics::ShortPointRecord P>
    constexpr CXPoint(P const &point)
        : x(point.x)
        , y(point.y)
    {
    }
    template <kortools::graphics::SizeRecord S>
    constexpr explicit CXPoint(S const &size)
        : x(size.cx)
        , y(size.cy)
    {
    }

    constexpr void SetPoint(int left, int top) { *this = CXPoint(left, top); }
    // Moves the point.
    constexpr void Offset(int dx, int dy) { *this += CXSize(dx, dy); }
    constexpr void Offset(CXPoint const &by) { *this += by; }
    constexpr void Offset(CXSize const &by) { *this += by; }

    constexpr CXPoint &operator+=(CXSize const &size) { return *this = CXSize(*this) + size; }
    constexpr CXPoint &operator-=(CXSize const &size) { return *this = CXSize(*this) - size; }
    constexpr CXPoint &operator+=(CXPoint const &point) { return *this += CXSize(point); }
    constexpr CXPoint &operator-=(CXPoint const &point) { return *this -= CXSize(point); }
    constexpr CXPoint operator-() const { return -CXSize(*this); }
    constexpr CXPoint operator+(CXSize const &size) const { return CXPoint(*this) += size; }
    constexpr CXPoint operator-(CXSize const &size) const { return CXPoint(*this) -= size; }
    constexpr CXPoint operator+(CXPoint const &point) const { return CXPoint(*this) += point; }
    constexpr CXSize operator-(CXPoint const &point) const { return CXPoint(*this) -= point; }
    CXRect operator+(CXRect const &rect) const; // the rectangle moved by the point
    CXRect operator-(CXRect const &rect) const; // and moved the other way
    constexpr bool operator==(CXPoint const &) const = default;

    template <kortools::graphics::PointRecord P> constexpr operator P() const
    {
        return std::bit_cast<P>(*this);
    }
    template <kortools::graphics::PointRecord P> operator P *()
    {
        return reinterpret_cast<P *>(this);
    }
    template <kortools::graphics::PointRecord P> operator P const *() const
    {
        return reinterpret_cast<P const *>(this);
    }
};

// The names in the interface of the views.
using CPoint = CXPoint;
using CSize = CXSize;

// Each converts to the other; without this neither conversion would be the better one.
constexpr bool operator==(CXPoint const &point, CXSize const &size)
{
    return point == CXPoint(size);
}

constexpr CXSize::CXSize(CXPoint const &point)
    : cx(point.x)
    , cy(point.y)
{
}

constexpr CXPoint CXSize::operator+(CXPoint const &point) const
{
    return *this + CXSize(point);
}

constexpr CXPoint CXSize::operator-(CXPoint const &point) const
{
    return *this - CXSize(point);
}

static_assert(sizeof(CXPoint) == 8 && std::is_standard_layout_v<CXPoint>);
static_assert(sizeof(CXSize) == 8 && std::is_standard_layout_v<CXSize>);
static_assert(std::is_trivially_copyable_v<CXPoint> && std::is_trivially_copyable_v<CXSize>);

// How GoogleTest shows points and sizes.
template <std::same_as<CXPoint> T> void PrintTo(T const &point, std::ostream *stream)
{
    *stream << '(' << point.x << ", " << point.y << ')';
}

template <std::same_as<CXSize> T> void PrintTo(T const &size, std::ostream *stream)
{
    *stream << size.cx << " x " << size.cy;
}
