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
// All slots of the block hold elements: those that are not in use keep what they last held until
// they come back into use, reset to T(), or the block is released. So T has a default constructor.
// Growth moves the elements to the new block if that cannot throw, else it copies them (or moves
// what cannot be copied); types that are trivially relocatable, the library's strings and arrays
// among them, are moved as bytes. An array of such elements from whose front elements are removed,
// or into whose front they are inserted, keeps some room there beside its capacity, up to a quarter
// of it: for that price queues are cheap, O(1) amortised at both ends.
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
#include <bit>
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

    // Cuts the block to the elements in use; an empty array releases its block.
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
    void InsertAt(int index, ARG_T element, int count = 1)
    {
        if (index == 0 && count == 1 && front_gap() > 0 && m_size < m_capacity) {
            m_data[-1] = element;
            move_front(-1);
        } else {
            insert(index, static_cast<ARG_T &&>(element), count);
        }
    }

    // Inserts the elements of another array, or of this one. Nothing on a null pointer.
    void InsertAt(int index, CXArray const *other);

    // Appends the elements of another array, or of this one; returns the index of the first.
    int Append(CXArray const &other);

    // Throws unless 0 <= index, 0 <= count and index + count <= size. O(elements behind, or before
    // if these are fewer).
    void RemoveAt(int index, int count = 1)
    {
        if (index == 0 && count == 1 && m_size > 1 && front_gap() < reserve())
            move_front(1);
        else
            remove(index, count);
    }

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
    // The element itself, to be changed.
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
    static constexpr bool has_gap = kortools::core::reallocates_safely<T>;

    int check(int index) const
    {
        if (static_cast<unsigned int>(index) >= static_cast<unsigned int>(m_size)) [[unlikely]]
            kortools::core::throw_invalid_argument();
        return index;
    }

    using Block = kortools::core::ArrayBlock<T>;

    static void reset(T *first, T *last);

    int front_gap() const { return has_gap ? m_gap : 0; }
    int reserve() const { return has_gap ? (1 << m_reserve_bits) & ~1 : 0; }
    T *block() const { return m_data - front_gap(); }
    int slot_count() const { return m_capacity + reserve(); }
    void move_front(int step) // up where elements go out of use, or down
    {
        m_data += step;
        m_gap = static_cast<unsigned short>(m_gap + step);
        m_size -= step;
    }

    [[gnu::always_inline]] int grown_capacity(long long newSize, int growBy) const;
    static int wanted_reserve_bits(int capacity);
    bool is_near_front(int index) const;
    void destroy_unused() noexcept;
    void release_block() noexcept;
    template <class Value> int append(Value &&value, int growBy);
    template <class Value>
    [[gnu::noinline]] void store(int index, Value &&value, int growBy); // keeps append() small
    template <class Fill> void open_gap(int index, int count, int growBy, Fill fill);
    template <class Fill> void make_gap(int index, int count, Fill fill);
    template <class Value> void extend(Value &&value, int growBy);
    template <class Fill> void rebuild(int capacity, int index, int count, Fill fill);
    void shift_in(int index, int count) noexcept;
    void shift_in_front(int index, int count) noexcept;
    void insert(int index, ARG_T element, int count);
    void remove(int index, int count);
    bool add_reserve() noexcept;
    void use_reserve_again() noexcept;
    bool remove_in_front(int index, int count) noexcept;

    T *m_data = nullptr; // the first element; null when the array owns no storage
    int m_size = 0;      // elements in use
    int m_capacity = 0;  // elements in the block from m_data on, at least m_size
    int m_growBy = grow_auto;
    bool m_rawCopy = is_raw;          // elements are moved as bytes
    unsigned char m_reserve_bits = 0; // 2^this elements more in the block, or none if 0
    unsigned short m_gap = 0;         // of these, how many are in front of m_data
};

namespace kortools::core {
template <class T, class ARG_T>
inline constexpr bool is_trivially_relocatable<CXArray<T, ARG_T>> = true;
}

#include "kortools/core/array_impl.h"

KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<int>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<unsigned int>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<unsigned char>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<double>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<CXObject *>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<CXTString<wchar_t>>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CXArray<CXTString<char>>);
