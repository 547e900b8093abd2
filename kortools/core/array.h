// SPDX-License-Identifier: MIT
// CXArray: a growable array in one block, with int indices, a growth rule of its own, and
// serialization through the archive. Every bad index or size throws CXInvalidArgException; memory
// that runs out throws CXMemoryException. Used by one thread at a time.
//
//   CXArray<CXTString<wchar_t>> names;
//   names.SetSize(0, CXArray<CXTString<wchar_t>>::grow_double); // for very long arrays
//   int const index = names.Add(L"first");
//   for (CXTString<wchar_t> const &name : names)
//       show(name);
//   names.Serialize(archive);
//
// All slots of the block hold elements: those past the size are not in use, and keep what they last
// held until they come back into use, reset to T(), or the block is released. So T has a default
// constructor. Growth moves the elements to the new block if that cannot throw, else it copies them
// (or moves what cannot be copied); types that are trivially relocatable, the library's strings and
// arrays among them, are moved as bytes.
//
// When constructing or assigning an element throws:
// - SetSize, Add, SetAtGrow past the end, InsertAt, Append and FreeExtra leave the array as it was
//   (unless T can only be moved, and its move throws);
// - SetAt, SetAtGrow on an element: what T's assignment guarantees for the element;
// - RemoveAt, Copy within the capacity: the size is unchanged, some elements have new values
//   (RemoveAt does not throw for types that are moved as bytes).
//
// Everything that can grow the array, or release its block, invalidates pointers to elements. An
// element of the array itself may be passed to any operation: its value at the call is used.
//
// A source that uses CXArray of a type of its own includes kortools/archive/archive.h as well.
#pragma once

#include "kortools/core/array_archive.h"
#include "kortools/core/array_block.h"
#include "kortools/core/throw.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

class CXArchive;
class CXObject;

template <class T, class ARG_T = T const &> class CXArray {
public:
    using value_type = T;
    using iterator = T *;
    using const_iterator = T const *;

    // Growth rules; a positive rule is the number of elements by which the block grows.
    static constexpr int keep_rule = -1;   // as an argument: the rule stays
    static constexpr int grow_auto = 0;    // an eighth of the size, at least 4 and at most 1024
    static constexpr int grow_double = -2; // twice the capacity

    CXArray() = default;
    CXArray(CXArray const &other); // elements and growth rule
    CXArray(CXArray &&other) noexcept;
    CXArray &operator=(CXArray const &other);     // as Copy(): keeps the growth rule
    CXArray &operator=(CXArray &&other) noexcept; // takes block and rule; `other` is then empty
    virtual ~CXArray();

    // The single growth point. New elements are T(). A block is allocated with
    // max(newSize, rule) elements, and grows to capacity + rule, or to newSize when that is larger;
    // beyond the range of int it throws. It never shrinks, but size 0 with growBy 0 releases it.
    void SetSize(int newSize, int growBy = keep_rule);
    void RemoveAll() { m_size = 0; }

    // Cuts the capacity to the size; an empty array releases its block.
    void FreeExtra();

    // Appends, and returns the index of the new element.
    int Add(ARG_T element, int growBy = keep_rule)
    {
        return append(static_cast<ARG_T &&>(element), growBy);
    }
    int Add(T &&element, int growBy = keep_rule) requires(std::is_lvalue_reference_v<ARG_T>)
    {
        return append(std::move(element), growBy);
    }

    // Stores the element; an index past the end grows the array to index + 1.
    void SetAtGrow(int index, ARG_T element, int growBy = keep_rule);

    // Inserts `count` copies before `index`. Past the end, the array grows and elements T() fill
    // the gap. A count of 0 changes nothing, a negative one throws.
    void InsertAt(int index, ARG_T element, int count = 1);

    // Inserts the elements of another array, or of this one. Nothing on a null pointer.
    void InsertAt(int index, CXArray const *other);

    // Appends the elements of another array, or of this one; returns the index of the first.
    int Append(CXArray const &other);

    // Throws unless 0 <= index, 0 <= count and index + count <= size. O(elements behind).
    void RemoveAt(int index, int count = 1);

    // Replaces the elements by those of another array; a null pointer empties the array.
    void Copy(CXArray const &other);
    void Copy(CXArray const *other);

    int GetSize() const { return m_size; }
    int GetCount() const { return m_size; }
    int GetUpperBound() const { return m_size - 1; } // -1 when empty
    int GetCapacity() const { return m_capacity; }
    bool IsEmpty() const { return m_size == 0; }

    T const &GetAt(int index) const { return m_data[check(index)]; }
    void SetAt(int index, ARG_T element) { m_data[check(index)] = element; }
    T &ElementAt(int index) { return m_data[check(index)]; }
    T const &operator[](int index) const { return m_data[check(index)]; }
    T &operator[](int index) { return m_data[check(index)]; }

    T *GetData() { return m_data; } // null without a block
    T const *GetData() const { return m_data; }
    T *begin() { return m_data; }
    T *end() { return m_data + m_size; }
    T const *begin() const { return m_data; }
    T const *end() const { return m_data + m_size; }

    bool operator==(CXArray const &other) const requires requires(T const &a, T const &b)
    {
        a == b;
    }
    {
        return std::equal(begin(), end(), other.begin(), other.end());
    }

    // Writes the count (WriteCount) and the elements, or replaces the elements by those read. An
    // element goes through the archive's operators, else through its own Serialize(CXArchive &);
    // a pointer to a class derived from CXObject is an object reference, which must be of that
    // class; any other type throws CXInvalidArgException.
    //
    // Memory is taken as elements arrive, not as the count promises. When loading fails, the array
    // holds the elements that were read.
    virtual void Serialize(CXArchive &archive);

private:
    static constexpr bool is_raw = std::is_trivially_copyable_v<T>;

    int check(int index) const
    {
        if (static_cast<unsigned int>(index) >= static_cast<unsigned int>(m_size)) [[unlikely]]
            kortools::core::throw_invalid_argument();
        return index;
    }

    using Block = kortools::core::ArrayBlock<T>;

    static void reset(T *first, T *last);

    int grown_capacity(long long newSize, int growBy) const;
    void release_block() noexcept;
    template <class Value> int append(Value &&value, int growBy);
    template <class Value> void store(int index, Value &&value, int growBy);
    template <class Fill> void open_gap(int index, int count, int growBy, Fill fill);
    template <class Fill> void rebuild(int capacity, int index, int count, Fill fill);
    void shift_in(int index, int count) noexcept;

    T *m_data = nullptr; // from operator new[]; null when the array owns no storage
    int m_size = 0;      // elements in use
    int m_capacity = 0;  // elements in the block, at least m_size
    int m_growBy = grow_auto;
    bool m_rawCopy = is_raw; // elements are moved as bytes
};

namespace kortools::core {
template <class T, class ARG_T>
inline constexpr bool is_trivially_relocatable<CXArray<T, ARG_T>> = true;
}

// Implementation.

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
int CXArray<T, ARG_T>::grown_capacity(long long newSize, int growBy) const
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

// Destroys all elements, in use or not.
template <class T, class ARG_T> void CXArray<T, ARG_T>::release_block() noexcept
{
    std::destroy_n(m_data, m_capacity);
    Block::free(m_data);
    m_data = nullptr;
    m_capacity = 0;
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
    Block block(capacity);
    T *const behind = block.get() + index + count;
    block.construct(kept, index + count);
    fill(block.get() + index);
    block.construct_unused(index + count + tail, capacity, !m_data);
    if constexpr (kortools::core::relocates_safely<T>) {
        kortools::core::relocate(m_data, kept, block.get());
        kortools::core::relocate(m_data + kept, tail, behind);
        std::destroy_n(m_data + m_size, m_capacity - m_size);
        Block::free(m_data);
    } else {
        block.take(0, kept, m_data);
        block.take(index + count, tail, m_data + kept);
        release_block();
    }
    m_data = block.release();
    m_capacity = capacity;
}

// Makes `count` new elements at `index`, whose values fill() assigns, and stores the rule. The new
// values are made before any old element moves, so a failure changes nothing.
template <class T, class ARG_T>
template <class Fill>
void CXArray<T, ARG_T>::open_gap(int index, int count, int growBy, Fill fill)
{
    long long const newSize = static_cast<long long>(std::max(index, m_size)) + count;
    bool const shifts = index < m_size;
    if (newSize > m_capacity) {
        rebuild(grown_capacity(newSize, growBy), index, count, fill);
    } else if (shifts && !kortools::core::shifts_safely<T>) {
        rebuild(m_capacity, index, count, fill);
    } else if (shifts) {
        fill(m_data + m_size);
        shift_in(index, count);
    } else {
        reset(m_data + m_size, m_data + index);
        fill(m_data + index);
    }
    m_size = static_cast<int>(newSize);
    m_growBy = growBy;
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

template <class T, class ARG_T>
template <class Value>
int CXArray<T, ARG_T>::append(Value &&value, int growBy)
{
    int const index = m_size; // not read again: an int element might be m_size, for all one knows
    if (index < m_capacity && growBy == keep_rule) [[likely]] {
        m_data[index] = std::forward<Value>(value);
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
    } else {
        open_gap(index, 1, growBy == keep_rule ? m_growBy : growBy,
            [&](T *target) { *target = std::forward<Value>(value); });
    }
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
    else if (m_size < m_capacity)
        rebuild(m_size, m_size, 0, [](T *) {});
}

template <class T, class ARG_T>
void CXArray<T, ARG_T>::SetAtGrow(int index, ARG_T element, int growBy)
{
    store(index, static_cast<ARG_T &&>(element), growBy);
}

template <class T, class ARG_T>
void CXArray<T, ARG_T>::InsertAt(int index, ARG_T element, int count)
{
    if (index < 0 || count < 0)
        kortools::core::throw_invalid_argument();
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

template <class T, class ARG_T> void CXArray<T, ARG_T>::RemoveAt(int index, int count)
{
    if (index < 0 || count < 0 || index > m_size - count)
        kortools::core::throw_invalid_argument();
    T *const last = m_data + m_size;
    if (count == 0)
        return;
    if constexpr (is_raw || !kortools::core::is_trivially_relocatable<T>)
        std::move(m_data + index + count, last, m_data + index);
    else if (count == 1)
        kortools::core::rotate_down(m_data + index, last);
    else
        std::rotate(m_data + index, m_data + index + count, last);
    m_size -= count;
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

KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<int>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<unsigned int>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<unsigned char>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<double>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<CXObject *>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<CXTString<wchar_t>>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<CXTString<char>>);
