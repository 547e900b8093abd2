// SPDX-License-Identifier: MIT
#include "kortools/data/taken_values.h"

#include <bit>

namespace kortools::data {

namespace {

std::uint64_t bit_of(std::uint64_t index)
{
    return std::uint64_t { 1 } << (index & 63);
}

} // namespace

bool TakenValues::insert(std::uint64_t value)
{
    for (Blocks &blocks : m_levels) {
        std::uint64_t const block = value >> 6;
        std::uint64_t *const bits = blocks.Find(block);
        if (!bits)
            return blocks.Insert(block, bit_of(value)) != 0;
        *bits |= bit_of(value);
        if (*bits != full)
            return true;
        value = block;
    }
    return true;
}

void TakenValues::remove(std::uint64_t value)
{
    for (Blocks &blocks : m_levels) {
        std::uint64_t const block = value >> 6;
        std::uint64_t *const bits = blocks.Find(block);
        if (!bits)
            return;
        bool const was_full = *bits == full;
        *bits &= ~bit_of(value);
        if (*bits == 0)
            blocks.Remove(block);
        if (!was_full)
            return;
        value = block;
    }
}

std::uint64_t TakenValues::get_free_bits(unsigned level, std::uint64_t block) const
{
    std::uint64_t const *const bits = m_levels[level].Find(block);
    return bits ? ~*bits : full;
}

std::uint64_t TakenValues::find_free(std::uint64_t value) const
{
    std::uint64_t index = value; // on its level: a number, or a block of the level below
    unsigned level = 0;
    for (;; ++level) {
        std::uint64_t const free_bits = get_free_bits(level, index >> 6) & full << (index & 63);
        if (free_bits != 0) {
            index = (index & ~std::uint64_t { 63 })
                + static_cast<unsigned>(std::countr_zero(free_bits));
            break;
        }
        index = (index >> 6) + 1;
        if (index >> (64 - 6 * (level + 1)) != 0)
            index = 0; // past the last number
    }
    while (level-- > 0)
        index = index * 64 + static_cast<unsigned>(std::countr_zero(get_free_bits(level, index)));
    return index;
}

} // namespace kortools::data
