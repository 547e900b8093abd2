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
    Found WalkPath(KeyArg key, unsigned home, unsigned wanted) const;
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

} // namespace kortools::core

// Implementation

#include "kortools/core/hash_core_impl.h"
