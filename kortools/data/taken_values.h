// SPDX-License-Identifier: MIT
// TakenValues: a set of numbers that finds the next one it does not hold in a handful of steps,
// however many lie in a row. The hash tables of the identifiers are better for everything else.
//
// Level 0 has a bit for each number, in blocks of 64; a block without a number is not stored. On
// the levels above, a bit stands for a block of the level below and is set when that block is full.
//
//   level 1   ...............11   blocks 0 and 1 of level 0 are full
//   level 0   [1111...1111] [1111...1111] [1011...0000]
//
// So a search looks at the rest of a block, climbs while everything ahead is full, and descends
// into the first block that is not. Used by one thread at a time.
#pragma once

#include "kortools/core/hash_map.h"

#include <cstdint>

namespace kortools::data {

class TakenValues {
public:
    bool insert(std::uint64_t value); // false without memory: the set is no good any more
    void remove(std::uint64_t value); // which is in the set

    // The first number at or above `value` that is not in the set; above the last number comes 0.
    std::uint64_t find_free(std::uint64_t value) const;

private:
    // A full block of the last level would mean 2^36 numbers, more than a table holds.
    static constexpr unsigned level_count = 6;
    static constexpr std::uint64_t full = ~std::uint64_t { 0 };

    using Blocks = CHashMap<std::uint64_t, std::uint64_t, std::uint64_t>;

    std::uint64_t get_free_bits(unsigned level, std::uint64_t block) const;

    Blocks m_levels[level_count]; // the bits of a block by its number
};

} // namespace kortools::data
