// SPDX-License-Identifier: MIT
// What range-for runs over in a hash table: live slots in ascending order, 64 tags at a time.
#pragma once

#include "kortools/core/hash_tags.h"

#include <cstddef>
#include <iterator>

namespace kortools::core {

template <typename K, typename V> struct HashEntry {
    K const &key;
    V &value;
};

// ENTRY is what an iteration gives: a HashEntry of the slot's key and value, or a constant key.
template <typename SLOT, typename ENTRY> class HashIterator {
public:
    using value_type = ENTRY;
    using difference_type = std::ptrdiff_t;

    HashIterator() = default;
    HashIterator(SLOT *slots, Tag const *tags, unsigned size)
        : m_block(slots)
        , m_tags(tags)
        , m_left(size)
    {
        if (size == 0)
            return;
        ReadBlock();
        NextBlock();
    }

    ENTRY operator*() const
    {
        SLOT &slot = m_block[lowest_bit(m_live)];
        if constexpr (requires { slot.value; })
            return { slot.key, slot.value };
        else
            return slot.key;
    }
    HashIterator &operator++()
    {
        m_live &= m_live - 1;
        if (m_live == 0)
            NextBlock();
        return *this;
    }
    void operator++(int) { ++*this; }
    bool operator==(std::default_sentinel_t) const { return m_live == 0; }

private:
    void NextBlock()
    {
        while (m_live == 0 && m_left > live_mask_size) {
            m_block += live_mask_size;
            m_tags += live_mask_size;
            m_left -= live_mask_size;
            ReadBlock();
        }
    }
    void ReadBlock() { m_live = live_mask(m_tags, m_left); }

    SLOT *m_block = nullptr;
    Tag const *m_tags = nullptr; // of the block's slots
    unsigned m_left = 0;         // slots from here to the table's end
    std::uint64_t m_live = 0;    // slots of the block still to be visited
};

} // namespace kortools::core
