// SPDX-License-Identifier: MIT
// One byte beside each slot of a hash table tells enough about it that most slots which do not
// matter are never touched: empty, deleted, or live with seven bits of the key's hash.
//
// The table's probe sequence goes to the offsets 0, 1, 4, 9, 16, ... from the home slot. The first
// four lie within sixteen bytes, which one load brings in and a few instructions compare: at the
// highest load 15 of 16 searches end there.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kortools::core {

using Tag = unsigned char;
constexpr Tag empty_tag = 0;
constexpr Tag deleted_tag = 1;
constexpr Tag live_bit = 0x80;
constexpr unsigned window_size = 16; // tags

// The tag of a live slot. The home slot is the hash's remainder, so the bits are taken from a
// product, which the remainder does not determine.
inline Tag live_tag(unsigned hash)
{
    return static_cast<Tag>(live_bit | ((hash * 0x9E3779B1U) >> 25));
}

// The number of zeros below the lowest one; `bits` is not 0.
inline unsigned lowest_bit(unsigned bits)
{
    return static_cast<unsigned>(__builtin_ctz(bits));
}
inline unsigned lowest_bit(std::uint64_t bits)
{
    return static_cast<unsigned>(__builtin_ctzll(bits));
}

// Sixteen tags in a row. Bit i of an answer speaks of tag i.
class PortableTagWindow {
public:
    explicit PortableTagWindow(Tag const *first) { std::memcpy(m_tags, first, window_size); }

    unsigned GetEqualTo(Tag tag) const
    {
        unsigned bits = 0;
        for (unsigned i = 0; i < window_size; ++i)
            bits |= static_cast<unsigned>(m_tags[i] == tag) << i;
        return bits;
    }
    unsigned GetLive() const
    {
        unsigned bits = 0;
        for (unsigned i = 0; i < window_size; ++i)
            bits |= static_cast<unsigned>(m_tags[i] >> 7) << i;
        return bits;
    }

private:
    Tag m_tags[window_size];
};

#ifdef __SSE2__
class Sse2TagWindow {
public:
    explicit Sse2TagWindow(Tag const *first)
        : m_tags(_mm_loadu_si128(reinterpret_cast<__m128i const *>(first)))
    {
    }
    unsigned GetEqualTo(Tag tag) const
    {
        __m128i const wanted = _mm_set1_epi32(static_cast<int>(tag * 0x01010101U));
        return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(m_tags, wanted)));
    }
    unsigned GetLive() const { return static_cast<unsigned>(_mm_movemask_epi8(m_tags)); }

private:
    __m128i m_tags;
};
using TagWindow = Sse2TagWindow;
#else
using TagWindow = PortableTagWindow;
#endif

constexpr unsigned live_mask_size = 64;
constexpr std::size_t tag_padding = 64; // behind the tags: the first fifteen again, then empty ones

// Which of 64 tags are live, of which only the first `count` belong to the table.
inline std::uint64_t live_mask(Tag const *first, std::size_t count)
{
    std::uint64_t bits = 0;
    for (unsigned i = 0; i < live_mask_size; i += window_size)
        bits |= std::uint64_t { TagWindow(first + i).GetLive() } << i;
    return count < live_mask_size ? bits & ((std::uint64_t { 1 } << count) - 1) : bits;
}

} // namespace kortools::core
