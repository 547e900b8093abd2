// SPDX-License-Identifier: MIT
// CXTCharArray: the growable block of characters under CXTString<T>, for code that works on raw
// characters and shares a string's block through its conversion to CXTCharArray<T> &.
//
// Exported for char and wchar_t. Used by one thread at a time. The block comes from realloc() and
// is never null, except after Detach(). It is always terminated by a zero, grows only in
// SetLength() and never shrinks.
//
//   CXTCharArray<wchar_t> &characters = text; // a CXTString<wchar_t>
//   characters.SetLength(count);
//   std::copy_n(source, count, characters.GetData());
#pragma once

#include "kortools/export.h"

#include <climits>
#include <cstdlib>
#include <string_view>

namespace kortools::core {
struct NoBlock { }; // asks for what is empty and takes no memory
} // namespace kortools::core

template <class T> class KORTOOLS_API CXTCharArray {
public:
    static constexpr long long max_length = INT_MAX; // characters

    CXTCharArray() { SetLength(0); } // a block of 16 characters

    explicit CXTCharArray(kortools::core::NoBlock) noexcept { } // like a detached array

    explicit CXTCharArray(long long length) { SetLength(length); } // undefined characters

    // A copy of `length` characters, which may contain zeros; a length below 0 counts as 0.
    CXTCharArray(T const *text, long long length);
    CXTCharArray(CXTCharArray const &other)
        : CXTCharArray(other.m_buffer, other.m_buffer ? other.m_length : 0)
    {
    }

    // `other` becomes empty, with a new block of the minimum size (or none, like a detached array,
    // when memory is exhausted).
    CXTCharArray(CXTCharArray &&other) noexcept;
    ~CXTCharArray()
    {
        if (m_buffer) // arrays destroy many that have none
            std::free(m_buffer);
    }

    CXTCharArray &operator=(CXTCharArray const &other);
    CXTCharArray &operator=(CXTCharArray &&other) noexcept; // swaps the blocks and empties `other`

    // Sets the length, below 0 counts as 0. Characters up to the old length survive, those between
    // it and a larger new one are undefined. A block that is too small for n characters and their
    // zero is reallocated (pointers into it dangle) to:
    //
    //   n up to 7    =>  16 characters
    //   n up to 31   =>  64
    //   otherwise    =>  2 n + 1
    //
    // Throws CXMemoryException, with nothing changed, when memory is exhausted or n is larger than
    // max_length. Amortised O(1) per character when appending.
    void SetLength(long long length)
    {
        if (!HasRoomFor(length)) [[unlikely]]
            length = Grow(length);
        m_length = length;
        m_buffer[length] = T();
    }

    // Replaces the characters, or adds some at the end. `text` may lie in this array. Null is
    // allowed when `length` is 0.
    void Assign(T const *text, long long length);
    void Append(T const *text, long long length);

    long long GetLength() const { return m_length; }
    bool IsEmpty() const { return m_length == 0; }
    long long GetCapacity() const { return m_capacity; } // characters, the zero included

    T *GetData() { return m_buffer; }
    T const *GetData() const { return m_buffer; }
    T *begin() { return m_buffer; }
    T *end() { return m_buffer + m_length; }
    T const *begin() const { return m_buffer; }
    T const *end() const { return m_buffer + m_length; }
    std::basic_string_view<T> GetView() const
    {
        return { m_buffer, m_buffer ? static_cast<std::size_t>(m_length) : 0 };
    }

    // Not checked: `index` must be in [0, length].
    T &operator[](long long index) { return m_buffer[index]; }
    T const &operator[](long long index) const { return m_buffer[index]; }

    // Hands the block to the caller, who frees it with free(). Length and capacity stay as they
    // were; the array can only be destroyed or given new contents.
    T *Detach();

    void Swap(CXTCharArray &other) noexcept;

private:
    bool HasRoomFor(long long length) const
    {
        return static_cast<unsigned long long>(length) < static_cast<unsigned long long>(m_capacity)
            && length <= max_length && m_buffer;
    }

    // Reallocates so that HasRoomFor(the result), which is `length` made at least 0.
    long long Grow(long long length);

    // Of the minimum size; none when memory is exhausted.
    void AllocateMinimum() noexcept;

    T *m_buffer = nullptr;  // null only after Detach(), and in slots of arrays that are not in use
    long long m_length = 0; // characters before the terminating zero
    long long m_capacity = 0; // characters in the block, > m_length
};

KOR_EXTERN_TEMPLATE(CXTCharArray<char>);
KOR_EXTERN_TEMPLATE(CXTCharArray<wchar_t>);
