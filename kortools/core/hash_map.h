// SPDX-License-Identifier: MIT
// CHashMap: values by key, in one flat array without an allocation per entry.
//
// Keys and values are copied in. METHODS (see hash_methods.h) hashes and compares keys; ARG_K is
// how functions take them, such as `int` or `CXTString<wchar_t> const &`. Used by one thread at a
// time, or by several that only read.
//
// A map starts with 23 slots and is rebuilt, usually larger, when half of its slots are occupied by
// entries and by tombstones, which removed entries leave. An insertion may therefore move all
// entries: it invalidates pointers, references and positions. No other operation moves entries, but
// for a removal that is allowed to rebuild. Entries are visited in the order of their slots, which
// says nothing about the order of insertion.
//
// Nothing throws, but for what keys and values throw. When there is no memory for a new map's
// array, the map is empty and each insertion tries to get it again; when there is none for a larger
// one, the map keeps what it has. Insert returns 0 for what it cannot take.
//
//   CHashMap<int, int, CXTString<wchar_t>> names;
//   names.Insert(7, L"seven");
//   if (CXTString<wchar_t> const *name = names.Find(7))
//       Show(*name);
//   for (unsigned int pos = names.GetFirst(); pos != -1U;) {
//       int key;
//       CXTString<wchar_t> const &name = names.GetNext(pos, key);
//       Show(key, name);
//   }
//   for (auto [key, name] : names) // faster
//       Show(key, name);
#pragma once

#include "kortools/core/hash_core.h"
#include "kortools/core/hash_iterator.h"

template <typename K, typename ARG_K, typename V, typename METHODS = CHashMethods<K>>
class CHashMap : public kortools::core::HashCore<K, V, METHODS> {
    using Core = kortools::core::HashCore<K, V, METHODS>;
    using typename Core::Slot;

public:
    // `size` slots, made a prime: 23 as it is, else the prime at or above it, at least 5.
    explicit CHashMap(unsigned int size)
        : Core(size)
    {
    }
    CHashMap()
        : CHashMap(kortools::core::default_table_size)
    {
    }
    // Copies have the same size and positions. A map that was moved from is an empty one of 23
    // slots.
    CHashMap(CHashMap const &) = default;
    CHashMap(CHashMap &&) noexcept = default;
    CHashMap &operator=(CHashMap const &) = default;
    CHashMap &operator=(CHashMap &&) noexcept = default;
    ~CHashMap() override = default;

    // 1 when the key is new, 0 when it was there, with another value now.
    int Insert(ARG_K key, V const &value) { return Core::InsertEntry(key, value); }
    int Insert2(ARG_K key, V value) { return Core::InsertEntry(key, std::move(value)); }

    // 1 when removed, 0 when absent. With `rehash`, and 24 or more entries left, the map may be
    // rebuilt. The slot becomes a tombstone, which the next key that passes it takes.
    int Remove(ARG_K key, bool rehash = true) { return Core::RemoveEntry(key, rehash); }

    // Removes every key of `other`, which may be this map. Never rebuilds.
    void Remove(CHashMap const &other) { Core::RemoveEntries(other); }

    // The value, or null. Valid until the next insertion, or removal of this key.
    V *Find(ARG_K key) { return FindValue(key); }
    V const *Find(ARG_K key) const { return FindValue(key); }

    // Nonzero when found. A copy of the value then; else `value` stays as it is.
    int Find(ARG_K key, V &value) const
    {
        V const *const found = FindValue(key);
        if (found)
            value = *found;
        return found != nullptr;
    }
    // Nonzero when found; else a null pointer.
    int Find(ARG_K key, V *&value) { return (value = FindValue(key)) != nullptr; }
    int Find(ARG_K key, V const *&value) const { return (value = FindValue(key)) != nullptr; }

    int IsFound(ARG_K key) const { return Core::FindLive(key) != nullptr; }

    // Iteration: each form gives the entry at `pos` and moves `pos` to the next one, or to -1 after
    // the last. What has been given may be removed while iterating, without rebuilding. A position
    // without an entry gives a key and a value as their default constructors make them, or null.
    V &GetNext(unsigned int &pos, K &key)
    {
        Slot *const slot = Step(pos, &key);
        return slot ? slot->value : NoValue();
    }
    V const &GetNext(unsigned int &pos, K &key) const
    {
        Slot const *const slot = Step(pos, &key);
        return slot ? slot->value : NoValue();
    }
    void GetNext(unsigned int &pos, V *&value) requires(!std::is_same_v<K, V *>)
    {
        value = ValueOf(Core::Step(pos));
    }
    void GetNext(unsigned int &pos, V const *&value) const requires(!std::is_same_v<K, V const *>)
    {
        value = ValueOf(Core::Step(pos));
    }
    void GetNext(unsigned int &pos, K &key, V &value) const { GetNext(pos, &key, &value); }
    void GetNext(unsigned int &pos, K &key, V *&value) { value = ValueOf(Step(pos, &key)); }
    void GetNext(unsigned int &pos, K &key, V const *&value) const
    {
        value = ValueOf(Step(pos, &key));
    }
    void GetNext(unsigned int &pos, K *key, V *value) const // either may be null
    {
        Slot *const slot = Step(pos, key);
        Core::Give(value, ValueOf(slot));
    }

    // Range-for over entries of `K const &key` and `V &value`. The map must not change meanwhile,
    // but for the values.
    auto begin() { return Core::template Begin<kortools::core::HashEntry<K, V>>(); }
    auto begin() const { return Core::template Begin<kortools::core::HashEntry<K, V const>>(); }
    std::default_sentinel_t end() const { return {}; }

private:
    static V *ValueOf(Slot *slot) { return slot ? std::addressof(slot->value) : nullptr; }
    V *FindValue(ARG_K key) const { return ValueOf(Core::FetchLive(key)); }
    Slot *Step(unsigned &pos, K *key) const
    {
        Slot *const slot = Core::Step(pos);
        Core::Give(key, Core::KeyOf(slot));
        return slot;
    }
    static V &NoValue()
    {
        static V s_value;
        return s_value = V();
    }
};

KOR_EXTERN_TEMPLATE(KORTOOLS_API kortools::core::HashCore<int, int, CHashMethods<int>>);
KOR_EXTERN_TEMPLATE(KORTOOLS_API CHashMap<int, int, int, CHashMethods<int>>);
