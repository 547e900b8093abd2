// SPDX-License-Identifier: MIT
#include "kortools/data/guid_mgr.h"

#include "kortools/core/throw.h"
#include "kortools/data/taken_values.h"

#include <cstdint>
#include <new>
#include <utility>

namespace {

using kortools::data::TakenValues;

constexpr unsigned table_size = 23;    // slots, at first
constexpr unsigned long_row_size = 64; // clashes in a row from which TakenValues pays

// Thomas Wang's hash of 64 bits to 32; a value that fits stays as it is, like the identifiers that
// have always had 32 bits.
unsigned int to_short_form(std::uint64_t value)
{
    if (value <= 0xFFFFFFFF)
        return static_cast<unsigned int>(value);
    value = (value << 18) - value - 1;
    value ^= value >> 31;
    value *= 21;
    value ^= value >> 11;
    value *= 65;
    value ^= value >> 22;
    return static_cast<unsigned int>(value);
}

// Thomas Wang's 64-bit hash, which spreads the classes over the range.
std::uint64_t make_class_base(unsigned int class_number)
{
    std::uint64_t value = class_number;
    value = (value << 21) - value - 1;
    value ^= value >> 24;
    value *= 265;
    value ^= value >> 14;
    value *= 21;
    value ^= value >> 28;
    value *= 0x80000001;
    return value;
}

template <class Map, class... Args> void insert_or_throw(Map &map, Args const &...args)
{
    if (map.Insert(args...) == 0) // a key that is new
        kortools::core::throw_out_of_memory();
}

// The keys of the map in the other form; null when memory is exhausted.
template <class Map> std::unique_ptr<TakenValues> make_taken(Map const &map)
{
    std::unique_ptr<TakenValues> taken(new (std::nothrow) TakenValues);
    if (!taken)
        return nullptr;
    for (auto [key, value] : map) {
        if (!taken->insert(key))
            return nullptr;
    }
    return taken;
}

// The first key at or above `key` that is not in the map. Makes `taken` when the row gets long.
template <class Map, class Key>
Key find_free(Map const &map, std::unique_ptr<TakenValues> &taken, Key key)
{
    for (unsigned clashes = 0; map.IsFound(key); ++key) {
        if (++clashes != long_row_size)
            continue;
        if (!taken)
            taken = make_taken(map);
        if (!taken)
            continue;
        std::uint64_t const free = taken->find_free(key);
        return free == static_cast<Key>(free) ? static_cast<Key>(free)
                                              : static_cast<Key>(taken->find_free(0));
    }
    return key;
}

// What cannot be kept in step any more is made anew when it is needed.
void note_taken(std::unique_ptr<TakenValues> &taken, std::uint64_t value)
{
    if (taken && !taken->insert(value))
        taken.reset();
}

template <class Map> void copy_or_throw(Map &target, Map const &source)
{
    target = source;
    if (target.GetCount() != source.GetCount())
        kortools::core::throw_out_of_memory();
}

} // namespace

CGuidMgr::CGuidMgr(unsigned int base)
    : m_guids(table_size)
    , m_guids32(table_size)
    , m_classes(table_size)
{
    SetClassBaseValue(0, base);
}

CGuidMgr::CGuidMgr(CGuidMgr const &other)
{
    CXSingleLock const lock(&other.m_lock, true);
    copy_or_throw(m_guids, other.m_guids);
    copy_or_throw(m_guids32, other.m_guids32);
    copy_or_throw(m_classes, other.m_classes);
    m_flags = other.m_flags;
}

// Never holds both locks, so that two threads may assign two managers to each other.
CGuidMgr &CGuidMgr::operator=(CGuidMgr const &other)
{
    if (this == &other)
        return *this;
    CGuidMgr copy(other);
    CXSingleLock const lock(&m_lock, true);
    m_guids = std::move(copy.m_guids);
    m_guids32 = std::move(copy.m_guids32);
    m_classes = std::move(copy.m_classes);
    m_flags = copy.m_flags;
    m_taken.reset();
    m_taken32.reset();
    return *this;
}

CGuidMgr::~CGuidMgr() = default;

void CGuidMgr::SetClassBaseValue(unsigned int classNumber, unsigned long long base)
{
    CXSingleLock const lock(&m_lock, true);
    GuidBaseValue const record { base, base, to_short_form(base) };
    if (GuidBaseValue *const found = m_classes.Find(classNumber))
        *found = record;
    else
        insert_or_throw(m_classes, classNumber, record);
}

unsigned long long CGuidMgr::GetClassBaseValue(unsigned int classNumber) const
{
    CXSingleLock const lock(&m_lock, true);
    GuidBaseValue const *const found = m_classes.Find(classNumber);
    return found ? found->m_base : 0;
}

CGuidMgr::GuidBaseValue &CGuidMgr::EnsureClass(unsigned int classNumber)
{
    GuidBaseValue *found = m_classes.Find(classNumber);
    if (!found) {
        SetClassBaseValue(classNumber, make_class_base(classNumber));
        found = m_classes.Find(classNumber);
    }
    return *found;
}

unsigned long long CGuidMgr::FindFreeGuid(unsigned long long candidate) const
{
    return find_free(m_guids, m_taken, candidate);
}

unsigned int CGuidMgr::MakeGuid32(unsigned long long const &guid) const
{
    CXSingleLock const lock(&m_lock, true);
    return find_free(m_guids32, m_taken32, to_short_form(guid));
}

void CGuidMgr::Enter(unsigned long long guid, GuidInfo info)
{
    insert_or_throw(m_guids, guid, info);
    if (m_guids32.Insert(info.m_guid32, guid) == 0) {
        m_guids.Remove(guid);
        kortools::core::throw_out_of_memory();
    }
    note_taken(m_taken, guid);
    note_taken(m_taken32, info.m_guid32);
}

unsigned long long CGuidMgr::GetNewGuid(unsigned long long const &wanted, unsigned int classNumber)
{
    if (wanted == 0)
        return 0;
    CXSingleLock const lock(&m_lock, true);
    GuidBaseValue *const record = wanted == fresh ? &EnsureClass(classNumber) : nullptr;
    unsigned long long const guid = FindFreeGuid(record ? record->m_next : wanted);
    Enter(guid, { classNumber, MakeGuid32(guid) });
    if (record && guid >= record->m_base)
        record->m_next = guid + 1;
    return guid;
}

unsigned int CGuidMgr::GetNewGuid32(unsigned int const &wanted, unsigned int classNumber)
{
    if (wanted == 0)
        return 0;
    CXSingleLock const lock(&m_lock, true);
    unsigned long long guid = wanted;
    if (wanted == fresh32)
        guid = fresh;
    return GetGuid32(GetNewGuid(guid, classNumber));
}

unsigned int CGuidMgr::GetGuidClass(unsigned long long const &guid) const
{
    CXSingleLock const lock(&m_lock, true);
    GuidInfo const *const found = m_guids.Find(guid);
    return found ? found->m_class : 0;
}

unsigned int CGuidMgr::GetGuid32(unsigned long long const &guid) const
{
    CXSingleLock const lock(&m_lock, true);
    GuidInfo const *const found = m_guids.Find(guid);
    return found ? found->m_guid32 : 0;
}

bool CGuidMgr::IsGuidExist(unsigned long long const &guid) const
{
    CXSingleLock const lock(&m_lock, true);
    return m_guids.IsFound(guid) != 0;
}

bool CGuidMgr::IsGuid32Exist(unsigned int const &guid32) const
{
    CXSingleLock const lock(&m_lock, true);
    return m_guids32.IsFound(guid32) != 0;
}

unsigned int CGuidMgr::GetCount() const
{
    CXSingleLock const lock(&m_lock, true);
    return m_guids.GetCount();
}

void CGuidMgr::Forget(unsigned long long guid, unsigned int guid32)
{
    m_guids.Remove(guid);
    m_guids32.Remove(guid32);
    if (m_taken)
        m_taken->remove(guid);
    if (m_taken32)
        m_taken32->remove(guid32);
}

bool CGuidMgr::ReleaseGuid(unsigned long long const &guid)
{
    CXSingleLock const lock(&m_lock, true);
    GuidInfo const *const found = m_guids.Find(guid);
    if (!found)
        return false;
    Forget(guid, found->m_guid32);
    return true;
}

bool CGuidMgr::ReleaseGuid32(unsigned int const &guid32)
{
    CXSingleLock const lock(&m_lock, true);
    unsigned long long const *const found = m_guids32.Find(guid32);
    if (!found)
        return false;
    Forget(*found, guid32);
    return true;
}

void CGuidMgr::RemoveAll()
{
    CXSingleLock const lock(&m_lock, true);
    m_guids.Free();
    m_guids32.Free();
    m_classes.Free();
    m_taken.reset();
    m_taken32.reset();
}

void CGuidMgr::SetFlags(unsigned int flags, bool on)
{
    CXSingleLock const lock(&m_lock, true);
    m_flags = on ? m_flags | flags : m_flags & ~flags;
}

bool CGuidMgr::IsFlagSet(GuidFlags flags) const
{
    CXSingleLock const lock(&m_lock, true);
    return (m_flags & flags) != 0;
}
