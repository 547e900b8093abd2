// SPDX-License-Identifier: MIT
// CCustomData: typed values by a 32-bit identifier, in one block that is written, copied, compared
// and sent as it is. For settings, options and messages; a CHashMap is faster for plain values in
// memory.
//
// Each entry has a kind, which says how its bytes are to be read: a value is found by the getter
// that belongs to its setter only. The block is the same on every system;
// docs/custom-data-format.md has its form and that of the stream. Lookups take constant time. So
// does setting, but a value of another size than before moves to the end, which costs what
// RemoveCustom() costs.
//
// Thread safe: every operation holds the container's recursive lock from beginning to end, and one
// that works on two containers locks them in an order that other threads use, too. Pointers into
// the block are valid until the next change: hold the lock while using them. They are not aligned.
//
// Setters return nothing: when memory runs out, or an entry does not fit the 4 GB of the block,
// there is no entry with that identifier afterwards. A value of size 0 (an empty array, list, or
// container) deletes the entry. Lookups do not throw; a getter that finds nothing writes the
// default, where it has one, and returns false.
//
//   CCustomData options;
//   options.SetString(option_name, L"cube");
//   options.SetDouble(option_scale, 2.5);
//   double scale;
//   options.GetDouble(option_scale, scale, 1.0); // true
//   options.Serialize(archive);
#pragma once

#include "kortools/archive/archive.h"
#include "kortools/core/array.h"
#include "kortools/core/critical_section.h"
#include "kortools/core/hash_map.h"
#include "kortools/core/xstring.h"
#include "kortools/data/string_list.h"
#include "kortools/data/xtime.h"
#include "kortools/export.h"

#include <cstddef>

class CCustomDataClass;

namespace kortools::data {
struct Entry;
}

class KORTOOLS_API CCustomData {
public:
    using StringArray = CXArray<CXTString<wchar_t>, CXTString<wchar_t> const &>;

    // Four ASCII characters each, the first in the highest byte.
    enum Kind : unsigned int {
        kindAny = 0x20202020,          // "    ", of entries in the old forms of the stream
        kindInt = 0x20494E54,          // " INT"
        kindUInt = 0x55494E54,         // "UINT"
        kindLong = 0x4C4F4E47,         // "LONG"
        kindULong = 0x554C4F4E,        // "ULON"
        kindLongInt = 0x4C4C4F4E,      // "LLON"
        kindULongInt = 0x554C4C4F,     // "ULLO"
        kindChar = 0x43484152,         // "CHAR"
        kindUChar = 0x55434852,        // "UCHR"
        kindBool = 0x424F4F4C,         // "BOOL"
        kindFloat = 0x464C4F41,        // "FLOA"
        kindDouble = 0x444F5542,       // "DOUB"
        kindPtr = 0x50545236,          // "PTR6"
        kindBinary = 0x2042494E,       // " BIN"
        kindArray = 0x41525241,        // "ARRA"
        kindString = 0x554E4943,       // "UNIC"
        kindStringA = 0x414E5349,      // "ANSI"
        kindStringUTF8 = 0x55544638,   // "UTF8", read only
        kindStrings = 0x55535452,      // "USTR"
        kindStringsA = 0x41535452,     // "ASTR", read only
        kindStringsUTF8 = 0x55385452,  // "U8TR", read only
        kindXTime = 0x54494D58,        // "TIMX"
        kindUTCTime = 0x54494D45,      // "TIME"
        kindCustomData = 0x43444132,   // "CDA2"
        kindOldCustomData = 0x43444154 // "CDAT", read only
    };
    enum CopyMode : unsigned int { copyReplace = 2, copyMerge = 3 };
    enum : unsigned int { no_id = 0xFFFFFFFF };

    CCustomData();
    CCustomData(CCustomData const &other);
    CCustomData &operator=(CCustomData const &other); // as Copy(&other, copyReplace)

    // Writes the container (after FreeExtra()) or reads one in its place. Reading takes memory as
    // the stream proves to have the bytes. Bytes that are missing or make no sense throw
    // CXFileException, genericException; the container is then empty, as it is after anything that
    // the archive throws.
    virtual void Serialize(CXArchive &archive);
    virtual ~CCustomData();

    // The bytes that Serialize() writes, in a block to be freed with Free(). Null and a size of 0
    // for an empty container and when memory is exhausted.
    virtual void *SerializeToData(unsigned long long &size);

    // Reads such a block, which may lie in this container. False, and an empty container, for bytes
    // that Serialize() would refuse; no bytes at all are an empty container, and true.
    virtual bool SerializeFromData(void const *data, unsigned long long size);
    static bool SerializeFromData(CCustomData &target, void const *data, unsigned long long size);

    // --- Preferences files: many containers in one file, each under an identifier and a version.
    // Nothing is ever lost: a process that dies at any moment, a full disk and others who save at
    // the same time leave all other records as they are, and this one old or new, whole. While
    // others use the file both wait, for 30 seconds at most. docs/preferences-format.md has the
    // form, and how it is done. Neither throws. What overrides Serialize() is not asked.

    // Puts the container in the place of the record of this identifier and version, or adds it;
    // creates the file, but no folder. False when the file cannot be opened, written or locked, is
    // no preferences file or a damaged one, or would have more than 1 GiB or 65536 records: it is
    // then as before, or empty where there was none. (It may be as after a save when the disk
    // fails at the very end.)
    bool SaveToPrefs(CXTString<wchar_t> const &file, unsigned int id, unsigned int version);

    // Reads the record of this identifier and version in place of the container. With `orOlder`,
    // when there is none, the one that has the highest version below. Writes nothing, and works
    // where nothing may be written. False, and the container is as before, when there is no record
    // or the file cannot be read; false, and it is empty, when the record's bytes make no sense.
    bool LoadFromPrefs(
        CXTString<wchar_t> file, unsigned int id, unsigned int version, bool orOlder = false);

    // --- Setters. A pointer may point into this container's block.

    void SetInt(unsigned int id, int value);
    void SetUInt(unsigned int id, unsigned int value);
    void SetLong(unsigned int id, long value); // the lower 32 bits
    void SetULong(unsigned int id, unsigned long value);
    void SetLongInt(unsigned int id, long long value);
    void SetULongInt(unsigned int id, unsigned long long value);
    void SetSizet(unsigned int id, std::size_t value); // of the same kind as SetULongInt()
    void SetChar(unsigned int id, char value);
    void SetUChar(unsigned int id, unsigned char value);
    void SetBool(unsigned int id, int value);
    void SetFloat(unsigned int id, float value);
    void SetDouble(unsigned int id, double value);
    void SetPtr(unsigned int id, void const *value); // means something in this process only

    // Null data: the bytes are undefined, to be filled through GetCustomPtr().
    void SetBinary(unsigned int id, void const *data, unsigned int size);

    void SetString(unsigned int id, CXTString<wchar_t> const &value);
    void SetStringW(unsigned int id, CXTString<wchar_t> const &value) { SetString(id, value); }
    void SetStringA(unsigned int id, CXTString<char> const &value); // the bytes as they are
    void SetStringArray(unsigned int id, StringArray const &values);
    void SetStringList(unsigned int id, CStringList const &values);

    void SetXTime(unsigned int id, CXTime const &value);

    // The broken-down UTC time. Nothing happens when the time has no date.
    void SetUTCTime(unsigned int id, CXTime const &value);

    // A copy of the other container's entries as one entry; `value` may be this container. Its
    // legacy mode is not kept.
    void SetCustomData(unsigned int id, CCustomData const &value);

    // The same, whatever the flag: what was nested under `id` before is not kept. Stored data
    // depends on it.
    void AddToCustomData(unsigned int id, CCustomData const &value, int flag);

    void SetCustomClass(unsigned int id, CCustomDataClass const &value);

    // `count` elements of `elementSize` bytes, zeros for null. A count of 0 deletes the entry.
    // False when there is no room: without an entry then, or with the one before when no block
    // could hold the array.
    bool SetArray(
        unsigned int id, void const *elements, unsigned int count, unsigned int elementSize);

    // --- Getters

    bool GetInt(unsigned int id, int &value, int defaultValue = 0) const;
    bool GetUInt(unsigned int id, unsigned int &value, unsigned int defaultValue = 0) const;
    bool GetLong(unsigned int id, long &value, long defaultValue = 0) const;
    bool GetULong(unsigned int id, unsigned long &value, unsigned long defaultValue = 0) const;
    bool GetLongInt(unsigned int id, long long &value, long long defaultValue = 0) const;
    bool GetULongInt(
        unsigned int id, unsigned long long &value, unsigned long long defaultValue = 0) const;
    bool GetSizet(unsigned int id, std::size_t &value, std::size_t defaultValue = 0) const;
    bool GetChar(unsigned int id, char &value, char defaultValue = 0) const;
    bool GetUChar(unsigned int id, unsigned char &value, unsigned char defaultValue = 0) const;
    bool GetBool(unsigned int id, int &value, int defaultValue = 0) const;
    bool GetBool(unsigned int id, bool &value, bool defaultValue = false) const;
    bool GetFloat(unsigned int id, float &value, float defaultValue = 0) const;
    bool GetDouble(unsigned int id, double &value, double defaultValue = 0) const;
    bool GetPtr(unsigned int id, void *&value) const;
    void *GetPtr(unsigned int id) const; // null when there is none

    // Only when the entry has exactly `size` bytes.
    bool GetBinary(unsigned int id, void *target, unsigned int size) const;

    // The text up to its first zero. GetString() reads wide and UTF-8 text, GetStringA() narrow
    // and UTF-8 text, which it converts to the ANSI code page.
    bool GetString(unsigned int id, CXTString<wchar_t> &value,
        CXTString<wchar_t> const &defaultValue = CXTString<wchar_t>()) const;
    bool GetStringW(unsigned int id, CXTString<wchar_t> &value,
        CXTString<wchar_t> const &defaultValue = CXTString<wchar_t>()) const
    {
        return GetString(id, value, defaultValue);
    }
    bool GetStringA(unsigned int id, CXTString<char> &value,
        CXTString<char> const &defaultValue = CXTString<char>()) const;

    // Replace the strings by those of the entry, by none when there is no entry, and return how
    // many there are. Wide, narrow and UTF-8 lists.
    int GetStringArray(unsigned int id, StringArray &values) const;
    int GetStringList(unsigned int id, CStringList &values) const;

    bool GetXTime(unsigned int id, CXTime &value, CXTime const &defaultValue = CXTime()) const;

    // Takes what SetUTCTime() has stored for local time, and so does not give it back where local
    // time is not UTC (kept: stored data depends on it). False also for what is no date.
    bool GetUTCTime(unsigned int id, CXTime &value, CXTime const &defaultValue = CXTime()) const;

    // False, and `value` unchanged, when there is no nested container; false, and `value` empty,
    // when its bytes make no sense. `value` may be this container.
    bool GetCustomData(unsigned int id, CCustomData &value) const;
    bool GetCustomClass(unsigned int id, CCustomDataClass &value) const;

    // The elements in place, and how many. Null and 0 when there is no array, or one of elements
    // of another size.
    void *GetArray(unsigned int id, unsigned int &count, unsigned int elementSize) const;

    // The bytes of an entry of any kind in place, and how many. Null and 0 when there is none.
    void *GetCustomPtr(unsigned int id, unsigned int &size) const;

    // --- Inspection and editing

    bool HasData() const; // any entry
    bool HasData(unsigned int id) const;
    unsigned int GetIDCount() const;                   // entries
    unsigned int GetDataKindOf(unsigned int id) const; // 0 when there is none
    unsigned int GetDataSize(unsigned int id) const;   // bytes; 0 when there is none

    // The identifier of an entry by its place in the block, and its kind; no_id and 0 past the end.
    // Constant time when called with ascending indices.
    unsigned int GetIDByIndex(unsigned int index, unsigned int &kind) const;

    // A checksum of an entry's bytes, comparable with stored ones.
    unsigned int GetChecksum(unsigned int id) const;

    // O(entries): those behind it move down.
    void RemoveCustom(unsigned int id);

    // Gives an entry another identifier and leaves it at its place. An entry that has the new
    // identifier is removed. False, and nothing done, when there is no entry `oldID`.
    bool ChangeID(unsigned int oldID, unsigned int newID);

    // Sets an entry as it is in another container. False, and nothing done, when it has none.
    bool CopyID(CCustomData const *source, unsigned int id);

    void RemoveAll(); // frees the memory, too
    void FreeExtra(); // gives back what the block has beyond its entries

    // Do both have the same entries, of the same kinds and bytes, in whatever order?
    bool IsEqual(CCustomData const &other) const;

    // copyReplace makes the entries and the legacy mode those of `source`. copyMerge sets the
    // entries of `source` one by one and keeps the others; the legacy mode comes along with
    // entries of kindAny, unless this container has one. Nothing for null and for this container.
    void Copy(CCustomData const *source, unsigned int mode);
    CCustomData *Copy() const; // a new object, the caller's

    // Milliseconds since the system started, at the last change of the entries' order or sizes.
    unsigned long long GetTimeStamp() const;

    // To be held across several calls: CXSingleLock lock(data.GetThreadLock(), true);
    CXCriticalSection *GetThreadLock() const { return &m_section; }

    // The entries as text, one line each, for people. `nested`: containers in it, too, 32 deep.
    CXTString<wchar_t> DumpCustomData(bool nested = true, int indent = 0) const;

    // --- The whole block

    void *GetData(unsigned int &size) const; // null and 0 when empty

    // Replaces the entries by a copy of a block, which may lie in this container. False, and the
    // container is empty, when the block is no row of entries (or too large).
    bool SetData(void const *data, unsigned int size);

    // Hands the block over, to be freed with Free(), and leaves the container empty.
    void *Detach(unsigned int &size);

    // Takes over a block from Alloc(). False, the container is empty and the block still the
    // caller's, when it is no row of entries.
    bool Attach(void *data, unsigned int size);

    static void *Alloc(unsigned int size); // null when memory is exhausted
    static void Free(void *block);

protected:
    // The one way in. Null data leaves the bytes undefined.
    void SetCustom(unsigned int id, void const *data, unsigned int size, unsigned int kind);

    // Copies the bytes out when the entry has this size and, outside of legacy mode, this kind.
    // Returns the entry's kind (kindAny for an entry of kind 0), or 0.
    unsigned int GetCustom(
        unsigned int id, void *target, unsigned int size, unsigned int kind) const;

    // Rebuilds the map from the block. `count` entries, 0: to be counted. Without the memory for
    // it, the container is empty.
    void UpdateOffsetMap(unsigned int count = 0);

private:
    using OffsetMap = CHashMap<unsigned int, unsigned int, unsigned int>;
    class SourceBytes;

    kortools::data::Entry FindEntry(unsigned int id) const;
    template <class T>
    bool GetValue(unsigned int id, T &value, T defaultValue, unsigned int kind) const;
    template <class T> void SetValue(unsigned int id, T value, unsigned int kind);
    template <class Strings> void SetStrings(unsigned int id, Strings const &values);
    template <class Strings> int GetStrings(unsigned int id, Strings &values) const;

    // The bytes of the entry, to be filled; null when there is no entry.
    unsigned char *MakeEntry(unsigned int id, unsigned long long size, unsigned int kind);
    unsigned char *Append(unsigned int id, unsigned long long size, unsigned int kind);
    bool Reserve(unsigned long long size);
    bool Remember(unsigned int id, unsigned int offset);
    bool RemoveEntry(unsigned int id);
    void RemoveDuplicates(unsigned int id);
    void ShiftOffsets(unsigned int from, unsigned int gap);
    void Shrink();
    void Touch();
    void CopyEntry(kortools::data::Entry const &entry, CCustomData const &source);
    void CopyAll(CCustomData const &source);
    void Install(void *block, unsigned int size, unsigned int count);
    void Swap(CCustomData &other);

    void Store(CXArchive &archive);
    void Load(CXArchive &archive);
    bool LoadBlock(CXArchive &archive);
    bool LoadOldForm(CXArchive &archive, unsigned int legacyMode);
    bool LoadRecords(void const *records, unsigned int size, unsigned int legacyMode);
    bool ReadNested(kortools::data::Entry const &entry, CCustomData &value) const;

    // In the documented order, as debuggers and memory dumps show them.
    OffsetMap *m_offsets = nullptr; // of entries in the block, by identifier; null: no entry yet
    unsigned int m_legacyMode = 0;  // 0; 1 or 2: from an old stream, kinds do not matter
    mutable CXCriticalSection m_section;
    unsigned char *m_data = nullptr; // from malloc(); null when there is no entry
    unsigned int m_size = 0;         // bytes in use
    unsigned int m_capacity = 0;     // bytes in the block
    unsigned long long m_timeStamp;  // milliseconds

    unsigned int m_count = 0;               // entries; more than in the map: there are duplicates
    mutable unsigned int m_cursorIndex = 0; // where GetIDByIndex() was last
    mutable unsigned int m_cursorOffset = 0;
};
