// SPDX-License-Identifier: MIT
#include "kortools/data/custom_data.h"

#include "kortools/data/custom_data_class.h"
#include "kortools/data/custom_data_entry.h"
#include "kortools/data/custom_data_source.h"
#include "kortools/platform/clock.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

// Entries are appended to the block, and the map has the offset of each in it. Removing one moves
// what is behind it down and takes the gap off the offsets of those entries.
//
// A block that comes from outside may have several entries of one identifier. They are kept, since
// the block is handed out as it came, but only the last one is found; m_count, which counts them
// all, is then larger than the map. The next removal of such an identifier removes them all.

using kortools::data::count_entries;
using kortools::data::Entries;
using kortools::data::Entry;
using kortools::data::entry_header_size;
using kortools::data::max_block_size;
using kortools::data::PairLock;
using kortools::data::read_entry;
using kortools::data::write_entry_header;

namespace {

constexpr unsigned int first_capacity = 128; // bytes
constexpr unsigned int first_offset_slots = 23;
constexpr unsigned int fnv_basis = 0x811C9DC5;
constexpr unsigned int fnv_prime = 16777619;

bool is_same_entry(Entry const &a, Entry const &b)
{
    return a && b && a.kind == b.kind && a.size == b.size
        && std::memcmp(a.data, b.data, a.size) == 0;
}

} // namespace

CCustomDataClass::~CCustomDataClass() = default;

CCustomData::CCustomData()
{
    Touch();
}

CCustomData::CCustomData(CCustomData const &other)
{
    PairLock const lock(&m_section, &other.m_section);
    CopyAll(other);
}

CCustomData &CCustomData::operator=(CCustomData const &other)
{
    Copy(&other, copyReplace);
    return *this;
}

CCustomData::~CCustomData()
{
    delete m_offsets;
    Free(m_data);
}

void *CCustomData::Alloc(unsigned int size)
{
    return std::malloc(size);
}

void CCustomData::Free(void *block)
{
    std::free(block);
}

void CCustomData::Touch()
{
    m_timeStamp = static_cast<unsigned long long>(kortools::platform::get_tick());
}

// --- The block and its map

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

void CCustomData::SetCustom(unsigned int id, void const *data, unsigned int size, unsigned int kind)
{
    CXSingleLock const lock(&m_section, true);
    SourceBytes const source(*this, data, size);
    unsigned char *const target = MakeEntry(id, source.IsLost() ? 0 : size, kind);
    if (target && source.Get())
        std::memcpy(target, source.Get(), size);
}

unsigned int CCustomData::GetCustom(
    unsigned int id, void *target, unsigned int size, unsigned int kind) const
{
    CXSingleLock const lock(&m_section, true);
    Entry const entry = FindEntry(id);
    if (!entry || entry.size != size || (m_legacyMode == 0 && entry.kind != kind))
        return 0;
    if (target && size != 0)
        std::memcpy(target, entry.data, size);
    return entry.kind != 0 ? entry.kind : kindAny;
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

// --- Inspection and editing

bool CCustomData::HasData() const
{
    CXSingleLock const lock(&m_section, true);
    return m_count != 0;
}

bool CCustomData::HasData(unsigned int id) const
{
    CXSingleLock const lock(&m_section, true);
    return static_cast<bool>(FindEntry(id));
}

unsigned int CCustomData::GetIDCount() const
{
    CXSingleLock const lock(&m_section, true);
    return m_count;
}

unsigned int CCustomData::GetDataKindOf(unsigned int id) const
{
    CXSingleLock const lock(&m_section, true);
    return FindEntry(id).kind;
}

unsigned int CCustomData::GetDataSize(unsigned int id) const
{
    CXSingleLock const lock(&m_section, true);
    return FindEntry(id).size;
}

unsigned int CCustomData::GetIDByIndex(unsigned int index, unsigned int &kind) const
{
    CXSingleLock const lock(&m_section, true);
    kind = 0;
    if (index >= m_count)
        return no_id;
    if (index < m_cursorIndex)
        m_cursorIndex = m_cursorOffset = 0;
    for (; m_cursorIndex < index; ++m_cursorIndex)
        m_cursorOffset += entry_header_size + read_entry(m_data + m_cursorOffset).size;
    Entry const entry = read_entry(m_data + m_cursorOffset);
    kind = entry.kind;
    return entry.id;
}

unsigned int CCustomData::GetChecksum(unsigned int id) const
{
    CXSingleLock const lock(&m_section, true);
    Entry const entry = FindEntry(id);
    unsigned int hash = fnv_basis;
    for (unsigned int i = entry.size; i-- != 0;) {
        hash ^= static_cast<unsigned int>(static_cast<signed char>(entry.data[i]));
        hash *= fnv_prime;
    }
    return hash;
}

void *CCustomData::GetCustomPtr(unsigned int id, unsigned int &size) const
{
    CXSingleLock const lock(&m_section, true);
    Entry const entry = FindEntry(id);
    size = entry.size;
    return entry.data;
}

void CCustomData::RemoveCustom(unsigned int id)
{
    CXSingleLock const lock(&m_section, true);
    if (RemoveEntry(id))
        Shrink();
}

bool CCustomData::ChangeID(unsigned int oldID, unsigned int newID)
{
    CXSingleLock const lock(&m_section, true);
    if (!FindEntry(oldID))
        return false;
    if (oldID == newID)
        return true;
    if (RemoveEntry(newID))
        Shrink();
    Entry const entry = FindEntry(oldID); // it may have moved
    if (!entry || !Remember(newID, static_cast<unsigned int>(entry.get_start() - m_data)))
        return false;
    write_entry_header(entry.get_start(), newID, entry.size, entry.kind);
    m_offsets->Remove(oldID);
    Touch();
    return true;
}

bool CCustomData::CopyID(CCustomData const *source, unsigned int id)
{
    if (!source)
        return false;
    PairLock const lock(&m_section, &source->m_section);
    Entry const entry = source->FindEntry(id);
    if (entry && source != this)
        CopyEntry(entry, *source);
    return static_cast<bool>(entry);
}

// Entries of kindAny can be read in legacy mode only.
void CCustomData::CopyEntry(Entry const &entry, CCustomData const &source)
{
    if (entry.kind == kindAny && m_legacyMode == 0)
        m_legacyMode = source.m_legacyMode;
    SetCustom(entry.id, entry.data, entry.size, entry.kind);
}

void CCustomData::RemoveAll()
{
    CXSingleLock const lock(&m_section, true);
    delete std::exchange(m_offsets, nullptr);
    Free(std::exchange(m_data, nullptr));
    m_size = m_capacity = m_count = m_legacyMode = 0;
    m_cursorIndex = m_cursorOffset = 0;
    Touch();
}

void CCustomData::FreeExtra()
{
    CXSingleLock const lock(&m_section, true);
    Shrink();
}

bool CCustomData::IsEqual(CCustomData const &other) const
{
    PairLock const lock(&m_section, &other.m_section);
    if (m_size != other.m_size || m_count != other.m_count)
        return false;
    if (m_size == 0 || std::memcmp(m_data, other.m_data, m_size) == 0)
        return true;
    if (m_count != m_offsets->GetCount() || m_count != other.m_offsets->GetCount())
        return false; // of duplicates the order counts
    for (Entry const entry : Entries { m_data, m_size }) {
        if (!is_same_entry(entry, other.FindEntry(entry.id)))
            return false;
    }
    return true;
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

void CCustomData::Copy(CCustomData const *source, unsigned int mode)
{
    if (!source || source == this)
        return;
    PairLock const lock(&m_section, &source->m_section);
    if (mode != copyMerge)
        return CopyAll(*source);
    for (Entry const entry : Entries { source->m_data, source->m_size })
        CopyEntry(entry, *source);
}

CCustomData *CCustomData::Copy() const
{
    return new CCustomData(*this);
}

unsigned long long CCustomData::GetTimeStamp() const
{
    CXSingleLock const lock(&m_section, true);
    return m_timeStamp;
}

// --- The whole block

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
