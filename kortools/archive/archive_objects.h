// SPDX-License-Identifier: MIT
// What an archive remembers of the objects and classes that it has written or read.
#pragma once

#include "kortools/archive/address_map.h"
#include "kortools/archive/runtime_class.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kortools::archive {

// The indices of the objects and classes written so far, by address.
class StoreMap {
public:
    unsigned int find(void const *address) const { return m_indices.find(address); } // 0: none
    void insert(void const *address, unsigned int index); // throws CXMemoryException

    // Objects of one class come in runs: the class written last.
    CXRuntimeClass const *m_lastClass = nullptr;
    unsigned int m_lastClassIndex = 0;

private:
    AddressMap m_indices;
};

// The objects and classes read so far, by index. Index 0 is the null pointer.
class LoadArray {
public:
    struct LoadedClass {
        CXRuntimeClass const *m_class;
        unsigned int m_schema; // the file's
    };

    void add_class(LoadedClass const &loaded);
    void add_empty();
    void set_last(CXObject *object) { m_entries.back() = reinterpret_cast<std::uintptr_t>(object); }

    // Null when the index is out of range or that of an entry of the other kind.
    LoadedClass const *get_class(std::size_t index) const;
    CXObject *get_object(std::size_t index) const;

    // Orphans are the objects added after begin_orphans(), unless adopt_orphans() followed. Asking
    // for them takes them out of the array.
    void begin_orphans();
    void adopt_orphans() { m_firstOrphan = m_entries.size(); }
    std::span<std::uintptr_t> get_orphans(); // entries of objects
    void delete_orphans();

private:
    static constexpr std::uintptr_t class_bit = 1; // objects have even addresses

    std::vector<std::uintptr_t> m_entries { 0 }; // an object, or number of a class * 2 + class_bit
    std::vector<LoadedClass> m_classes;
    std::size_t m_firstOrphan = 1; // entries from here on ...
    std::size_t m_orphanCount = 0; // ... and, once asked for, so many of objects before the others
};

} // namespace kortools::archive
