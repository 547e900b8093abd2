// SPDX-License-Identifier: MIT
// The members of CXArray; included by array.h only.
#pragma once

#include "kortools/core/array.h"

template <class T, class ARG_T> void CXArray<T, ARG_T>::reset(T *first, T *last)
{
    if (first == last)
        return;
    if constexpr (std::is_copy_assignable_v<T>) {
        std::fill(first, last, T());
    } else {
        for (; first != last; ++first)
            *first = T();
    }
}

// The capacity after growing for `newSize` elements.
template <class T, class ARG_T>
inline int CXArray<T, ARG_T>::grown_capacity(long long newSize, int growBy) const
{
    long long increment = growBy;
    if (m_data && growBy == grow_double)
        increment = m_capacity;
    else if (m_data && growBy == grow_auto)
        increment = std::clamp(m_size / 8, 4, 1024);
    long long const capacity = std::max(m_capacity + increment, newSize);
    if (capacity > std::numeric_limits<int>::max())
        kortools::core::throw_invalid_argument();
    return static_cast<int>(capacity);
}

// Room in front for a block of this capacity: 2^result elements, about a quarter; none if 0.
template <class T, class ARG_T> int CXArray<T, ARG_T>::wanted_reserve_bits(int capacity)
{
    if (capacity > std::numeric_limits<int>::max() / 2)
        return 0;
    auto const quarter = static_cast<unsigned int>(std::clamp(capacity / 4, 32, 0x8000));
    return std::bit_width(quarter) - 1;
}

// Is room in front worth while for what happens at `index`?
template <class T, class ARG_T> bool CXArray<T, ARG_T>::is_near_front(int index) const
{
    return has_gap && m_size >= 16 && index <= m_size / 8;
}

template <class T, class ARG_T> void CXArray<T, ARG_T>::destroy_unused() noexcept
{
    std::destroy_n(block(), front_gap());
    std::destroy_n(m_data + m_size, slot_count() - front_gap() - m_size);
}

// Destroys all elements, in use or not.
template <class T, class ARG_T> void CXArray<T, ARG_T>::release_block() noexcept
{
    std::destroy_n(block(), slot_count());
    Block::free(block());
    m_data = nullptr;
    m_capacity = 0;
    m_reserve_bits = 0;
    m_gap = 0;
}

// Moves to a new block with `count` elements more at `index`, which may lie past the end. fill()
// is given the first of them and is called while the old block is whole, since the new values may
// lie in it. The size stays as it is, for the caller to set.
template <class T, class ARG_T>
template <class Fill>
void CXArray<T, ARG_T>::rebuild(int capacity, int index, int count, Fill fill)
{
    kortools::core::assume(index >= 0 && count >= 0 && m_size >= 0 && m_size <= m_capacity);
    int const kept = std::min(index, m_size);
    int const tail = m_size - kept;
    int const reserve_bits = is_near_front(index) ? wanted_reserve_bits(capacity) : 0;
    int const gap = (1 << reserve_bits) & ~1;
    Block block(gap + capacity);
    block.construct_unused(0, gap, !m_data);
    block.construct(gap + kept, gap + index);
    block.construct_unused(gap + index, gap + index + count, false);
    T *const data = block.get() + gap;
    fill(data + index);
    block.construct_unused(gap + index + count + tail, gap + capacity, !m_data);
    if constexpr (kortools::core::relocates_safely<T>) {
        kortools::core::relocate(m_data, kept, data);
        kortools::core::relocate(m_data + kept, tail, data + index + count);
        destroy_unused();
        Block::free(this->block());
    } else {
        block.take(gap, kept, m_data);
        block.take(gap + index + count, tail, m_data + kept);
        release_block();
    }
    m_data = block.release() + gap;
    m_capacity = capacity;
    m_reserve_bits = static_cast<unsigned char>(reserve_bits);
    m_gap = static_cast<unsigned short>(gap);
}

// Appends to a full block without a reserve.
template <class T, class ARG_T>
template <class Value>
void CXArray<T, ARG_T>::extend(Value &&value, int growBy)
{
    kortools::core::LooseElement<T> element; // now: the value may lie in the block
    *element.get() = std::forward<Value>(value);
    int const capacity = grown_capacity(m_size + 1LL, growBy);
    T *const data = kortools::core::try_extend_block(m_data, m_capacity, capacity - m_capacity);
    if (!data)
        kortools::core::throw_out_of_memory();
    m_data = data;
    m_capacity = capacity;
    element.relocate_to(m_data + m_size);
    ++m_size;
    m_growBy = growBy;
}

// Makes `count` new elements at `index`, whose values fill() assigns, and stores the rule. The new
// values are made before any old element moves, so a failure changes nothing.
template <class T, class ARG_T>
template <class Fill>
void CXArray<T, ARG_T>::open_gap(int index, int count, int growBy, Fill fill)
{
    long long const new_size = static_cast<long long>(std::max(index, m_size)) + count;
    if (new_size > m_capacity) {
        rebuild(grown_capacity(new_size, growBy), index, count, fill);
    } else if (index < m_size) {
        make_gap(index, count, fill);
    } else {
        reset(m_data + m_size, m_data + index);
        fill(m_data + index);
    }
    m_size = static_cast<int>(new_size);
    m_growBy = growBy;
}

// Makes new elements among those there are, within the capacity. They come from the unused slots
// in front if that is nearer, or if many are likely to follow there.
template <class T, class ARG_T>
template <class Fill>
void CXArray<T, ARG_T>::make_gap(int index, int count, Fill fill)
{
    if (front_gap() >= count && index < m_size - index) {
        fill(m_data - count);
        shift_in_front(index, count);
    } else if (!kortools::core::shifts_safely<T> || is_near_front(index)) {
        rebuild(m_capacity, index, count, fill);
    } else {
        fill(m_data + m_size);
        shift_in(index, count);
    }
}

// Moves the `count` elements behind the last one in use to `index`.
template <class T, class ARG_T> void CXArray<T, ARG_T>::shift_in(int index, int count) noexcept
{
    if constexpr (kortools::core::shifts_safely<T>) {
        if (count == 1)
            kortools::core::rotate_up(m_data + index, m_data + m_size);
        else
            std::rotate(m_data + index, m_data + m_size, m_data + m_size + count);
    }
}

// Moves the `count` elements before the first one in use to `index`.
template <class T, class ARG_T>
void CXArray<T, ARG_T>::shift_in_front(int index, int count) noexcept
{
    if constexpr (has_gap) {
        m_data -= count;
        m_gap = static_cast<unsigned short>(m_gap - count);
        if (count == 1)
            kortools::core::rotate_down(m_data, m_data + index + 1);
        else
            std::rotate(m_data, m_data + count, m_data + count + index);
    }
}

template <class T, class ARG_T>
template <class Value>
int CXArray<T, ARG_T>::append(Value &&value, int growBy)
{
    int const index = m_size; // not read again: an int element might be m_size, for all one knows
    if (index < m_capacity && growBy == keep_rule) [[likely]] {
        m_data[static_cast<unsigned int>(index)] = std::forward<Value>(value);
        m_size = index + 1;
    } else {
        store(index, std::forward<Value>(value), growBy);
    }
    return index;
}

template <class T, class ARG_T>
template <class Value>
void CXArray<T, ARG_T>::store(int index, Value &&value, int growBy)
{
    if (index < 0)
        kortools::core::throw_invalid_argument();
    if (index < m_size) {
        m_data[index] = std::forward<Value>(value);
        return;
    }
    int const rule = growBy == keep_rule ? m_growBy : growBy;
    if constexpr (has_gap) {
        if (index == m_size && index == m_capacity && m_reserve_bits == 0) {
            extend(std::forward<Value>(value), rule);
            return;
        }
    }
    open_gap(index, 1, rule, [&](T *target) { *target = std::forward<Value>(value); });
}

template <class T, class ARG_T>
CXArray<T, ARG_T>::CXArray(CXArray const &other)
    : m_growBy(other.m_growBy)
{
    Copy(other);
}

template <class T, class ARG_T> CXArray<T, ARG_T>::CXArray(CXArray &&other) noexcept
{
    *this = std::move(other);
}

template <class T, class ARG_T> auto CXArray<T, ARG_T>::operator=(CXArray const &other) -> CXArray &
{
    if (this != &other)
        Copy(other);
    return *this;
}

template <class T, class ARG_T>
auto CXArray<T, ARG_T>::operator=(CXArray &&other) noexcept -> CXArray &
{
    if (this == &other)
        return *this;
    release_block();
    m_data = std::exchange(other.m_data, nullptr);
    m_capacity = std::exchange(other.m_capacity, 0);
    m_size = std::exchange(other.m_size, 0);
    m_reserve_bits = std::exchange(other.m_reserve_bits, 0);
    m_gap = std::exchange(other.m_gap, 0);
    m_growBy = other.m_growBy;
    return *this;
}

template <class T, class ARG_T> CXArray<T, ARG_T>::~CXArray()
{
    release_block();
}

template <class T, class ARG_T> void CXArray<T, ARG_T>::SetSize(int newSize, int growBy)
{
    if (newSize < 0)
        kortools::core::throw_invalid_argument();
    if (newSize > m_size) {
        open_gap(newSize, 0, growBy == keep_rule ? m_growBy : growBy, [](T *) {});
        return;
    }
    if (newSize == 0 && growBy == 0)
        release_block();
    m_size = newSize;
    if (growBy != keep_rule)
        m_growBy = growBy;
}

template <class T, class ARG_T> void CXArray<T, ARG_T>::FreeExtra()
{
    if (m_size == 0)
        release_block();
    else if (m_size < slot_count())
        rebuild(m_size, m_size, 0, [](T *) {});
}

template <class T, class ARG_T>
void CXArray<T, ARG_T>::SetAtGrow(int index, ARG_T element, int growBy)
{
    store(index, static_cast<ARG_T &&>(element), growBy);
}

template <class T, class ARG_T> void CXArray<T, ARG_T>::insert(int index, ARG_T element, int count)
{
    if (index < 0 || count < 0)
        kortools::core::throw_invalid_argument();
    if constexpr (is_raw && std::is_same_v<std::remove_cvref_t<ARG_T>, T>) {
        if (count == 1 && index < m_size && m_size < m_capacity && !is_near_front(index)) {
            T const value = element; // now: it may be one of those that move
            std::copy_backward(m_data + index, m_data + m_size, m_data + m_size + 1);
            m_data[index] = value;
            ++m_size;
            return;
        }
    }
    if (count > 0)
        open_gap(index, count, m_growBy, [&](T *target) { std::fill_n(target, count, element); });
}

template <class T, class ARG_T> void CXArray<T, ARG_T>::InsertAt(int index, CXArray const *other)
{
    if (index < 0)
        kortools::core::throw_invalid_argument();
    if (other && !other->IsEmpty()) {
        open_gap(index, other->m_size, m_growBy,
            [&](T *target) { std::copy_n(other->m_data, other->m_size, target); });
    }
}

template <class T, class ARG_T> int CXArray<T, ARG_T>::Append(CXArray const &other)
{
    int const first = m_size;
    InsertAt(first, &other);
    return first;
}

template <class T, class ARG_T> void CXArray<T, ARG_T>::remove(int index, int count)
{
    if (index < 0 || count < 0 || index > m_size - count)
        kortools::core::throw_invalid_argument();
    T *const last = m_data + m_size;
    if (count == 0 || remove_in_front(index, count))
        return;
    if constexpr (is_raw || !kortools::core::is_trivially_relocatable<T>)
        std::move(m_data + index + count, last, m_data + index);
    else if (count == 1)
        kortools::core::rotate_down(m_data + index, last);
    else
        std::rotate(m_data + index, m_data + index + count, last);
    m_size -= count;
}

// Adds the room for elements that are removed at the front. False when there is no memory for it.
template <class T, class ARG_T> bool CXArray<T, ARG_T>::add_reserve() noexcept
{
    if constexpr (has_gap) {
        int const bits = wanted_reserve_bits(m_capacity);
        if (bits == 0)
            return false;
        T *const data = kortools::core::try_extend_block(m_data, m_capacity, 1 << bits);
        if (!data)
            return false;
        m_data = data;
        m_reserve_bits = static_cast<unsigned char>(bits);
    }
    return has_gap;
}

// Moves the elements back to the beginning of the block.
template <class T, class ARG_T> void CXArray<T, ARG_T>::use_reserve_again() noexcept
{
    if constexpr (has_gap) {
        T *const target = block();
        std::destroy_n(target, front_gap());
        std::memmove(static_cast<void *>(target), static_cast<void const *>(m_data),
            static_cast<std::size_t>(m_size) * sizeof(T));
        kortools::core::make_unused(target + m_size, front_gap());
        m_data = target;
        m_gap = 0;
    }
}

// Removes by moving the elements before `index` up, if they are the fewer ones.
template <class T, class ARG_T>
bool CXArray<T, ARG_T>::remove_in_front(int index, int count) noexcept
{
    if constexpr (has_gap) {
        if (index >= m_size - index - count)
            return false;
        if (m_reserve_bits == 0 && !(is_near_front(index) && add_reserve()))
            return false;
        if (count > reserve())
            return false;
        if (count > reserve() - front_gap())
            use_reserve_again();
        if constexpr (is_raw)
            std::move_backward(m_data, m_data + index, m_data + index + count);
        else if (count == 1)
            kortools::core::rotate_up(m_data, m_data + index);
        else
            std::rotate(m_data, m_data + index, m_data + index + count);
        move_front(count);
    }
    return has_gap;
}

template <class T, class ARG_T> void CXArray<T, ARG_T>::Copy(CXArray const &other)
{
    if (this == &other)
        return;
    if (other.m_size > m_capacity) {
        int const capacity = grown_capacity(other.m_size, m_growBy);
        Block block(capacity);
        block.construct_copies(0, other.m_size, other.m_data);
        block.construct_unused(other.m_size, capacity, !m_data);
        release_block();
        m_data = block.release();
        m_capacity = capacity;
    } else if (other.m_size > 0) {
        std::copy_n(other.m_data, other.m_size, m_data);
    }
    m_size = other.m_size;
}

template <class T, class ARG_T> void CXArray<T, ARG_T>::Copy(CXArray const *other)
{
    if (other)
        Copy(*other);
    else
        RemoveAll();
}

template <class T, class ARG_T> void CXArray<T, ARG_T>::Serialize(CXArchive &archive)
{
    kortools::core::serialize_array(archive, *this);
}
