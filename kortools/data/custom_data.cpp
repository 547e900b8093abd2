// SPDX-License-Identifier: MIT
// Entries asked for, changed and copied. custom_data_block.cpp keeps the block that they lie in.
#include "kortools/data/custom_data.h"

#include "kortools/core/throw.h"
#include "kortools/data/custom_data_class.h"
#include "kortools/data/custom_data_entry.h"
#include "kortools/data/custom_data_source.h"
#include "kortools/platform/clock.h"

#include <cstring>
#include <utility>

using kortools::data::Entries;
using kortools::data::Entry;
using kortools::data::entry_header_size;
using kortools::data::PairLock;
using kortools::data::read_entry;
using kortools::data::write_entry_header;

namespace {

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

void CCustomData::Touch()
{
    m_timeStamp = static_cast<unsigned long long>(kortools::platform::get_tick());
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
    return kortools::core::translate_shortage([this] { return new CCustomData(*this); });
}

unsigned long long CCustomData::GetTimeStamp() const
{
    CXSingleLock const lock(&m_section, true);
    return m_timeStamp;
}
