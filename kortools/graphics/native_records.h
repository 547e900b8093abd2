// SPDX-License-Identifier: MIT
// What counts as the window system's record of a point, a size or a rectangle: any structure of
// signed 32-bit fields with these names in this order and nothing else. The geometry classes have
// the same layout and convert from and to such records without naming the system's.
#pragma once

#include <concepts>
#include <cstddef>
#include <type_traits>

class CXPoint;
class CXSize;
class CXRect;

namespace kortools::graphics {

template <class T, std::size_t size>
concept SignedField = std::signed_integral<T> && sizeof(T) == size;

template <class T>
concept OwnGeometry
    = std::same_as<std::remove_cv_t<T>, CXPoint> || std::same_as<std::remove_cv_t<T>,
        CXSize> || std::same_as<std::remove_cv_t<T>, CXRect>;

template <class T, std::size_t size>
concept PlainRecord
    = !OwnGeometry<T> && std::is_class_v<T> && std::is_standard_layout_v<T> && sizeof(T) == size;

template <class T>
concept PointRecord = PlainRecord<T, 8> && requires
{
    requires SignedField<decltype(T::x), 4> && SignedField<decltype(T::y), 4>;
    requires offsetof(T, x)
    == 0;
};

// The point of two 16-bit fields in which mouse messages pack their position.
template <class T>
concept ShortPointRecord = PlainRecord<T, 4> && requires
{
    requires SignedField<decltype(T::x), 2> && SignedField<decltype(T::y), 2>;
    requires offsetof(T, x)
    == 0;
};

template <class T>
concept SizeRecord = PlainRecord<T, 8> && requires
{
    requires SignedField<decltype(T::cx), 4> && SignedField<decltype(T::cy), 4>;
    requires offsetof(T, cx)
    == 0;
};

template <class T>
concept RectRecord = PlainRecord<T, 16> && requires
{
    requires SignedField<decltype(T::left), 4> && SignedField<decltype(T::top), 4>;
    requires SignedField<decltype(T::right), 4> && SignedField<decltype(T::bottom), 4>;
    requires offsetof(T, left)
    == 0 && offsetof(T, top) == 4 && offsetof(T, right) == 8;
};

} // namespace kortools::graphics
