// SPDX-License-Identifier: MIT
// CHashTable: a set of keys, the CHashMap without values. See hash_map.h for how it grows, what
// invalidates positions and what happens without memory, hash_methods.h for METHODS.
//
//   CHashTable<int> seen;
//   if (seen.Insert(id))
//       Visit(id);
#pragma once

#include "kortools/core/hash_core.h"

template <typename K, typename METHODS = CHashMethods<K>>
class CHashTable : public kortools::core::HashCore<K, void, METHODS> {
    using Core = kortools::core::HashCore<K, void, METHODS>;

public:
    // `size` slots, made a prime: 23 as it is, else the prime at or above it, at least 5.
    explicit CHashTable(unsigned int size)
        : Core(size)
    {
    }
    CHashTable()
        : CHashTable(kortools::core::default_table_size)
    {
    }
    // Copies have the same size and positions. A table that was moved from is an empty one of 23
    // slots.
    CHashTable(CHashTable const &) = default;
    CHashTable(CHashTable &&) noexcept = default;
    CHashTable &operator=(CHashTable const &) = default;
    CHashTable &operator=(CHashTable &&) noexcept = default;
    ~CHashTable() override = default;

    // 1 when the key is new, 0 when it was there.
    int Insert(K const &key) { return Core::InsertEntry(key); }

    // 1 when removed, 0 when absent. With `rehash`, and 24 or more keys left, the table may be
    // rebuilt. The slot becomes a tombstone, which the next key that passes it takes.
    int Remove(K const &key, bool rehash = true) { return Core::RemoveEntry(key, rehash); }

    // Removes every key of `other`, which may be this table. Never rebuilds.
    void Remove(CHashTable const &other) { Core::RemoveEntries(other); }

    // The table's own key, or null. Valid until the next insertion, or removal of this key.
    K const *Find(K const &key) const { return Core::KeyOf(Core::FetchLive(key)); }
    int IsFound(K const &key) const { return Core::FindLive(key) != nullptr; }

    // Iteration: each form gives the key at `pos` and moves `pos` to the next one, or to -1 after
    // the last. What has been given may be removed while iterating, without rebuilding. A position
    // without a key gives one as its default constructor makes it, or null.
    K const *GetNext(unsigned int &pos) const { return Core::KeyOf(Core::Step(pos)); }
    void GetNext(unsigned int &pos, K &key) const { GetNext(pos, &key); }
    void GetNext(unsigned int &pos, K *key) const // may be null
    {
        Core::Give(key, Core::KeyOf(Core::Step(pos)));
    }

    // Range-for over the keys. The table must not change meanwhile.
    auto begin() const { return Core::template Begin<K const &>(); }
    std::default_sentinel_t end() const { return {}; }
};
