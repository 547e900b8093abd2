// SPDX-License-Identifier: MIT
// The block of an array while it is being made, and how elements get from one block to the next.
#pragma once

#include "kortools/core/relocate.h"
#include "kortools/core/throw.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace kortools::core {

// Tells the compiler what it cannot know, such as that a size is not negative: it would warn of
// accesses before the block. The sanitizers check it.
inline void assume(bool condition)
{
    if (!condition)
        __builtin_unreachable();
}

// Can elements change their place without the risk of an exception?
template <class T>
inline constexpr bool relocates_safely
    = is_trivially_relocatable<T> || std::is_nothrow_move_constructible_v<T>;

// Can they also shift within a block?
template <class T>
inline constexpr bool shifts_safely
    = is_trivially_relocatable<
          T> || (std::is_nothrow_move_constructible_v<T> && std::is_nothrow_move_assignable_v<T>);

// (An array of pointers holds pointers: their size is meant.)
template <class T> inline constexpr std::size_t size_of_element = sizeof(T); // NOLINT

template <class T> inline constexpr bool is_over_aligned = alignof(T) > alignof(std::max_align_t);

// Can a block be reallocated, and slots go out of use and into it again, without an exception?
template <class T>
inline constexpr bool reallocates_safely
    = is_trivially_relocatable<
          T> && !is_over_aligned<T> && (zero_is_unused<T> || std::is_nothrow_default_constructible_v<T>);

// What a block of `size` bytes really takes. Coarse, so that an array that grows by a fixed number
// of elements moves only as often as one that grows by an eighth.
constexpr std::size_t block_size(std::size_t size)
{
    std::size_t const step = std::max<std::size_t>(std::bit_floor(size) / 8, 32);
    return (size + step - 1) / step * step;
}

// Makes objects that are not in use yet. Those of plain types are undefined.
template <class T> void make_unused(T *first, int count)
{
    assume(count >= 0);
    if constexpr (zero_is_unused<T>) {
        std::memset(
            static_cast<void *>(first), 0, static_cast<std::size_t>(count) * size_of_element<T>);
    } else if constexpr (!std::is_trivially_default_constructible_v<T>) {
        std::uninitialized_value_construct_n(first, count);
    }
}

// Makes the block `more` elements larger, unused ones; those of a first block are zero if they are
// plain. Null when memory is exhausted, and the old block is then unchanged.
template <class T> T *try_extend_block(T *block, int capacity, int more) noexcept
{
    static_assert(reallocates_safely<T>);
    auto const bytes = [](int count) {
        return block_size(static_cast<std::size_t>(count) * size_of_element<T>);
    };
    std::size_t const size = bytes(capacity + more);
    bool const is_first = !block;
    if (is_first || size != bytes(capacity))
        block = static_cast<T *>(std::realloc(static_cast<void *>(block), size));
    if (!block)
        return nullptr;
    if constexpr (std::is_trivially_default_constructible_v<T>) {
        if (is_first)
            std::memset(static_cast<void *>(block), 0, size);
    }
    make_unused(block + capacity, more);
    return block;
}

// An object outside the block, in the making: to be assigned to, and then to take an unused slot.
template <class T> class LooseElement {
public:
    LooseElement() { make_unused(get(), 1); }
    LooseElement(LooseElement const &) = delete;
    LooseElement &operator=(LooseElement const &) = delete;
    ~LooseElement()
    {
        if (!m_relocated)
            std::destroy_at(get());
    }
    T *get() { return reinterpret_cast<T *>(m_bytes); }
    void relocate_to(T *slot) noexcept
    {
        std::destroy_at(slot);
        std::memcpy(static_cast<void *>(slot), m_bytes, size_of_element<T>);
        m_relocated = true;
    }

private:
    alignas(T) unsigned char m_bytes[size_of_element<T>];
    bool m_relocated = false;
};

// Moves objects to raw memory elsewhere, which leaves raw memory behind.
template <class T> void relocate(T *source, int count, T *target) noexcept
{
    assume(count >= 0);
    if (count == 0)
        return; // there may be no block
    if constexpr (is_trivially_relocatable<T>) {
        std::memcpy(static_cast<void *>(target), static_cast<void const *>(source),
            static_cast<std::size_t>(count) * size_of_element<T>);
    } else {
        std::uninitialized_move_n(source, count, target);
        std::destroy_n(source, count);
    }
}

// Moves the object at `last` to `first`, and [first, last) up by one.
template <class T> void rotate_up(T *first, T *last) noexcept
{
    if constexpr (is_trivially_relocatable<T>) {
        alignas(T) unsigned char bytes[size_of_element<T>];
        std::memcpy(bytes, static_cast<void const *>(last), size_of_element<T>);
        std::memmove(static_cast<void *>(first + 1), static_cast<void const *>(first),
            static_cast<std::size_t>(last - first) * size_of_element<T>);
        std::memcpy(static_cast<void *>(first), bytes, size_of_element<T>);
    } else {
        T object = std::move(*last);
        std::move_backward(first, last, last + 1);
        *first = std::move(object);
    }
}

// Moves the object at `first` to `last - 1`, and those behind it down by one.
template <class T> void rotate_down(T *first, T *last) noexcept
{
    static_assert(is_trivially_relocatable<T>);
    alignas(T) unsigned char bytes[size_of_element<T>];
    std::memcpy(bytes, static_cast<void const *>(first), size_of_element<T>);
    std::memmove(static_cast<void *>(first), static_cast<void const *>(first + 1),
        static_cast<std::size_t>(last - first - 1) * size_of_element<T>);
    std::memcpy(static_cast<void *>(last - 1), bytes, size_of_element<T>);
}

// Raw memory in which ranges of objects are made; destroys them unless the block is released.
template <class T> class ArrayBlock {
public:
    explicit ArrayBlock(int capacity) // throws CXMemoryException
        : m_data(allocate(capacity))
    {
    }
    ArrayBlock(ArrayBlock const &) = delete;
    ArrayBlock &operator=(ArrayBlock const &) = delete;
    ~ArrayBlock()
    {
        for (int i = 0; i < m_range_count; ++i)
            std::destroy_n(m_ranges[i].data, m_ranges[i].count);
        free(m_data);
    }

    T *get() const { return m_data; }
    T *release()
    {
        m_range_count = 0;
        return std::exchange(m_data, nullptr);
    }

    // Objects T() at [first, last).
    void construct(int first, int last)
    {
        assume(first >= 0 && last >= first);
        if (first == last)
            return;
        std::uninitialized_value_construct_n(m_data + first, last - first);
        m_ranges[m_range_count++] = { m_data + first, last - first };
    }

    // Slots that are not in use yet. Those of plain types are undefined unless `zeroed`.
    void construct_unused(int first, int last, bool zeroed)
    {
        if constexpr (zero_is_unused<T>) {
            make_unused(m_data + first, last - first);
            m_ranges[m_range_count++] = { m_data + first, last - first };
        } else if (zeroed || !std::is_trivially_default_constructible_v<T>) {
            construct(first, last);
        }
    }

    void construct_copies(int first, int count, T const *source)
    {
        assume(first >= 0 && count >= 0);
        if (count == 0)
            return;
        std::uninitialized_copy_n(source, count, m_data + first);
        m_ranges[m_range_count++] = { m_data + first, count };
    }

    // Copies; objects that cannot be copied are moved.
    void take(int first, int count, T *source)
    {
        if constexpr (std::is_copy_constructible_v<T>) {
            construct_copies(first, count, source);
        } else if (count > 0) {
            std::uninitialized_move_n(source, count, m_data + first);
            m_ranges[m_range_count++] = { m_data + first, count };
        }
    }

    static void free(T *block) noexcept
    {
        if constexpr (is_over_aligned<T>)
            ::operator delete[](block, std::align_val_t(alignof(T)));
        else
            std::free(static_cast<void *>(block));
    }

private:
    struct Range {
        T *data;
        int count;
    };

    static_assert(
        size_of_element<T> <= 0xFFFFFFFF, "the size in bytes of INT_MAX elements has 64 bits");

    static T *allocate(int capacity)
    {
        auto const size = block_size(static_cast<std::size_t>(capacity) * size_of_element<T>);
        void *block = nullptr;
        if constexpr (is_over_aligned<T>)
            block = ::operator new[](size, std::align_val_t(alignof(T)), std::nothrow);
        else
            block = std::malloc(size);
        if (!block)
            throw_out_of_memory();
        return static_cast<T *>(block);
    }

    T *m_data;
    Range m_ranges[6]; // unused slots at both ends, elements T() and new, old ones around them
    int m_range_count = 0;
};

} // namespace kortools::core
