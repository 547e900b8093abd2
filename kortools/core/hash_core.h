// SPDX-License-Identifier: MIT
// What CHashMap and CHashTable share: the one open-addressing table of the library.
//
// The slots, `table size` times key, value and state, are the table. Everything that follows their
// pointer only makes it fast:
//
// - hash_tags.h: a byte for each slot, by which a search knows which slot to look at, and the
//   remainder of the hash without a division. A search for an absent key rarely touches a slot.
// - hash_index.h: for texts, another way to their slots, which avoids their slow hash.
// - A rebuild knows that its keys differ, so it looks for free slots only. It runs over a batch of
//   entries twice, and the first run sends for the memory that the second one needs.
//
// After a failed allocation, and in a table that was moved from, there is no array. Tags and index
// then answer every search with "absent", and the limit of 0 sends an insertion to its slow path,
// which tries to allocate.
#pragma once

#include "kortools/core/hash_index.h"
#include "kortools/core/hash_iterator.h"
#include "kortools/core/hash_methods.h"
#include "kortools/core/hash_sizes.h"
#include "kortools/core/hash_slot.h"
#include "kortools/core/hash_tags.h"
#include "kortools/export.h"

namespace kortools::core {

// Only methods written for just this key type are trusted: a class derived from them may have
// replaced GetHash and not know of the others.
template <typename METHODS, typename K>
concept HasFullHash = std::is_same_v<METHODS, CHashMethods<K>> && requires(K const &key)
{
    static_cast<unsigned>(METHODS::GetFullHash(key));
};
template <typename METHODS, typename K>
concept HasSearchHash = HasFullHash<METHODS, K> && requires(K const &key)
{
    static_cast<unsigned>(METHODS::GetSearchHash(key));
};

template <typename K, typename V, typename METHODS> class HashCore {
public:
    // Makes room for about `count` entries. Does nothing, and keeps the entries, when that gives
    // the size that the table was made or last initialised with; else all entries are lost.
    void InitHashTable(unsigned int count);

    bool IsEmpty() const { return m_count == 0; }
    unsigned int GetCount() const { return m_count; }
    unsigned int GetHashTableSize() const { return m_table_size; } // slots

    // The position of the first entry, -1 in an empty table. Positions are slots in ascending
    // order; an insertion may move entries to others, a removal (without rebuilding) moves none.
    unsigned int GetFirst() const { return FindActiveElement(0); }

    void Clear(); // keeps the array
    void Free();  // back to an empty table of 23 slots

protected:
    using Slot = HashSlot<K, V>;
    using KeyArg
        = std::conditional_t<std::is_trivially_copyable_v<K> && sizeof(K) <= 16, K, K const &>;
    static constexpr unsigned none = ~0U; // as a position

    explicit HashCore(unsigned int request)
        : HashCore(ExactSize { size_of_new_table(request) }, true)
    {
    }
    HashCore(HashCore const &other)
        : HashCore(ExactSize { other.m_table_size }, other.m_slots != nullptr)
    {
        m_initial_size = other.m_initial_size;
        if (m_slots)
            CopyArray(other);
    }
    HashCore(HashCore &&other) noexcept
        : HashCore(ExactSize { default_table_size }, false)
    {
        Swap(other);
    }
    HashCore &operator=(HashCore const &other)
    {
        if (this != &other) {
            HashCore copy(other);
            Swap(copy);
        }
        return *this;
    }
    HashCore &operator=(HashCore &&other) noexcept
    {
        HashCore taken(std::move(other));
        Swap(taken);
        return *this;
    }
    virtual ~HashCore() { ReleaseArray(); }

    void Swap(HashCore &other) noexcept;

    // 1 when an entry was added, 0 when there was one, whose value is replaced, or when there is no
    // memory for one. `value` is nothing for a set, else one argument.
    template <typename... VALUE> int InsertEntry(KeyArg key, VALUE &&...value);
    int RemoveEntry(KeyArg key, bool rehash);
    void RemoveEntries(HashCore const &other);

    Slot *FindLive(KeyArg key) const { return FindSlot(key, Locate(key)).slot; } // null when absent

    // The same, sending for the home slot at once: for when the key is expected to be there.
    Slot *FetchLive(KeyArg key) const { return FindSlot(key, Fetch(key)).slot; }

    // Where the key is, or else where it would go: the first tombstone on its path, if there is
    // one, or the empty slot that ends it.
    unsigned FindPos(KeyArg key) const;

    // The first live slot at or after `from`, or none.
    unsigned FindActiveElement(unsigned from) const
    {
        return m_count != 0 ? m_tags.FindLive(from) : none;
    }
    // The slot at `pos`, null when it is not live, and moves `pos` to the next live one.
    Slot *Step(unsigned &pos) const;

    static K const *KeyOf(Slot const *slot) { return slot ? std::addressof(slot->key) : nullptr; }

    // *target = *source, or the default value without a source; nothing without a target.
    template <typename T> static void Give(T *target, T const *source)
    {
        if (target && source)
            *target = *source;
        else if (target)
            *target = T();
    }

    template <typename ENTRY> HashIterator<Slot, ENTRY> Begin() const
    {
        return { m_slots, m_tags.GetAt(0), m_count != 0 ? m_table_size : 0 };
    }
    Slot const &GetSlot(unsigned pos) const { return m_slots[pos]; }

    // Rebuilds the table when half of its slots are occupied or, `compact`, when it could be
    // smaller. False, and no change, when there is no reason or no memory.
    bool ReHash(bool compact);

private:
    static constexpr bool is_indexed = HasSearchHash<METHODS, K>;

    struct ExactSize {
        unsigned size;
    };
    struct Spot {
        unsigned home; // slot
        unsigned tag;
        KeyHashes hashes; // of an indexed table
    };
    struct Found {
        Slot *slot;   // null when absent
        unsigned pos; // of it, or else where the key would go (none in an indexed table)
    };

    HashCore(ExactSize exact, bool allocate)
        : m_initial_size(exact.size)
        , m_table_size(exact.size)
    {
        if (allocate)
            AllocateArray();
    }

    void AllocateArray();
    void ReleaseArray();
    void EndEntries();
    void CopyArray(HashCore const &other);
    void TakeEntries(HashCore &other);

    Spot Locate(KeyArg key) const noexcept;
    Spot LocateHashes(KeyHashes hashes) const;
    Spot Fetch(KeyArg key) const;
    Found FindSlot(KeyArg key, Spot spot) const;
    Found WalkPath(KeyArg key, unsigned home, unsigned tag) const;
    unsigned FindFree(KeyArg key, Found absent, Spot &spot) const;

    template <typename... VALUE> int InsertAtLimit(KeyArg key, VALUE &&...value);
    template <typename... VALUE> int InsertWithRoom(K key, VALUE... value);
    template <typename... VALUE> void Place(unsigned pos, Spot spot, KeyArg key, VALUE &&...value);
    void SetLive(unsigned pos, Spot spot);
    bool EndEntry(KeyArg key, Spot spot);

    unsigned m_initial_size; // when constructed or last initialised; rebuilding does not change it
    unsigned m_table_size;
    unsigned m_occupied = 0; // slots that are live or deleted
    unsigned m_count = 0;    // live slots
    Slot *m_slots = nullptr;
    HashTags m_tags;
    [[no_unique_address]] std::conditional_t<is_indexed, KeyIndex, NoKeyIndex> m_index;
    unsigned m_limit = 0; // occupied slots at which the table is rebuilt
};

// Implementation

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
