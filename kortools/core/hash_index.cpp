// SPDX-License-Identifier: MIT
#include "kortools/core/hash_index.h"

#include "kortools/core/hash_slot.h"

#include <bit>
#include <cstdint>
#include <utility>

namespace kortools::core {
namespace {

// Different ones, or a text with two halves exchanged would have the same hash.
constexpr std::uint64_t seed = 0xD6E8FEB86659FD93U;
constexpr std::uint64_t factor_1 = 0x9E3779B97F4A7C15U;
constexpr std::uint64_t factor_2 = 0xC2B2AE3D27D4EB4FU;

std::uint64_t read_8(unsigned char const *at)
{
    std::uint64_t value;
    std::memcpy(&value, at, 8);
    return value;
}

std::uint64_t read_4(unsigned char const *at)
{
    std::uint32_t value;
    std::memcpy(&value, at, 4);
    return value;
}

// All bits of both factors reach the middle of the product, and the halves folded onto each other
// have nothing but middle.
std::uint64_t fold(std::uint64_t a, std::uint64_t b)
{
    __extension__ using Wide = unsigned __int128;
    Wide const product = Wide { a } * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

// The first and the last eight bytes of up to sixteen.
void read_short(unsigned char const *at, std::size_t size, std::uint64_t &a, std::uint64_t &b)
{
    a = b = 0;
    if (size >= 8) {
        a = read_8(at);
        b = read_8(at + size - 8);
    } else if (size >= 4) {
        a = read_4(at);
        b = read_4(at + size - 4);
    } else if (size > 0) {
        a = at[0] | (std::uint64_t { at[size / 2] } << 8) | (std::uint64_t { at[size - 1] } << 16);
    }
}

} // namespace

unsigned hash_bytes(void const *bytes, std::size_t size) noexcept
{
    auto const *at = static_cast<unsigned char const *>(bytes);
    std::uint64_t hash = seed;
    std::size_t left = size;
    if (left >= 64) { // four sums side by side, so that each multiplication waits for few others
        std::uint64_t lanes[4] = { hash, hash ^ 1, hash ^ 2, hash ^ 3 };
        for (; left >= 64; left -= 64, at += 64) {
            for (unsigned i = 0; i < 4; ++i) {
                std::uint64_t const a = read_8(at + 16 * i) ^ factor_1;
                lanes[i] = fold(a, read_8(at + 16 * i + 8) ^ lanes[i]);
            }
        }
        hash = fold(lanes[0] ^ factor_1, lanes[1]) ^ fold(lanes[2] ^ factor_2, lanes[3]);
    }
    for (; left > 16; left -= 16, at += 16)
        hash = fold(read_8(at) ^ factor_1, read_8(at + 8) ^ hash);
    std::uint64_t a, b;
    read_short(at, left, a, b);
    hash = fold(a ^ factor_2, b ^ hash);
    return static_cast<unsigned>(fold(hash ^ factor_1, factor_2 ^ size));
}

bool KeyIndex::Allocate(unsigned size) noexcept
{
    Release();
    m_size = size;
    m_mask = static_cast<unsigned>(std::bit_ceil(std::size_t { size } / 4 * 3) - 1);
    m_entries = static_cast<Entry *>(allocate_table(GetEntriesSize(), alignof(Entry)));
    m_hashes
        = static_cast<KeyHashes *>(allocate_table(sizeof(KeyHashes) * size, alignof(KeyHashes)));
    if (m_entries && m_hashes) {
        Clear();
        return true;
    }
    Release();
    return false;
}

void KeyIndex::Release() noexcept
{
    if (m_size != 0) {
        free_table(m_entries, alignof(Entry));
        free_table(m_hashes, alignof(KeyHashes));
    }
    m_entries = const_cast<Entry *>(&no_entry);
    m_hashes = nullptr;
    m_mask = m_size = 0;
}

void KeyIndex::Swap(KeyIndex &other) noexcept
{
    std::swap(m_entries, other.m_entries);
    std::swap(m_hashes, other.m_hashes);
    std::swap(m_mask, other.m_mask);
    std::swap(m_size, other.m_size);
}

void KeyIndex::Clear()
{
    std::memset(m_entries, 0xFF, GetEntriesSize()); // all positions none
}

void KeyIndex::CopyFrom(KeyIndex const &other)
{
    std::memcpy(m_entries, other.m_entries, GetEntriesSize());
    std::memcpy(m_hashes, other.m_hashes, sizeof(KeyHashes) * m_size);
}

void KeyIndex::Remove(unsigned search, unsigned pos)
{
    unsigned gap = search & m_mask;
    while (m_entries[gap].pos != pos)
        gap = (gap + 1) & m_mask;
    // An entry may fill the gap when it is on the way to it from where its own search begins.
    for (unsigned i = (gap + 1) & m_mask; m_entries[i].pos != none; i = (i + 1) & m_mask) {
        unsigned const way = (i - m_entries[i].search) & m_mask;
        if (way >= ((i - gap) & m_mask)) {
            m_entries[gap] = m_entries[i];
            gap = i;
        }
    }
    m_entries[gap].pos = none;
}

} // namespace kortools::core
