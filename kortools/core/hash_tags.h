// SPDX-License-Identifier: MIT
// One byte beside each slot of a hash table tells enough about it that most slots which do not
// matter are never touched: empty, deleted, or live with seven bits of the key's hash.
//
// The table's probe sequence goes from the home slot by 1, 3, 5, ... to the offsets 1, 4, 9, 16,
// ... The first four places lie within sixteen bytes, which one load brings in and a few
// instructions compare: even in a table that is as full as it gets, 15 of 16 searches end there.
#pragma once

#include "kortools/export.h"

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
inline unsigned live_tag(unsigned hash)
{
    return live_bit | ((hash * 0x9E3779B1U) >> 25);
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

    unsigned GetEqualTo(unsigned tag) const
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
    unsigned GetEqualTo(unsigned tag) const
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
constexpr unsigned tag_padding = 64; // behind the tags: the first fifteen again, then empty ones

// Which of 64 tags are live; of these, only the first `count` belong to the table.
inline std::uint64_t live_mask(Tag const *first, std::size_t count)
{
    std::uint64_t bits = 0;
    for (unsigned i = 0; i < live_mask_size; i += window_size)
        bits |= std::uint64_t { TagWindow(first + i).GetLive() } << i;
    return count < live_mask_size ? bits & ((std::uint64_t { 1 } << count) - 1) : bits;
}

inline constexpr Tag no_tags[live_mask_size] = {};

// The tags of a table, and the arithmetic of its size. Without an array it answers for a single
// slot that is always empty: searches then need not ask whether there is one.
class HashTags {
public:
    static constexpr unsigned none = ~0U; // as a position

    HashTags() = default;
    HashTags(HashTags const &) = delete;
    HashTags &operator=(HashTags const &) = delete;
    ~HashTags() { Release(); }

    KORTOOLS_API bool Allocate(unsigned size) noexcept; // all empty; false without memory
    KORTOOLS_API void Release() noexcept;
    KORTOOLS_API void Swap(HashTags &other) noexcept;
    void Clear() { std::memset(m_tags, empty_tag, GetBlockSize()); }
    void CopyFrom(HashTags const &other) // of the same size
    {
        std::memcpy(m_tags, other.m_tags, GetBlockSize());
    }

    // hash mod size. With c = 2^64 / size rounded up, that is the upper half of
    // (c * hash mod 2^64) * size: exact for all 32-bit numbers, and no division.
    unsigned GetHome(unsigned hash) const
    {
        __extension__ using Wide = unsigned __int128;
        std::uint64_t const fraction = m_reciprocal * hash;
        return static_cast<unsigned>((Wide { fraction } * m_size) >> 64);
    }

    // The part of a window's answer that speaks of the first probes from its first tag.
    unsigned OnPath(unsigned bits) const { return bits & m_path; }

    unsigned Wrap(unsigned pos) const // below twice the size
    {
        if (pos >= m_size) [[unlikely]] {
            pos -= m_size;
            // Keeps this a jump, for the reads that follow need not wait for a predicted one as
            // they would for a conditional move.
            asm("" : "+r"(pos));
        }
        return pos;
    }

    Tag operator[](unsigned pos) const { return m_tags[pos]; }
    Tag const *GetAt(unsigned pos) const { return m_tags + pos; }
    void Set(unsigned pos, unsigned tag)
    {
        m_tags[pos] = static_cast<Tag>(tag);
        if (pos < window_size - 1) [[unlikely]]
            Mirror(pos);
    }

    // The first slot on the path from `home` that is not live. There is one as long as no more than
    // half of the slots are occupied: the path of a prime size reaches more than half of them.
    unsigned FindFree(unsigned home) const
    {
        unsigned pos = home;
        for (unsigned step = 1; m_tags[pos] & live_bit; step += 2)
            pos = Wrap(pos + step);
        return pos;
    }

    // The first live slot at or after `from`, or none.
    unsigned FindLive(unsigned from) const
    {
        for (std::size_t pos = from; pos < m_size; pos += 8) {
            std::uint64_t eight;
            std::memcpy(&eight, m_tags + pos, 8);
            if (std::uint64_t const live = eight & 0x8080808080808080U) {
                pos += lowest_bit(live) / 8;
                return pos < m_size ? static_cast<unsigned>(pos) : none;
            }
        }
        return none;
    }
    // Calls visit(pos) for each live slot in ascending order; what becomes live or ceases to be
    // meanwhile may be missed or visited.
    template <typename F> void ForEachLive(F visit) const
    {
        for (std::size_t base = 0; base < m_size; base += live_mask_size) {
            std::uint64_t live = live_mask(m_tags + base, m_size - base);
            for (; live != 0; live &= live - 1)
                visit(static_cast<unsigned>(base) + lowest_bit(live));
        }
    }

private:
    std::size_t GetBlockSize() const { return std::size_t { m_size } + tag_padding; }
    KORTOOLS_API void Mirror(unsigned pos);

    Tag *m_tags = const_cast<Tag *>(no_tags); // never written while there is no array
    std::uint64_t m_reciprocal = 0;           // 2^64 / m_size, rounded up
    unsigned m_size = 1;
    unsigned m_path = 1; // bits of the probes that lie within a window
};

} // namespace kortools::core
