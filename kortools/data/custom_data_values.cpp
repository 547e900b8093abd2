// SPDX-License-Identifier: MIT
#include "kortools/data/custom_data.h"
#include "kortools/data/custom_data_class.h"
#include "kortools/data/custom_data_entry.h"
#include "kortools/data/custom_data_source.h"
#include "kortools/platform/calendar.h"

#include <bit>
#include <cstdint>
#include <ctime>

using kortools::data::Entry;
using kortools::data::entry_header_size;
using kortools::data::max_block_size;
using kortools::data::PairLock;

static_assert(std::endian::native == std::endian::little, "the block's byte order");

template <class T> void CCustomData::SetValue(unsigned int id, T value, unsigned int kind)
{
    SetCustom(id, &value, sizeof value, kind);
}

template <class T>
bool CCustomData::GetValue(unsigned int id, T &value, T defaultValue, unsigned int kind) const
{
    value = defaultValue;
    return GetCustom(id, &value, sizeof value, kind) != 0;
}

void CCustomData::SetInt(unsigned int id, int value)
{
    SetValue(id, value, kindInt);
}

void CCustomData::SetUInt(unsigned int id, unsigned int value)
{
    SetValue(id, value, kindUInt);
}

void CCustomData::SetLong(unsigned int id, long value)
{
    SetValue(id, static_cast<std::int32_t>(value), kindLong);
}

void CCustomData::SetULong(unsigned int id, unsigned long value)
{
    SetValue(id, static_cast<std::uint32_t>(value), kindULong);
}

void CCustomData::SetLongInt(unsigned int id, long long value)
{
    SetValue(id, value, kindLongInt);
}

void CCustomData::SetULongInt(unsigned int id, unsigned long long value)
{
    SetValue(id, value, kindULongInt);
}

void CCustomData::SetSizet(unsigned int id, std::size_t value)
{
    SetULongInt(id, value);
}

void CCustomData::SetChar(unsigned int id, char value)
{
    SetValue(id, value, kindChar);
}

void CCustomData::SetUChar(unsigned int id, unsigned char value)
{
    SetValue(id, value, kindUChar);
}

void CCustomData::SetBool(unsigned int id, int value)
{
    SetValue(id, value, kindBool);
}

void CCustomData::SetFloat(unsigned int id, float value)
{
    SetValue(id, value, kindFloat);
}

void CCustomData::SetDouble(unsigned int id, double value)
{
    SetValue(id, value, kindDouble);
}

void CCustomData::SetPtr(unsigned int id, void const *value)
{
    SetValue(id, std::uint64_t { reinterpret_cast<std::uintptr_t>(value) }, kindPtr);
}

void CCustomData::SetBinary(unsigned int id, void const *data, unsigned int size)
{
    SetCustom(id, data, size, kindBinary);
}

bool CCustomData::GetInt(unsigned int id, int &value, int defaultValue) const
{
    return GetValue(id, value, defaultValue, kindInt);
}

bool CCustomData::GetUInt(unsigned int id, unsigned int &value, unsigned int defaultValue) const
{
    return GetValue(id, value, defaultValue, kindUInt);
}

bool CCustomData::GetLong(unsigned int id, long &value, long defaultValue) const
{
    std::int32_t stored;
    bool const found = GetValue(id, stored, 0, kindLong);
    value = found ? stored : defaultValue;
    return found;
}

bool CCustomData::GetULong(unsigned int id, unsigned long &value, unsigned long defaultValue) const
{
    std::uint32_t stored;
    bool const found = GetValue(id, stored, 0U, kindULong);
    value = found ? stored : defaultValue;
    return found;
}

bool CCustomData::GetLongInt(unsigned int id, long long &value, long long defaultValue) const
{
    return GetValue(id, value, defaultValue, kindLongInt);
}

bool CCustomData::GetULongInt(
    unsigned int id, unsigned long long &value, unsigned long long defaultValue) const
{
    return GetValue(id, value, defaultValue, kindULongInt);
}

bool CCustomData::GetSizet(unsigned int id, std::size_t &value, std::size_t defaultValue) const
{
    unsigned long long stored;
    bool const found = GetULongInt(id, stored, defaultValue);
    value = static_cast<std::size_t>(stored);
    return found;
}

bool CCustomData::GetChar(unsigned int id, char &value, char defaultValue) const
{
    return GetValue(id, value, defaultValue, kindChar);
}

bool CCustomData::GetUChar(unsigned int id, unsigned char &value, unsigned char defaultValue) const
{
    return GetValue(id, value, defaultValue, kindUChar);
}

bool CCustomData::GetBool(unsigned int id, int &value, int defaultValue) const
{
    return GetValue(id, value, defaultValue, kindBool);
}

bool CCustomData::GetBool(unsigned int id, bool &value, bool defaultValue) const
{
    int stored;
    bool const found = GetBool(id, stored, defaultValue);
    value = stored != 0;
    return found;
}

bool CCustomData::GetFloat(unsigned int id, float &value, float defaultValue) const
{
    return GetValue(id, value, defaultValue, kindFloat);
}

bool CCustomData::GetDouble(unsigned int id, double &value, double defaultValue) const
{
    return GetValue(id, value, defaultValue, kindDouble);
}

bool CCustomData::GetPtr(unsigned int id, void *&value) const
{
    std::uint64_t stored;
    bool const found = GetValue(id, stored, std::uint64_t {}, kindPtr);
    if (found)
        value = reinterpret_cast<void *>(static_cast<std::uintptr_t>(stored));
    return found;
}

void *CCustomData::GetPtr(unsigned int id) const
{
    void *value = nullptr;
    GetPtr(id, value);
    return value;
}

bool CCustomData::GetBinary(unsigned int id, void *target, unsigned int size) const
{
    return GetCustom(id, target, size, kindBinary) != 0;
}

// --- Arrays: a count of four bytes, then the elements

bool CCustomData::SetArray(
    unsigned int id, void const *elements, unsigned int count, unsigned int elementSize)
{
    CXSingleLock const lock(&m_section, true);
    if (count == 0) {
        RemoveCustom(id);
        return true;
    }
    unsigned long long const size = 1ULL * count * elementSize;
    if (size > max_block_size - entry_header_size - sizeof count)
        return false;
    SourceBytes const source(*this, elements, size);
    unsigned char *const target
        = MakeEntry(id, source.IsLost() ? 0 : size + sizeof count, kindArray);
    if (!target)
        return false;
    std::memcpy(target, &count, sizeof count);
    if (size != 0 && source.Get())
        std::memcpy(target + sizeof count, source.Get(), size);
    else
        std::memset(target + sizeof count, 0, size);
    return true;
}

void *CCustomData::GetArray(unsigned int id, unsigned int &count, unsigned int elementSize) const
{
    CXSingleLock const lock(&m_section, true);
    Entry const entry = FindEntry(id);
    count = 0;
    if (entry.size < sizeof count || (m_legacyMode == 0 && entry.kind != kindArray))
        return nullptr;
    unsigned int stored;
    std::memcpy(&stored, entry.data, sizeof stored);
    if (1ULL * stored * elementSize != entry.size - sizeof stored)
        return nullptr;
    count = stored;
    return entry.data + sizeof stored;
}

// --- Times

void CCustomData::SetXTime(unsigned int id, CXTime const &value)
{
    SetValue(id, value.GetTime(), kindXTime);
}

bool CCustomData::GetXTime(unsigned int id, CXTime &value, CXTime const &defaultValue) const
{
    long long seconds;
    bool const found = GetValue(id, seconds, defaultValue.GetTime(), kindXTime);
    value = CXTime(seconds);
    return found;
}

void CCustomData::SetUTCTime(unsigned int id, CXTime const &value)
{
    std::tm utc {};
    if (!kortools::platform::break_down_utc(value.GetTime(), utc))
        return;
    std::int32_t const fields[] = { utc.tm_sec, utc.tm_min, utc.tm_hour, utc.tm_mday, utc.tm_mon,
        utc.tm_year, utc.tm_wday, utc.tm_yday, utc.tm_isdst };
    SetCustom(id, fields, sizeof fields, kindUTCTime);
}

bool CCustomData::GetUTCTime(unsigned int id, CXTime &value, CXTime const &defaultValue) const
{
    std::int32_t fields[9] = {};
    std::tm local {};
    long long seconds = defaultValue.GetTime();
    bool found = GetCustom(id, fields, sizeof fields, kindUTCTime) != 0;
    if (found) {
        local.tm_sec = fields[0];
        local.tm_min = fields[1];
        local.tm_hour = fields[2];
        local.tm_mday = fields[3];
        local.tm_mon = fields[4];
        local.tm_year = fields[5];
        local.tm_wday = fields[6];
        local.tm_yday = fields[7];
        local.tm_isdst = fields[8];
        found = kortools::platform::make_time(local, seconds);
    }
    value = CXTime(seconds);
    return found;
}

// --- Nested containers

void CCustomData::SetCustomData(unsigned int id, CCustomData const &value)
{
    PairLock const lock(&m_section, &value.m_section);
    SetCustom(id, value.m_data, value.m_size, kindCustomData);
}

void CCustomData::AddToCustomData(unsigned int id, CCustomData const &value, int)
{
    SetCustomData(id, value);
}

bool CCustomData::GetCustomData(unsigned int id, CCustomData &value) const
{
    PairLock const lock(&m_section, &value.m_section);
    Entry const entry = FindEntry(id);
    bool const isNested = entry.kind == kindCustomData || entry.kind == kindOldCustomData;
    return entry && (isNested || m_legacyMode != 0) && ReadNested(entry, value);
}

// Nothing tells which stream the records of an old nested container came from; in a present one
// they are younger than the 8-bit texts.
bool CCustomData::ReadNested(Entry const &entry, CCustomData &value) const
{
    unsigned int const legacyMode = m_legacyMode;
    if (entry.kind == kindCustomData) {
        bool const valid = value.SetData(entry.data, entry.size);
        value.m_legacyMode = valid ? legacyMode : 0;
        return valid;
    }
    CCustomData decoded;
    bool const valid
        = decoded.LoadRecords(entry.data, entry.size, legacyMode != 0 ? legacyMode : 1);
    value.Swap(decoded);
    return valid;
}

void CCustomData::SetCustomClass(unsigned int id, CCustomDataClass const &value)
{
    CXSingleLock const lock(&m_section, true);
    CCustomData nested;
    value.WriteToData(nested);
    SetCustomData(id, nested);
}

bool CCustomData::GetCustomClass(unsigned int id, CCustomDataClass &value) const
{
    CXSingleLock const lock(&m_section, true);
    CCustomData nested;
    return GetCustomData(id, nested) && value.ReadFromData(nested);
}
