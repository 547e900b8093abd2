// SPDX-License-Identifier: MIT
#include "kortools/core/char_array.h"

#include "kortools/core/throw.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <utility>

namespace {

using kortools::core::throw_out_of_memory;

// Short texts share two sizes so that small appends do not reallocate each time; longer ones
// double.
constexpr long long capacity_for(long long length)
{
    long long const doubled = 2 * length + 1;
    if (doubled < 16)
        return 16;
    return std::max(doubled, 64LL);
}

template <class T> void copy_characters(T *target, T const *source, long long length)
{
    std::char_traits<T>::move(target, source, static_cast<std::size_t>(length));
}

} // namespace

template <class T> CXTCharArray<T>::CXTCharArray(T const *text, long long length)
{
    SetLength(length);
    copy_characters(m_buffer, text, m_length);
}

template <class T>
CXTCharArray<T>::CXTCharArray(CXTCharArray &&other) noexcept
    : m_buffer(std::exchange(other.m_buffer, nullptr))
    , m_length(std::exchange(other.m_length, 0))
    , m_capacity(std::exchange(other.m_capacity, 0))
{
    other.AllocateMinimum();
}

template <class T> void CXTCharArray<T>::AllocateMinimum() noexcept
{
    m_buffer = static_cast<T *>(std::malloc(capacity_for(0) * sizeof(T)));
    if (m_buffer) {
        m_buffer[0] = T();
        m_capacity = capacity_for(0);
    }
}

template <class T> CXTCharArray<T> &CXTCharArray<T>::operator=(CXTCharArray const &other)
{
    if (this != &other)
        Assign(other.m_buffer, other.m_buffer ? other.m_length : 0);
    return *this;
}

template <class T> CXTCharArray<T> &CXTCharArray<T>::operator=(CXTCharArray &&other) noexcept
{
    if (this == &other)
        return *this;
    Swap(other);
    other.m_length = 0;
    if (other.m_buffer)
        other.m_buffer[0] = T();
    else
        other.AllocateMinimum();
    return *this;
}

template <class T> void CXTCharArray<T>::Assign(T const *text, long long length)
{
    if (HasRoomFor(length)) {
        // The characters first: the zero may fall on the source.
        copy_characters(m_buffer, text, length);
        SetLength(length);
        return;
    }
    if (m_capacity == 0 && length < capacity_for(0))
        SetLength(0); // the block that a default-constructed string would have
    SetLength(length);
    copy_characters(m_buffer, text, m_length);
}

template <class T> void CXTCharArray<T>::Append(T const *text, long long length)
{
    if (length <= 0)
        return;
    bool const own
        = std::less_equal<>()(m_buffer, text) && std::less<>()(text, m_buffer + m_length);
    long long const offset = own ? text - m_buffer : 0;
    long long const old_length = m_length;
    SetLength(old_length + length);
    copy_characters(m_buffer + old_length, own ? m_buffer + offset : text, length);
}

template <class T> T *CXTCharArray<T>::Detach()
{
    return std::exchange(m_buffer, nullptr);
}

template <class T> void CXTCharArray<T>::Swap(CXTCharArray &other) noexcept
{
    std::swap(m_buffer, other.m_buffer);
    std::swap(m_length, other.m_length);
    std::swap(m_capacity, other.m_capacity);
}

template <class T> long long CXTCharArray<T>::Grow(long long length)
{
    length = std::max(length, 0LL);
    if (length > max_length)
        throw_out_of_memory();
    if (m_buffer && length < m_capacity)
        return length;
    long long const capacity = capacity_for(length);
    std::size_t const size = static_cast<std::size_t>(capacity) * sizeof(T);
    void *const block = std::realloc(m_buffer, size);
    if (!block)
        throw_out_of_memory();
    m_buffer = static_cast<T *>(block);
    m_capacity = capacity;
    return length;
}

template class CXTCharArray<char>;
template class CXTCharArray<wchar_t>;
