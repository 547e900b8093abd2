// SPDX-License-Identifier: MIT
// CXArchive: the binary stream in which everything persistent is written: values, strings, counts
// and graphs of objects. The bytes are the same on every system; docs/archive-format.md has them.
//
// An archive works on a CXFile through a window, either a buffer or, for files that offer their
// memory (CXMemFile), the file's own block, without a copy. Between construction and Close() the
// file belongs to the archive; in between, Flush() makes the file's position the archive's.
// An archive is used by one thread at a time.
//
// Every failure throws a CXArchiveException, what the file throws, or a CXMemoryException when
// memory is exhausted or a string has more than 2^31 - 1 characters. Reading is safe on damaged
// and hostile data: nothing is allocated for lengths and counts that what is left of the file
// cannot hold, and objects nest to a limited depth. After a failure the archive is good for
// Close(), Abort() and its destructor only; the target of the operator that failed has some valid
// value.
//
//   CXFile file(path, CXFile::modeCreate | CXFile::modeWrite);
//   CXArchive archive(&file, CXArchive::store);
//   archive << 42 << CXTString<wchar_t>(L"name") << root; // root: pointer to a CXObject
//   archive.Close();
#pragma once

#include "kortools/archive/runtime_class.h"
#include "kortools/core/string_encoding.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>

class CXFile;

namespace kortools::archive {

class StoreMap;
class LoadArray;
class ObjectScope;

template <class T, class... Ts> inline constexpr bool is_one_of = (std::is_same_v<T, Ts> || ...);

// The values whose bytes in the file are their bytes in memory.
template <class T>
concept BulkValue = is_one_of<T, char, unsigned char, short, unsigned short, int, unsigned int,
    long long, unsigned long long, float, double>;

} // namespace kortools::archive

class KORTOOLS_API CXArchive {
public:
    enum Mode : unsigned int { store = 0, load = 1 };

    static constexpr unsigned int default_buffer_size = 4096; // bytes
    static constexpr unsigned int minimum_buffer_size = 128;  // smaller ones are enlarged
    static constexpr unsigned int no_schema = 0xFFFFFFFF;     // see GetObjectSchema()
    static constexpr unsigned long long unknown_size = ~0ULL; // see GetBytesLeft()

    // How deep objects may lie in one another, in either mode; one more level throws the generic
    // cause. Objects are written and read by recursion, so the limit keeps files readable that were
    // written on a larger stack: link long lists through an array, not through each other. Less
    // depth is possible where the calling thread's stack is small.
    static constexpr unsigned int max_object_depth = 2000;

    // `mode` is a Mode; of other values bit 0 counts. The file must outlive the archive or be
    // detached with Close() or Abort(). `bufferSize` bytes, at least 128; `buffer` holds as many
    // and stays the caller's (smaller ones are ignored). With a caller's buffer, or a file that
    // does not offer its memory, the buffer is the window. A null file throws
    // CXInvalidArgException.
    CXArchive(CXFile *file, unsigned int mode, unsigned int bufferSize = default_buffer_size,
        void *buffer = nullptr);
    CXArchive(CXArchive const &) = delete;
    CXArchive &operator=(CXArchive const &) = delete;

    // Closes an archive that is still open and swallows the errors of that: call Close() to learn
    // of them. While an exception unwinds the stack it aborts instead. Does not throw.
    virtual ~CXArchive();

    // Storing: writes what is buffered to the file. Loading: moves the file's position back by the
    // bytes not yet read. `lastTime` saves a storing archive on a memory file a new window. After
    // a failed write the buffered bytes are gone. Nothing on a closed archive.
    void Flush(bool lastTime = false);

    // Flushes and detaches the file, even when flushing throws. Nothing on a closed archive.
    void Close();

    // Detaches the file, dropping what is buffered (a memory file keeps its length, but bytes that
    // were overwritten in place have changed), and frees the archive's own buffer. Does not throw.
    void Abort() noexcept;

    bool IsLoading() const { return (m_mode & load) != 0; }
    bool IsStoring() const { return (m_mode & load) == 0; }
    CXFile *GetFile() const { return m_file; }   // null once detached
    void *GetData() const { return m_userData; } // the caller's pointer, null at first
    void SetData(void *data) { m_userData = data; }
    unsigned long long GetPosition() const; // in the file, of the next byte; 0 if closed

    // The schema number that the file has for the class of the object being loaded, also after
    // objects inside it were read; outside of objects, that of the last class record. no_schema
    // when none was read.
    unsigned int GetObjectSchema() const { return m_objectSchema; }

    // --- bytes

    // The bytes read: fewer than `size` only at the end of the file.
    std::size_t Read(void *target, std::size_t size);
    void EnsureRead(void *target, std::size_t size); // throws end of file when fewer arrive
    void Write(void const *source, std::size_t size);

    // The same bytes as the operators give for each value, in one go.
    template <kortools::archive::BulkValue T> void WriteValues(T const *values, std::size_t count);
    template <kortools::archive::BulkValue T> void ReadValues(T *values, std::size_t count);

    // The bytes between here and the end of the file; unknown_size for a file that cannot tell
    // (a pipe). Loading only.
    unsigned long long GetBytesLeft() const;

    // To be called before making room for `count` elements that were announced by the file and
    // have at least `elementSize` bytes each in it (0 counts as 1). Throws end of file when the
    // file is too short for them. Returns how many may be made room for at once: `count` or, when
    // the file cannot tell its length, 64 KiB of them and at least 1; read these and ask again for
    // the rest.
    unsigned long long EnsureAvailable(unsigned long long count, unsigned long long elementSize);

    // --- values. Fixed width on every system; a wchar_t has 16 bits in the file, and one that
    // needs more is written as U+FFFD.

    CXArchive &operator<<(bool value) { return Put(static_cast<unsigned char>(value)); }
    CXArchive &operator<<(char value) { return Put(value); }
    CXArchive &operator<<(unsigned char value) { return Put(value); }
    CXArchive &operator<<(short value) { return Put(value); }
    CXArchive &operator<<(unsigned short value) { return Put(value); }
    CXArchive &operator<<(int value) { return Put(value); }
    CXArchive &operator<<(unsigned int value) { return Put(value); }
    CXArchive &operator<<(long long value) { return Put(value); }
    CXArchive &operator<<(unsigned long long value) { return Put(value); }
    CXArchive &operator<<(float value) { return Put(value); }
    CXArchive &operator<<(double value) { return Put(value); }
    CXArchive &operator<<(wchar_t value);
    CXArchive &operator<<(CXTString<char> const &value);
    CXArchive &operator<<(CXTString<wchar_t> const &value);
    CXArchive &operator<<(CXObject const *object);

    CXArchive &operator>>(bool &value);
    CXArchive &operator>>(char &value) { return Get(value); }
    CXArchive &operator>>(unsigned char &value) { return Get(value); }
    CXArchive &operator>>(short &value) { return Get(value); }
    CXArchive &operator>>(unsigned short &value) { return Get(value); }
    CXArchive &operator>>(int &value) { return Get(value); }
    CXArchive &operator>>(unsigned int &value) { return Get(value); }
    CXArchive &operator>>(long long &value) { return Get(value); }
    CXArchive &operator>>(unsigned long long &value) { return Get(value); }
    CXArchive &operator>>(float &value) { return Get(value); }
    CXArchive &operator>>(double &value) { return Get(value); }
    CXArchive &operator>>(wchar_t &value);
    CXArchive &operator>>(CXTString<char> &value);
    CXArchive &operator>>(CXTString<wchar_t> &value);
    CXArchive &operator>>(CXObject *&object);
    CXArchive &operator>>(CXObject const *&object);

    // Reads an object of class T or of one derived from it; another class throws bad class. T must
    // have a class record of its own.
    template <class T>
    requires std::derived_from<std::remove_cv_t<T>, CXObject> CXArchive &operator>>(T *&object);

    // A long has another width on each system: write an int or a long long. The other types would
    // silently become an int or a bool.
    CXArchive &operator<<(long) = delete;
    CXArchive &operator<<(unsigned long) = delete;
    CXArchive &operator<<(signed char) = delete;
    CXArchive &operator<<(char8_t) = delete;
    CXArchive &operator<<(char16_t) = delete;
    CXArchive &operator<<(char32_t) = delete;
    CXArchive &operator<<(long double) = delete;
    template <class T>
    requires(!std::derived_from<std::remove_cv_t<T>, CXObject>) CXArchive &operator<<(T *) = delete;

    // --- counts and strings

    void WriteCount(unsigned long long count); // 2, 6 or 14 bytes
    unsigned long long ReadCount();            // see EnsureAvailable()

    // The length, in code units, that precedes a string's text. Encodings 2 to 4 are marked in the
    // file; without a mark, text is in the ANSI code page.
    void WriteStringLength(unsigned long long length, xStringEncoding encoding);
    unsigned long long ReadStringLength(xStringEncoding &encoding);

    // --- objects. An object is written once, later references to it are an index; so it must stay
    // alive until the archive is closed. Objects that are read belong to the caller.

    // Throws the generic cause for a class that is not serializable and bad class for a null
    // class; a mode that does not fit throws generic from the class functions and read-only or
    // write-only from the object functions.
    void WriteObject(CXObject const *object);

    // Null or an object whose class is `expected` or derived from it (null: any class). One that
    // the file refers to again is the same pointer. See also the orphans below.
    CXObject *ReadObject(CXRuntimeClass const *expected);

    void WriteClass(CXRuntimeClass const *runtimeClass);

    // Reads a class record; `schema` receives its schema number. Where the file has an object
    // already read instead, its index comes back in `objectTag` (0 for a null pointer) and the
    // result is null; without an `objectTag` that throws bad index.
    CXRuntimeClass const *ReadClass(CXRuntimeClass const *expected = nullptr,
        unsigned int *schema = nullptr, unsigned int *objectTag = nullptr);

    // Writes a class record or reads and checks one, depending on the mode.
    void SerializeClass(CXRuntimeClass const *runtimeClass);

    // Orphans are the objects that were made by a ReadObject() that threw: nobody has a pointer to
    // all of them. The archive keeps them, in the order of their making (the one asked for comes
    // first), until the next object is read, and never destroys them by itself, because it cannot
    // know which of them own others. A class whose destructor deletes what it points to: delete
    // GetOrphan(0), if there is one. Otherwise DeleteOrphans().
    std::size_t GetOrphanCount() const;
    CXObject *GetOrphan(std::size_t index) const; // null when out of range
    void DeleteOrphans();                         // each one, in reverse order of their making

protected:
    // Text with a terminating zero in a marked or unmarked encoding; null is empty. Narrow text is
    // converted for encoding 3 only (from the ANSI code page). Wide text is converted to the
    // encoding's code page; no code page, as for encoding 4, throws the generic cause.
    void WriteString(char const *text, xStringEncoding encoding);
    void WriteString(wchar_t const *text, xStringEncoding encoding);

    // Makes the next `needed` bytes contiguous in the window. Throws end of file when there are
    // fewer, buffer full when the buffer is smaller.
    void FillBuffer(std::size_t needed);

private:
    friend class kortools::archive::ObjectScope;
    static_assert(std::endian::native == std::endian::little, "the file's byte order");

    // The fast paths compare addresses as numbers: m_readEnd or m_writeEnd is null.
    bool HasUnread(std::size_t size) const { return Fits(size, m_readEnd); }
    bool HasRoom(std::size_t size) const { return Fits(size, m_writeEnd); }
    bool Fits(std::size_t size, unsigned char const *windowEnd) const
    {
        return reinterpret_cast<std::uintptr_t>(m_current) + size
            <= reinterpret_cast<std::uintptr_t>(windowEnd);
    }
    template <class T> CXArchive &Put(T value);
    template <class T> CXArchive &Get(T &value);

    [[noreturn]] void Throw(int cause) const;
    [[noreturn]] void ThrowMode(Mode mode) const;
    void CheckMode(Mode mode) const // throws read-only or write-only; generic on a closed archive
    {
        if ((m_mode & load) != mode || !m_file) [[unlikely]]
            ThrowMode(mode);
    }

    void SetWindow(unsigned char *start, unsigned char *current, unsigned char *end);
    void MakeRoom(std::size_t size); // at least `size` bytes of window to write
    void StoreWindow();              // writes what is buffered; leaves no room
    void WriteToFile(unsigned char const *source, std::size_t size);
    std::size_t GetRest() const { return static_cast<std::size_t>(m_end - m_current); }
    bool Refill(std::size_t needed); // false when the file ends before
    bool RefillDirect(std::size_t needed);
    std::size_t ReadFromFile(unsigned char *target, std::size_t size);
    std::size_t ReadPastWindow(unsigned char *target, std::size_t size);
    void Skip(unsigned long long count, unsigned long long elementSize);

    void WriteLargeCount(unsigned long long count);
    unsigned long long ReadLargeCount();
    void WriteNarrow(char const *text, std::size_t length, xStringEncoding encoding);
    void WriteWide(wchar_t const *text, std::size_t length);
    bool WriteShortWide(wchar_t const *text, std::size_t length);
    void ReadNarrow(unsigned long long length, CXTCharArray<char> &text);
    void ReadWide(unsigned long long length, CXTCharArray<wchar_t> &text);
    bool ReadShortWide(CXTCharArray<wchar_t> &text);
    std::size_t FillUnits(unsigned long long most, unsigned long long length);

    unsigned int TakeIndex();
    void WriteTag(unsigned int index, unsigned int classBit);
    CXObject *LoadObject(CXRuntimeClass const *objectClass, unsigned int outerSchema);
    CXObject *FindObject(unsigned int index, CXRuntimeClass const *expected);
    void LoadClass();
    kortools::archive::StoreMap &GetStoreMap();
    kortools::archive::LoadArray &GetLoadArray();

    // In the documented order, as debuggers and memory dumps show them.
    CXTString<wchar_t> m_fileName; // the file's path, for error reports
    CXFile *m_file;                // null once detached
    unsigned int m_mode;
    bool m_userBuffer;   // the buffer is the caller's
    bool m_directBuffer; // the window is the file's memory
    unsigned long long m_bufferSize;
    unsigned char *m_start = nullptr;   // the window: loading, [m_current, m_end) is unread;
    unsigned char *m_current = nullptr; // storing, [m_start, m_current) is unwritten
    unsigned char *m_end = nullptr;
    unsigned int m_objectSchema = no_schema;
    unsigned int m_mapCount = 1;                             // the next index
    std::unique_ptr<kortools::archive::StoreMap> m_storeMap; // made with the first object
    std::unique_ptr<kortools::archive::LoadArray> m_loadArray;
    void *m_userData = nullptr;

    unsigned char *m_readEnd = nullptr;  // m_end when loading, else null
    unsigned char *m_writeEnd = nullptr; // m_end when storing, else null
    unsigned char *m_buffer = nullptr;   // the caller's or the archive's own; null when direct
    void const *m_stackLimit = nullptr;  // objects nest while the stack stays above it
    unsigned int m_depth = 0;            // objects being written or read inside each other
    int m_exceptionsBefore;              // in flight when the archive was made
};

// Implementation of the inline members.

template <class T> CXArchive &CXArchive::Put(T value)
{
    if (!HasRoom(sizeof value)) [[unlikely]]
        MakeRoom(sizeof value);
    std::memcpy(m_current, &value, sizeof value);
    m_current += sizeof value;
    return *this;
}

template <class T> CXArchive &CXArchive::Get(T &value)
{
    if (!HasUnread(sizeof value)) [[unlikely]]
        FillBuffer(sizeof value);
    std::memcpy(&value, m_current, sizeof value);
    m_current += sizeof value;
    return *this;
}

inline CXArchive &CXArchive::operator<<(wchar_t value)
{
    auto const code = static_cast<char32_t>(value);
    return Put(static_cast<unsigned short>(code > 0xFFFF ? 0xFFFD : code));
}

inline CXArchive &CXArchive::operator>>(bool &value)
{
    unsigned char flag; // not `byte`, which a system header defines
    Get(flag);
    value = flag != 0;
    return *this;
}

inline CXArchive &CXArchive::operator>>(wchar_t &value)
{
    unsigned short unit;
    Get(unit);
    value = static_cast<wchar_t>(unit);
    return *this;
}

template <class T>
requires std::derived_from<std::remove_cv_t<T>, CXObject> CXArchive &CXArchive::operator>>(
    T *&object)
{
    object = static_cast<T *>(ReadObject(T::GetThisRuntimeClassDescriptor()));
    return *this;
}

template <kortools::archive::BulkValue T>
void CXArchive::WriteValues(T const *values, std::size_t count)
{
    Write(values, count * sizeof(T)); // the values exist, so the product does not overflow
}

template <kortools::archive::BulkValue T> void CXArchive::ReadValues(T *values, std::size_t count)
{
    EnsureRead(values, count * sizeof(T));
}
