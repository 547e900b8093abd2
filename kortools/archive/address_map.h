// SPDX-License-Identifier: MIT
// AddressMap: the indices of objects and classes by their addresses, for archives that store.
//
// Addresses stand in an array by their index, and a table of slots with open addressing holds the
// indices: four bytes a slot, so that the question for an address that is not there, which each new
// object begins with, costs one cache line of a small table and looks at no address at all. At most
// half of the slots are taken; a search looks at neighbours one after the other.
//
// An address has the slot (address / 16) modulo a prime. Objects tend to be written in the order of
// their making, so neighbours in memory are neighbours in the table; and threads' heaps, which
// begin at multiples of 64 MiB, do not fall upon each other, as they would with a power of two.
//
// Nothing is ever removed. Not thread safe.
#pragma once

#include "kortools/core/prime.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kortools::archive {

class AddressMap {
public:
    // The index of an address, 0 when it has none.
    unsigned int find(void const *address) const noexcept { return m_slots[FindSlot(address)]; }

    // For an address that has none yet, and an index above all that were inserted. Strong
    // guarantee; throws std::bad_alloc.
    void insert(void const *address, unsigned int index)
    {
        if (m_count + 1 > m_slots.size() / 2) [[unlikely]]
            Grow();
        m_addresses.resize(index); // nothing but null pointers where indices were left out
        m_addresses.push_back(address);
        m_slots[FindSlot(address)] = index;
        ++m_count;
    }

private:
    static constexpr unsigned int first_size = 101; // slots

    std::size_t FindSlot(void const *address) const noexcept
    {
        std::size_t slot = GetHome(address);
        while (m_slots[slot] != 0 && m_addresses[m_slots[slot]] != address) {
            if (++slot == m_slots.size())
                slot = 0;
        }
        return slot;
    }

    // The remainder by two multiplications, where a division would take as long as all the rest:
    // the low 64 bits of n * (2^64 / size) are the fraction of n / size.
    std::size_t GetHome(void const *address) const noexcept
    {
        __extension__ using Wide = unsigned __int128;
        auto const number
            = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(address) >> 4);
        std::uint64_t const fraction = m_reciprocal * number;
        return static_cast<std::size_t>(static_cast<Wide>(fraction) * m_slots.size() >> 64);
    }

    static std::uint64_t GetReciprocal(std::size_t size) noexcept { return UINT64_MAX / size + 1; }

    void Grow()
    {
        std::vector<unsigned int> slots(core::prime_at_or_above(2ULL * m_slots.size()));
        m_slots.swap(slots);
        m_reciprocal = GetReciprocal(m_slots.size());
        for (std::size_t index = 1; index < m_addresses.size(); ++index) {
            if (m_addresses[index] != nullptr)
                m_slots[FindSlot(m_addresses[index])] = static_cast<unsigned int>(index);
        }
    }

    std::vector<void const *> m_addresses;                                 // by index
    std::vector<unsigned int> m_slots = std::vector<unsigned>(first_size); // 0: nothing
    std::uint64_t m_reciprocal = GetReciprocal(first_size); // 2^64 / the count of slots
    std::size_t m_count = 0;                                // slots that are taken
};

} // namespace kortools::archive
