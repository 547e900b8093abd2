// SPDX-License-Identifier: MIT
// The block of a container and its map.
//
// Entries are appended to the block, and the map has the offset of each in it. Removing one moves
// what is behind it down and takes the gap off the offsets of those entries.
//
// A block that comes from outside may have several entries of one identifier. They are kept, since
// the block is handed out as it came, but only the last one is found; m_count, which counts them
// all, is then larger than the map. The next removal of such an identifier removes them all.
#include "kortools/data/custom_data.h"

#include "kortools/data/custom_data_entry.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

using kortools::data::count_entries;
using kortools::data::Entries;
using kortools::data::Entry;
using kortools::data::entry_header_size;
using kortools::data::max_block_size;
using kortools::data::read_entry;
using kortools::data::write_entry_header;

namespace {

constexpr unsigned int first_capacity = 128; // bytes
constexpr unsigned int first_offset_slots = 23;

} // namespace

void *CCustomData::Alloc(unsigned int size)
{
    return std::malloc(size);
}

void CCustomData::Free(void *block)
{
    std::free(block);
}

Entry CCustomData::FindEntry(unsigned int id) const
{
    unsigned int const *const offset = m_offsets ? std::as_const(*m_offsets).Find(id) : nullptr;
    return offset ? read_entry(m_data + *offset) : Entry {};
}

// Makes the capacity at least `size` bytes.
bool CCustomData::Reserve(unsigned long long size)
{
    if (size > max_block_size)
        return false;
    if (m_data && size <= m_capacity)
        return true;
    auto const needed = static_cast<unsigned int>(size);
    unsigned int capacity = std::max(first_capacity, needed);
    if (m_data)
        capacity = static_cast<unsigned int>(
            std::min(static_cast<double>(needed) * 1.5, double { max_block_size }));
    void *const block = std::realloc(m_data, capacity);
    if (!block)
        return false;
    m_data = static_cast<unsigned char *>(block);
    m_capacity = capacity;
    return true;
}

// Enters an offset in the map. False when there is no memory for it.
bool CCustomData::Remember(unsigned int id, unsigned int offset)
{
    if (!m_offsets)
        m_offsets = new (std::nothrow) OffsetMap(first_offset_slots);
    return m_offsets && m_offsets->Insert(id, offset) == 1;
}

unsigned char *CCustomData::Append(unsigned int id, unsigned long long size, unsigned int kind)
{
    if (!Reserve(m_size + entry_header_size + size) || !Remember(id, m_size))
        return nullptr;
    unsigned char *const at = m_data + m_size;
    write_entry_header(at, id, static_cast<unsigned int>(size), kind);
    m_size += entry_header_size + static_cast<unsigned int>(size);
    ++m_count;
    Touch();
    return at + entry_header_size;
}

unsigned char *CCustomData::MakeEntry(unsigned int id, unsigned long long size, unsigned int kind)
{
    Entry const old = FindEntry(id);
    if (old && size != 0 && old.size == size) {
        write_entry_header(old.get_start(), id, old.size, kind);
        return old.data;
    }
    if (old)
        RemoveEntry(id);
    if (size != 0)
        return Append(id, size, kind);
    Shrink();
    return nullptr;
}

// Takes `gap` off the offsets of the entries that now begin at `from` and behind. A look-up for
// each, or a pass over the whole map: that costs about as much as a look-up for every sixteenth
// slot, and an entry with its value has about sixteen bytes.
void CCustomData::ShiftOffsets(unsigned int from, unsigned int gap)
{
    if (m_size - from < m_offsets->GetHashTableSize()) {
        for (Entry const entry : Entries { m_data + from, m_size - from })
            *m_offsets->Find(entry.id) -= gap;
        return;
    }
    for (auto [id, offset] : *m_offsets)
        offset -= offset > from ? gap : 0;
}

// Keeps the block's capacity. False when there is no such entry.
bool CCustomData::RemoveEntry(unsigned int id)
{
    Entry const entry = FindEntry(id);
    if (!entry)
        return false;
    Touch();
    if (m_count != m_offsets->GetCount()) {
        RemoveDuplicates(id);
        return true;
    }
    auto const from = static_cast<unsigned int>(entry.get_start() - m_data);
    unsigned int const gap = entry_header_size + entry.size;
    if (from <= m_cursorOffset)
        m_cursorIndex = m_cursorOffset = 0;
    std::memmove(entry.get_start(), entry.get_end(), m_size - from - gap);
    m_size -= gap;
    --m_count;
    m_offsets->Remove(id);
    ShiftOffsets(from, gap);
    return true;
}

// Removes every entry of the identifier in one pass.
void CCustomData::RemoveDuplicates(unsigned int id)
{
    unsigned char *target = m_data;
    unsigned char *const end = m_data + m_size;
    for (unsigned char *at = m_data; at != end;) {
        Entry const entry = read_entry(at);
        at = entry.get_end();
        if (entry.id == id)
            continue;
        unsigned int const size = entry_header_size + entry.size;
        std::memmove(target, entry.get_start(), size);
        target += size;
    }
    m_size = static_cast<unsigned int>(target - m_data);
    UpdateOffsetMap();
}

void CCustomData::UpdateOffsetMap(unsigned int count)
{
    CXSingleLock const lock(&m_section, true);
    if (count == 0)
        count_entries(m_data, m_size, count);
    m_count = m_cursorIndex = m_cursorOffset = 0;
    if (!m_offsets)
        m_offsets = new (std::nothrow) OffsetMap(first_offset_slots);
    if (!m_offsets)
        return RemoveAll();
    m_offsets->Clear();
    m_offsets->InitHashTable(count);
    for (Entry const entry : Entries { m_data, m_size }) {
        m_offsets->Insert(entry.id, static_cast<unsigned int>(entry.get_start() - m_data));
        if (m_offsets->IsEmpty())
            return RemoveAll();
        ++m_count;
    }
}

// Cuts the capacity to the size; without entries there is no block.
void CCustomData::Shrink()
{
    if (m_size == 0) {
        Free(std::exchange(m_data, nullptr));
        m_capacity = 0;
    } else if (m_capacity > m_size) {
        if (void *const block = std::realloc(m_data, m_size)) {
            m_data = static_cast<unsigned char *>(block);
            m_capacity = m_size;
        }
    }
}

void CCustomData::Install(void *block, unsigned int size, unsigned int count)
{
    RemoveAll();
    if (size == 0) {
        Free(block);
        return;
    }
    m_data = static_cast<unsigned char *>(block);
    m_size = m_capacity = size;
    UpdateOffsetMap(count);
}

// The contents, not the locks.
void CCustomData::Swap(CCustomData &other)
{
    std::swap(m_offsets, other.m_offsets);
    std::swap(m_legacyMode, other.m_legacyMode);
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_count, other.m_count);
    m_cursorIndex = m_cursorOffset = 0;
    other.m_cursorIndex = other.m_cursorOffset = 0;
    Touch();
}

// Replaces the contents, or leaves nothing when memory is exhausted.
void CCustomData::CopyAll(CCustomData const &source)
{
    RemoveAll();
    m_legacyMode = source.m_legacyMode;
    if (source.m_size == 0)
        return;
    std::unique_ptr<OffsetMap> offsets(new (std::nothrow) OffsetMap(*source.m_offsets));
    m_data = static_cast<unsigned char *>(Alloc(source.m_size));
    if (!m_data || !offsets || offsets->GetCount() != source.m_offsets->GetCount())
        return RemoveAll();
    std::memcpy(m_data, source.m_data, source.m_size);
    m_size = m_capacity = source.m_size;
    m_count = source.m_count;
    m_offsets = offsets.release();
}

// --- The block as a whole

void *CCustomData::GetData(unsigned int &size) const
{
    CXSingleLock const lock(&m_section, true);
    size = m_size;
    return m_size != 0 ? m_data : nullptr;
}

bool CCustomData::SetData(void const *data, unsigned int size)
{
    CXSingleLock const lock(&m_section, true);
    unsigned int count = 0;
    void *const block
        = size != 0 && data && size <= max_block_size && count_entries(data, size, count)
        ? Alloc(size)
        : nullptr;
    if (block)
        std::memcpy(block, data, size);
    Install(block, block ? size : 0, count);
    return m_size == size;
}

void *CCustomData::Detach(unsigned int &size)
{
    CXSingleLock const lock(&m_section, true);
    size = m_size;
    if (m_size == 0)
        Free(std::exchange(m_data, nullptr));
    void *const block = std::exchange(m_data, nullptr);
    RemoveAll();
    return block;
}

bool CCustomData::Attach(void *data, unsigned int size)
{
    CXSingleLock const lock(&m_section, true);
    if (data == m_data)
        m_data = nullptr; // not to be freed below
    unsigned int count = 0;
    bool const valid
        = (data || size == 0) && size <= max_block_size && count_entries(data, size, count);
    if (valid)
        Install(data, size, count);
    else
        RemoveAll();
    return valid;
}
