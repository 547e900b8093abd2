// SPDX-License-Identifier: MIT
// The members of HashCore; included by hash_core.h only.
#pragma once

#include "kortools/core/hash_core.h"

namespace kortools::core {

template <typename K, typename V, typename METHODS>
void HashCore<K, V, METHODS>::Swap(HashCore &other) noexcept
{
    std::swap(m_initial_size, other.m_initial_size);
    std::swap(m_table_size, other.m_table_size);
    std::swap(m_occupied, other.m_occupied);
    std::swap(m_count, other.m_count);
    std::swap(m_slots, other.m_slots);
    m_tags.Swap(other.m_tags);
    if constexpr (is_indexed)
        m_index.Swap(other.m_index);
    std::swap(m_limit, other.m_limit);
}

template <typename K, typename V, typename METHODS> void HashCore<K, V, METHODS>::AllocateArray()
{
    bool is_ready = m_tags.Allocate(m_table_size);
    if constexpr (is_indexed)
        is_ready = is_ready && m_index.Allocate(m_table_size);
    if (is_ready)
        m_slots = new (std::nothrow) Slot[m_table_size];
    if (m_slots)
        m_limit = m_table_size / 2;
    else
        ReleaseArray();
}

template <typename K, typename V, typename METHODS> void HashCore<K, V, METHODS>::ReleaseArray()
{
    EndEntries();
    delete[] m_slots;
    m_slots = nullptr;
    m_tags.Release();
    if constexpr (is_indexed)
        m_index.Release();
    m_limit = m_occupied = m_count = 0;
}

template <typename K, typename V, typename METHODS> void HashCore<K, V, METHODS>::EndEntries()
{
    if constexpr (!Slot::is_plain) {
        if (m_count != 0)
            m_tags.ForEachLive([this](unsigned pos) { m_slots[pos].End(empty_slot); });
    }
}

template <typename K, typename V, typename METHODS>
void HashCore<K, V, METHODS>::InitHashTable(unsigned int count)
{
    unsigned const size = m_slots ? size_for_count(count) : size_of_new_table(count);
    if (m_slots && size == m_initial_size)
        return;
    ReleaseArray();
    m_initial_size = m_table_size = size;
    AllocateArray();
}

template <typename K, typename V, typename METHODS> void HashCore<K, V, METHODS>::Clear()
{
    if (!m_slots)
        return;
    EndEntries();
    for (unsigned pos = 0; pos < m_table_size; ++pos)
        m_slots[pos].state = empty_slot;
    m_tags.Clear();
    if constexpr (is_indexed)
        m_index.Clear();
    m_occupied = m_count = 0;
}

template <typename K, typename V, typename METHODS> void HashCore<K, V, METHODS>::Free()
{
    ReleaseArray();
    m_initial_size = m_table_size = default_table_size;
    AllocateArray();
}

template <typename K, typename V, typename METHODS>
void HashCore<K, V, METHODS>::CopyArray(HashCore const &other)
{
    if constexpr (Slot::is_plain) {
        std::memcpy(static_cast<void *>(m_slots), other.m_slots, sizeof(Slot) * m_table_size);
    } else {
        for (unsigned pos = 0; pos < m_table_size; ++pos) {
            if (other.m_tags[pos] & live_bit) {
                m_slots[pos].CopyFrom(other.m_slots[pos]);
                m_tags.Set(pos, live_bit); // so that it is ended when a later copy throws
                m_count = pos + 1;
            } else {
                m_slots[pos].state = other.m_slots[pos].state;
            }
        }
    }
    m_tags.CopyFrom(other.m_tags);
    if constexpr (is_indexed)
        m_index.CopyFrom(other.m_index);
    m_occupied = other.m_occupied;
    m_count = other.m_count;
}

template <typename K, typename V, typename METHODS>
inline auto HashCore<K, V, METHODS>::Locate(KeyArg key) const noexcept -> Spot
{
    if constexpr (is_indexed)
        return { 0, live_bit, { 0, METHODS::GetSearchHash(key) } };
    else if constexpr (HasFullHash<METHODS, K>)
        return LocateHashes({ METHODS::GetFullHash(key), 0 });
    else
        return { m_slots ? METHODS::GetHash(key, m_table_size) : 0, live_bit, {} };
}

template <typename K, typename V, typename METHODS>
inline auto HashCore<K, V, METHODS>::LocateHashes(KeyHashes hashes) const -> Spot
{
    return { m_tags.GetHome(hashes.place), live_tag(hashes.place), hashes };
}

template <typename K, typename V, typename METHODS>
inline auto HashCore<K, V, METHODS>::Fetch(KeyArg key) const -> Spot
{
    Spot const spot = Locate(key);
    if constexpr (!is_indexed)
        __builtin_prefetch(m_slots + spot.home, 1);
    return spot;
}

template <typename K, typename V, typename METHODS>
inline auto HashCore<K, V, METHODS>::FindSlot(KeyArg key, Spot spot) const -> Found
{
    if constexpr (is_indexed) {
        unsigned const pos = m_index.Find(spot.hashes.search,
            [&](unsigned at) { return METHODS::IsEqual(m_slots[at].key, key); });
        return { pos != none ? m_slots + pos : nullptr, pos };
    } else {
        TagWindow const window(m_tags.GetAt(spot.home));
        unsigned bits = m_tags.OnPath(window.GetEqualTo(spot.tag));
        for (; bits != 0; bits &= bits - 1) {
            unsigned const pos = m_tags.Wrap(spot.home + lowest_bit(bits));
            if (METHODS::IsEqual(m_slots[pos].key, key)) [[likely]]
                return { m_slots + pos, pos };
        }
        if (m_tags.OnPath(window.GetEqualTo(empty_tag)) == 0) [[unlikely]]
            return WalkPath(key, spot.home, spot.tag);
        unsigned const free = lowest_bit(m_tags.OnPath(~window.GetLive()));
        return { nullptr, m_tags.Wrap(spot.home + free) };
    }
}

// The whole search, one probe after the other, for the paths that leave the window.
template <typename K, typename V, typename METHODS>
[[gnu::noinline]] auto HashCore<K, V, METHODS>::WalkPath(
    KeyArg key, unsigned home, unsigned wanted) const -> Found
{
    unsigned pos = home;
    for (unsigned step = 1; m_tags[pos] != empty_tag; step += 2) {
        if (m_tags[pos] == wanted && METHODS::IsEqual(m_slots[pos].key, key))
            return { m_slots + pos, pos };
        pos = m_tags.Wrap(pos + step);
    }
    return { nullptr, m_tags.FindFree(home) };
}

// Where an absent key goes. The slow hash of an indexed table is computed here.
template <typename K, typename V, typename METHODS>
inline unsigned HashCore<K, V, METHODS>::FindFree(
    [[maybe_unused]] KeyArg key, Found absent, [[maybe_unused]] Spot &spot) const
{
    if constexpr (is_indexed) {
        spot = LocateHashes({ METHODS::GetFullHash(key), spot.hashes.search });
        return m_tags.FindFree(spot.home);
    } else {
        return absent.pos;
    }
}

template <typename K, typename V, typename METHODS>
unsigned HashCore<K, V, METHODS>::FindPos(KeyArg key) const
{
    Spot spot = Locate(key);
    Found const found = FindSlot(key, spot);
    return found.slot ? found.pos : FindFree(key, found, spot);
}

template <typename K, typename V, typename METHODS>
inline auto HashCore<K, V, METHODS>::Step(unsigned &pos) const -> Slot *
{
    if (m_count == 0 || pos >= m_table_size) [[unlikely]] {
        pos = none;
        return nullptr;
    }
    Slot *const slot = m_tags[pos] & live_bit ? m_slots + pos : nullptr;
    pos = m_tags.FindLive(pos + 1);
    return slot;
}

template <typename K, typename V, typename METHODS>
inline void HashCore<K, V, METHODS>::SetLive(unsigned pos, Spot spot)
{
    m_tags.Set(pos, spot.tag);
    if constexpr (is_indexed)
        m_index.Add(spot.hashes, pos);
}

template <typename K, typename V, typename METHODS>
template <typename... VALUE>
inline void HashCore<K, V, METHODS>::Place(unsigned pos, Spot spot, KeyArg key, VALUE &&...value)
{
    m_slots[pos].Fill(key, std::forward<VALUE>(value)...);
    m_occupied += m_tags[pos] == empty_tag;
    ++m_count;
    SetLive(pos, spot);
}

template <typename K, typename V, typename METHODS>
template <typename... VALUE>
inline int HashCore<K, V, METHODS>::InsertEntry(KeyArg key, VALUE &&...value)
{
    Spot spot = Fetch(key);
    Found const found = FindSlot(key, spot);
    if (found.slot) {
        if constexpr (sizeof...(VALUE) != 0)
            found.slot->value = (std::forward<VALUE>(value), ...);
        return 0;
    }
    if (m_occupied + 1 >= m_limit) [[unlikely]]
        return InsertAtLimit(key, std::forward<VALUE>(value)...);
    unsigned const pos = FindFree(key, found, spot);
    Place(pos, spot, key, std::forward<VALUE>(value)...);
    return 1;
}

// The insertion of an absent key that may fill half of the table. More than half would break the
// promise that every search ends: where a rebuild could not get memory, it is tried again before
// the next new key.
template <typename K, typename V, typename METHODS>
template <typename... VALUE>
[[gnu::noinline]] int HashCore<K, V, METHODS>::InsertAtLimit(KeyArg key, VALUE &&...value)
{
    Spot spot = Locate(key);
    unsigned const pos = FindFree(key, FindSlot(key, spot), spot);
    if (m_occupied >= m_limit && m_tags[pos] == empty_tag)
        return InsertWithRoom<std::remove_cvref_t<VALUE>...>(key, std::forward<VALUE>(value)...);
    Place(pos, spot, key, std::forward<VALUE>(value)...);
    if (m_occupied >= m_limit)
        ReHash(false);
    return 1;
}

// Key and value are copies because the arguments of Insert may lie in the array that is given up.
template <typename K, typename V, typename METHODS>
template <typename... VALUE>
[[gnu::noinline]] int HashCore<K, V, METHODS>::InsertWithRoom(K key, VALUE... value)
{
    if (!m_slots)
        AllocateArray();
    else
        ReHash(false);
    return m_occupied < m_limit ? InsertEntry(key, std::move(value)...) : 0;
}

// Makes the key's slot a tombstone; false when it is absent.
template <typename K, typename V, typename METHODS>
inline bool HashCore<K, V, METHODS>::EndEntry(KeyArg key, Spot spot)
{
    Found const found = FindSlot(key, spot);
    if (!found.slot)
        return false;
    m_tags.Set(found.pos, deleted_tag);
    if constexpr (is_indexed)
        m_index.Remove(spot.hashes.search, found.pos);
    --m_count;
    found.slot->End(deleted_slot);
    return true;
}

template <typename K, typename V, typename METHODS>
inline int HashCore<K, V, METHODS>::RemoveEntry(KeyArg key, bool rehash)
{
    if (!EndEntry(key, Fetch(key)))
        return 0;
    if (rehash && m_count >= 24)
        ReHash(false);
    return 1;
}

template <typename K, typename V, typename METHODS>
void HashCore<K, V, METHODS>::RemoveEntries(HashCore const &other)
{
    other.m_tags.ForEachLive([&](unsigned pos) {
        KeyArg key = other.m_slots[pos].key;
        EndEntry(key, Locate(key));
    });
}

template <typename K, typename V, typename METHODS>
bool HashCore<K, V, METHODS>::ReHash(bool compact)
{
    if (!compact && m_occupied < m_limit)
        return false;
    unsigned const size = compact ? size_of_compact_table(m_count)
                                  : size_of_next_table(m_table_size, m_occupied, m_count);
    if ((compact && size == m_table_size) || size / 2 <= m_count)
        return false;
    HashCore next(ExactSize { size }, true);
    if (!next.m_slots)
        return false;
    next.TakeEntries(*this);
    next.m_initial_size = m_initial_size;
    Swap(next);
    return true;
}

template <typename K, typename V, typename METHODS>
void HashCore<K, V, METHODS>::TakeEntries(HashCore &other)
{
    struct Move {
        Slot *from;
        Spot to;
    };
    constexpr unsigned batch_size = 32;
    Move batch[batch_size];
    unsigned batch_count = 0;
    auto const flush = [&] {
        for (unsigned i = 0; i < batch_count; ++i) {
            unsigned const pos = m_tags.FindFree(batch[i].to.home);
            m_slots[pos].TakeFrom(*batch[i].from);
            SetLive(pos, batch[i].to);
            ++m_count;
        }
        batch_count = 0;
    };
    other.m_tags.ForEachLive([&](unsigned pos) {
        Slot &slot = other.m_slots[pos];
        Spot spot;
        if constexpr (is_indexed) {
            spot = LocateHashes(other.m_index.GetHashes(pos));
            m_index.Prefetch(spot.hashes.search);
        } else {
            spot = Locate(slot.key);
        }
        __builtin_prefetch(m_tags.GetAt(spot.home), 1);
        __builtin_prefetch(m_slots + spot.home, 1);
        batch[batch_count++] = { &slot, spot };
        if (batch_count == batch_size)
            flush();
    });
    flush();
    m_occupied = m_count;
    if constexpr (Slot::is_relocatable)
        other.m_count = 0; // its entries live on here
}

} // namespace kortools::core
