// SPDX-License-Identifier: MIT
// A second way into a hash table, for keys whose slot is expensive to compute.
//
// The hash that places a text takes about four processor cycles per character, because each step
// needs the one before. A table of texts therefore keeps an index from another, much faster hash
// to the position of each live slot, and computes the slow one for keys that it has not got and
// must place. It is also kept beside each slot, so that a rebuild looks at no text at all.
//
// The index is a power of two of entries, at most two thirds of them in use, with linear probing.
// Removing moves later entries up, so that there are no tombstones.
#pragma once

#include "kortools/export.h"

#include <cstddef>
#include <cstring>

namespace kortools::core {

struct KeyHashes {
    unsigned place;  // the hash that gives the home slot
    unsigned search; // the fast one
};

class KeyIndex {
public:
    static constexpr unsigned none = ~0U; // as a position

    KeyIndex() = default;
    KeyIndex(KeyIndex const &) = delete;
    KeyIndex &operator=(KeyIndex const &) = delete;
    ~KeyIndex() { Release(); }

    // For a table of `size` slots, of which no more than half are ever live. False without memory.
    KORTOOLS_API bool Allocate(unsigned size) noexcept;
    KORTOOLS_API void Release() noexcept;
    KORTOOLS_API void Swap(KeyIndex &other) noexcept;
    KORTOOLS_API void Clear();
    KORTOOLS_API void CopyFrom(KeyIndex const &other); // of the same size

    // The position of the key with this hash for which is_key(position) holds, or none.
    template <typename F> unsigned Find(unsigned search, F is_key) const
    {
        for (unsigned i = search & m_mask;; i = (i + 1) & m_mask) {
            Entry const entry = m_entries[i];
            if (entry.pos == none)
                return none;
            if (entry.search == search && is_key(entry.pos)) [[likely]]
                return entry.pos;
        }
    }
    KeyHashes GetHashes(unsigned pos) const { return m_hashes[pos]; }
    void Prefetch(unsigned search) const { __builtin_prefetch(m_entries + (search & m_mask), 1); }

    void Add(KeyHashes hashes, unsigned pos) // a key that is not in the index
    {
        m_hashes[pos] = hashes;
        unsigned i = hashes.search & m_mask;
        while (m_entries[i].pos != none)
            i = (i + 1) & m_mask;
        m_entries[i] = { hashes.search, pos };
    }
    KORTOOLS_API void Remove(unsigned search, unsigned pos); // a key that is in the index

private:
    struct Entry {
        unsigned search;
        unsigned pos; // none marks a free entry
    };
    static constexpr Entry no_entry { 0, none };

    std::size_t GetEntriesSize() const { return sizeof(Entry) * (std::size_t { m_mask } + 1); }

    Entry *m_entries = const_cast<Entry *>(&no_entry); // never written while there is no array
    KeyHashes *m_hashes = nullptr;                     // of live slots, by position
    unsigned m_mask = 0;                               // number of entries - 1
    unsigned m_size = 0;                               // number of slots
};

// What a table without an index has instead.
struct NoKeyIndex { };

// A hash of any bytes, of good quality and fast; different in each release and on each system, so
// never to be stored.
KORTOOLS_API unsigned hash_bytes(void const *bytes, std::size_t size) noexcept;

} // namespace kortools::core
