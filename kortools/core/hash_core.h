// SPDX-License-Identifier: MIT
// What CHashMap and CHashTable share: the one open-addressing table of the library.
//
// Layout
//
//   slots  table size x { key, value, state }
//   tags   one byte for each slot, then the first fifteen again (see hash_tags.h)
//
// The slots are the table; the tags and what else follows the slots' pointer only make it fast:
//
// - A search looks at tags and touches a slot only when its tag has the bits of the key's hash.
// - The home slot is hash mod table size. With c = 2^64 / size rounded up, kept beside the size,
// the
//   remainder of any 32-bit hash is the upper half of (c * hash mod 2^64) * size: two
//   multiplications instead of a division, and exact.
// - A rebuild knows that its keys differ, so it looks for empty tags only; it runs over a batch of
//   entries twice, and the first run sends for the memory that the second one needs.
//
// Probing
//
// From the home slot by 1, 3, 5, ... to the offsets 1, 4, 9, ... The table is rebuilt when half of
// its slots are occupied. The offsets of a prime size reach more than half of the slots, so every
// search ends at an empty one.
//
// No array
//
// After a failed allocation, and in a table that was moved from, the array is null. The tags then
// are sixteen empty ones and the factor c is 0, so that each search looks there and finds nothing,
// without asking; the limit of 0 sends Insert to its slow path, which tries to allocate.
#pragma once

#include "kortools/core/hash_iterator.h"
#include "kortools/core/hash_methods.h"
#include "kortools/core/hash_sizes.h"
#include "kortools/core/hash_slot.h"
#include "kortools/core/hash_tags.h"
#include "kortools/export.h"

#include <cstdint>

namespace kortools::core {

inline constexpr Tag no_tags[window_size] = {};

// Only methods written for just this key type are trusted: a class derived from them may have
// replaced GetHash and not know of GetFullHash.
template <typename METHODS, typename K>
concept HasFullHash = std::is_same_v<METHODS, CHashMethods<K>> && requires(K const &key)
{
    static_cast<unsigned>(METHODS::GetFullHash(key));
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
        : HashCore(ExactSize { size_of_new_table(request) })
    {
    }
    HashCore(HashCore const &other)
        : HashCore(ExactSize { other.m_table_size }, other.m_slots != nullptr)
    {
        m_initial_size = other.m_initial_size;
        if (m_slots && other.m_slots)
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

    struct Found {
        Slot *slot;   // null when absent
        unsigned pos; // of it, or else where the key would go
    };
    Found FindLive(KeyArg key) const { return FindSlot(key, Locate(key)); }
    // The same, sending for the home slot at once: for when the key is expected to be there.
    Found FetchLive(KeyArg key) const
    {
        Spot const spot = Locate(key);
        __builtin_prefetch(m_slots + spot.home);
        return FindSlot(key, spot);
    }
    Slot &GetSlot(unsigned pos) const { return m_slots[pos]; }

    // The first live slot at or after `from`, or none.
    unsigned FindActiveElement(unsigned from) const;
    void Advance(unsigned &pos) const
    {
        if (pos != none)
            pos = FindActiveElement(pos + 1);
    }
    // The slot at `pos`, null when it is not live, and moves `pos` to the next live one.
    Slot *Step(unsigned &pos) const
    {
        if (m_count == 0 || pos >= m_table_size) [[unlikely]] {
            pos = none;
            return nullptr;
        }
        Slot *const slot = m_tags[pos] & live_bit ? m_slots + pos : nullptr;
        pos = FindActiveElement(pos + 1);
        return slot;
    }

    template <typename ENTRY> HashIterator<Slot, ENTRY> Begin() const
    {
        return { m_slots, m_tags, m_count != 0 ? m_table_size : 0 };
    }

    // Where the key is, or else where it would go: the first tombstone on its path, if there is
    // one, or the empty slot that ends it.
    unsigned FindPos(KeyArg key) const { return FindSlot(key, Locate(key)).pos; }

    // Rebuilds the table when half of its slots are occupied or, `compact`, when it could be
    // smaller. False, and no change, when there is no reason or no memory.
    bool ReHash(bool compact);

private:
    struct ExactSize {
        unsigned size;
    };
    struct Spot {
        unsigned home; // slot
        Tag tag;
    };

    explicit HashCore(ExactSize exact, bool allocate = true)
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
    unsigned FindEmpty(unsigned home) const;
    template <typename F> void ForEachLive(F visit) const;
    std::size_t TagCount() const { return m_table_size + tag_padding; }

    Spot Locate(KeyArg key) const noexcept;
    Found FindSlot(KeyArg key, Spot spot) const;
    unsigned WalkPath(KeyArg key, unsigned home, Tag tag) const;
    template <typename... VALUE> int InsertAtLimit(unsigned pos, Tag tag, KeyArg key, VALUE &&...);
    template <typename... VALUE> int InsertWithRoom(K key, VALUE... value);
    template <typename... VALUE> void Place(unsigned pos, Tag tag, KeyArg key, VALUE &&...);
    void EndEntry(Found entry);

    bool HasKey(unsigned pos, KeyArg key) const { return METHODS::IsEqual(m_slots[pos].key, key); }
    unsigned Wrap(unsigned pos) const
    {
        if (pos >= m_table_size) [[unlikely]] {
            pos -= m_table_size;
            asm("" : "+r"(pos));
        }
        return pos;
    }
    void SetTag(unsigned pos, Tag tag)
    {
        m_tags[pos] = tag;
        if (pos < window_size - 1) [[unlikely]]
            MirrorTag(pos);
    }
    void MirrorTag(unsigned pos);

    unsigned m_initial_size; // when constructed or last initialised; rebuilding does not change it
    unsigned m_table_size;
    unsigned m_occupied = 0; // slots that are live or deleted
    unsigned m_count = 0;    // live slots
    Slot *m_slots = nullptr;
    Tag *m_tags = const_cast<Tag *>(no_tags); // never written while there is no array
    std::uint64_t m_reciprocal = 0;           // 2^64 / m_table_size, rounded up
    unsigned m_limit = 0;                     // occupied slots at which the table is rebuilt
    unsigned m_path = 1;                      // bits of the probe offsets within a window
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
    std::swap(m_tags, other.m_tags);
    std::swap(m_reciprocal, other.m_reciprocal);
    std::swap(m_limit, other.m_limit);
    std::swap(m_path, other.m_path);
}

template <typename K, typename V, typename METHODS> void HashCore<K, V, METHODS>::AllocateArray()
{
    auto *const tags = static_cast<Tag *>(allocate_table(TagCount(), alignof(Tag)));
    if (!tags)
        return;
    m_slots = new (std::nothrow) Slot[m_table_size];
    if (!m_slots) {
        free_table(tags, alignof(Tag));
        return;
    }
    m_tags = tags;
    std::memset(m_tags, empty_tag, TagCount());
    m_reciprocal = ~std::uint64_t { 0 } / m_table_size + 1;
    m_limit = m_table_size / 2;
    m_path = m_table_size < 11 ? 0x13 : 0x213; // the offset 9 would wrap twice in 5 or 7 slots
}

template <typename K, typename V, typename METHODS> void HashCore<K, V, METHODS>::ReleaseArray()
{
    if (m_slots) {
        EndEntries();
        delete[] m_slots;
        free_table(m_tags, alignof(Tag));
    }
    m_slots = nullptr;
    m_tags = const_cast<Tag *>(no_tags);
    m_reciprocal = 0;
    m_path = 1;
    m_limit = m_occupied = m_count = 0;
}

template <typename K, typename V, typename METHODS> void HashCore<K, V, METHODS>::EndEntries()
{
    if constexpr (!Slot::is_plain) {
        for (unsigned pos = FindActiveElement(0); pos != none; Advance(pos))
            m_slots[pos].End(empty_slot);
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
    std::memset(m_tags, empty_tag, TagCount());
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
        std::memcpy(m_tags, other.m_tags, TagCount());
        m_count = other.m_count;
    } else {
        for (unsigned pos = 0; pos < m_table_size; ++pos) {
            if (other.m_tags[pos] & live_bit) {
                m_slots[pos].FillFrom(std::as_const(other.m_slots[pos]));
                ++m_count;
            } else {
                m_slots[pos].state = other.m_slots[pos].state;
            }
            SetTag(pos, other.m_tags[pos]);
        }
    }
    m_occupied = other.m_occupied;
}

template <typename K, typename V, typename METHODS>
inline auto HashCore<K, V, METHODS>::Locate(KeyArg key) const noexcept -> Spot
{
    if constexpr (HasFullHash<METHODS, K>) {
        __extension__ using Wide = unsigned __int128;
        unsigned const hash = METHODS::GetFullHash(key);
        std::uint64_t const fraction = m_reciprocal * hash;
        return { static_cast<unsigned>((Wide { fraction } * m_table_size) >> 64), live_tag(hash) };
    } else {
        return { m_slots ? METHODS::GetHash(key, m_table_size) : 0, live_bit };
    }
}

template <typename K, typename V, typename METHODS>
inline auto HashCore<K, V, METHODS>::FindSlot(KeyArg key, Spot spot) const -> Found
{
    TagWindow const window(m_tags + spot.home);
    for (unsigned bits = window.GetEqualTo(spot.tag) & m_path; bits != 0; bits &= bits - 1) {
        unsigned const pos = Wrap(spot.home + lowest_bit(bits));
        if (METHODS::IsEqual(m_slots[pos].key, key)) [[likely]]
            return { m_slots + pos, pos };
    }
    if (window.GetEqualTo(empty_tag) & m_path) [[likely]]
        return { nullptr, Wrap(spot.home + lowest_bit(~window.GetLive() & m_path)) };
    unsigned const pos = WalkPath(key, spot.home, spot.tag);
    return { m_tags[pos] & live_bit ? m_slots + pos : nullptr, pos };
}

template <typename K, typename V, typename METHODS>
[[gnu::noinline]] void HashCore<K, V, METHODS>::MirrorTag(unsigned pos)
{
    std::size_t const end = std::size_t { m_table_size } + window_size - 1;
    for (std::size_t i = std::size_t { pos } + m_table_size; i < end; i += m_table_size)
        m_tags[i] = m_tags[pos];
}

// The whole search, one probe after the other, for the paths that leave the window.
template <typename K, typename V, typename METHODS>
[[gnu::noinline]] unsigned HashCore<K, V, METHODS>::WalkPath(
    KeyArg key, unsigned home, Tag wanted) const
{
    unsigned first_deleted = none;
    unsigned pos = home;
    for (unsigned step = 1;; step += 2) {
        Tag const tag = m_tags[pos];
        if (tag == empty_tag)
            return first_deleted != none ? first_deleted : pos;
        if (tag == deleted_tag && first_deleted == none)
            first_deleted = pos;
        if (tag == wanted && HasKey(pos, key))
            return pos;
        pos = Wrap(pos + step);
    }
}

template <typename K, typename V, typename METHODS>
inline unsigned HashCore<K, V, METHODS>::FindEmpty(unsigned home) const
{
    unsigned pos = home;
    for (unsigned step = 1; m_tags[pos] != empty_tag; step += 2)
        pos = Wrap(pos + step);
    return pos;
}

template <typename K, typename V, typename METHODS>
template <typename F>
inline void HashCore<K, V, METHODS>::ForEachLive(F visit) const
{
    std::size_t const end = m_count != 0 ? m_table_size : 0;
    for (std::size_t base = 0; base < end; base += live_mask_size) {
        std::uint64_t live = live_mask(m_tags + base, end - base);
        for (; live != 0; live &= live - 1)
            visit(static_cast<unsigned>(base) + lowest_bit(live));
    }
}

template <typename K, typename V, typename METHODS>
inline unsigned HashCore<K, V, METHODS>::FindActiveElement(unsigned from) const
{
    if (m_count == 0)
        return none;
    for (std::size_t pos = from; pos < m_table_size; pos += 8) {
        std::uint64_t eight;
        std::memcpy(&eight, m_tags + pos, 8);
        if (std::uint64_t const live = eight & 0x8080808080808080U) {
            pos += lowest_bit(live) / 8;
            return pos < m_table_size ? static_cast<unsigned>(pos) : none;
        }
    }
    return none;
}

template <typename K, typename V, typename METHODS>
template <typename... VALUE>
inline void HashCore<K, V, METHODS>::Place(unsigned pos, Tag tag, KeyArg key, VALUE &&...value)
{
    m_slots[pos].Fill(key, std::forward<VALUE>(value)...);
    m_occupied += m_tags[pos] == empty_tag;
    ++m_count;
    SetTag(pos, tag);
}

template <typename K, typename V, typename METHODS>
template <typename... VALUE>
inline int HashCore<K, V, METHODS>::InsertEntry(KeyArg key, VALUE &&...value)
{
    Spot const spot = Locate(key);
    __builtin_prefetch(m_slots + spot.home, 1);
    Found const found = FindSlot(key, spot);
    if (found.slot) {
        if constexpr (sizeof...(VALUE) != 0)
            found.slot->value = (std::forward<VALUE>(value), ...);
        return 0;
    }
    if (m_occupied + 1 >= m_limit) [[unlikely]]
        return InsertAtLimit(found.pos, spot.tag, key, std::forward<VALUE>(value)...);
    Place(found.pos, spot.tag, key, std::forward<VALUE>(value)...);
    return 1;
}

// The insertion that may fill half of the table. More than half would break the promise that every
// search ends: where a rebuild could not get memory, it is tried again before the next new key.
template <typename K, typename V, typename METHODS>
template <typename... VALUE>
int HashCore<K, V, METHODS>::InsertAtLimit(unsigned pos, Tag tag, KeyArg key, VALUE &&...value)
{
    if (m_occupied >= m_limit && m_tags[pos] == empty_tag)
        return InsertWithRoom<std::remove_cvref_t<VALUE>...>(key, std::forward<VALUE>(value)...);
    Place(pos, tag, key, std::forward<VALUE>(value)...);
    if (m_occupied >= m_limit)
        ReHash(false);
    return 1;
}

// Key and value are copies because the arguments of Insert may lie in the array that is given up.
template <typename K, typename V, typename METHODS>
template <typename... VALUE>
int HashCore<K, V, METHODS>::InsertWithRoom(K key, VALUE... value)
{
    if (!m_slots)
        AllocateArray();
    else
        ReHash(false);
    return m_occupied < m_limit ? InsertEntry(key, std::move(value)...) : 0;
}

template <typename K, typename V, typename METHODS>
inline void HashCore<K, V, METHODS>::EndEntry(Found entry)
{
    SetTag(entry.pos, deleted_tag);
    --m_count;
    entry.slot->End(deleted_slot);
}

template <typename K, typename V, typename METHODS>
inline int HashCore<K, V, METHODS>::RemoveEntry(KeyArg key, bool rehash)
{
    Found const found = FetchLive(key);
    if (!found.slot)
        return 0;
    EndEntry(found);
    if (rehash && m_count >= 24)
        ReHash(false);
    return 1;
}

template <typename K, typename V, typename METHODS>
void HashCore<K, V, METHODS>::RemoveEntries(HashCore const &other)
{
    for (unsigned pos = other.FindActiveElement(0); pos != none; other.Advance(pos)) {
        if (Found const own = FindLive(other.m_slots[pos].key); own.slot)
            EndEntry(own);
    }
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
    HashCore next(ExactSize { size });
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
        unsigned home;
        Tag tag;
    };
    constexpr unsigned batch_size = 32;
    Move batch[batch_size];
    unsigned batch_count = 0;
    auto const flush = [&] {
        for (unsigned i = 0; i < batch_count; ++i) {
            unsigned const to = FindEmpty(batch[i].home);
            m_slots[to].TakeFrom(*batch[i].from);
            SetTag(to, batch[i].tag);
        }
        m_occupied = m_count += batch_count;
        batch_count = 0;
    };
    other.ForEachLive([&](unsigned pos) {
        Slot &slot = other.m_slots[pos];
        Spot const spot = Locate(slot.key);
        __builtin_prefetch(m_tags + spot.home, 1);
        __builtin_prefetch(m_slots + spot.home, 1);
        batch[batch_count++] = { &slot, spot.home, spot.tag };
        if (batch_count == batch_size)
            flush();
    });
    flush();
    if constexpr (Slot::is_relocatable)
        other.m_count = 0; // its entries live on here
}

} // namespace kortools::core
