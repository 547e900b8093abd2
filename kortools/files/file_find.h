// SPDX-License-Identifier: MIT
// Searches in a directory.
//
// Patterns are those of Windows searches on both systems: '*' is any text, '?' any character (or
// none, at the end and in front of a dot), "*.*" is every name, and case does not count. A name
// without '*' and '?' is looked up as it is, so there the disk decides about case.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/data/xtime.h"
#include "kortools/export.h"

#include <memory>

// What a search tells about an entry of a directory.
struct xFileFindInfo {
    CXTString<wchar_t> fileName;
    CXTString<wchar_t> filePath; // directory and name
    unsigned int attributes = 0; // Windows numbers: 0x1 read-only, 0x2 hidden, 0x10 directory ...
    unsigned long long size = 0; // bytes; 0 for a directory
    CXTime creationDate = 0;     // on Linux of the last change
    CXTime lastAccessDate = 0;
    CXTime lastWriteDate = 0;
};

// True when `directory` holds a file (not a directory) that matches `pattern`. The first one, in
// the order of the disk, is described in `info` unless that is null. `timeout` as in file_status.h.
KORTOOLS_API bool filePathContainMatchingFile(CXTString<wchar_t> const &directory,
    CXTString<wchar_t> const &pattern, xFileFindInfo *info = nullptr,
    unsigned int *timeout = nullptr);

// A system header has macros of these names, each for either of two; both exist.
#pragma push_macro("FindNextFile")
#pragma push_macro("GetFileTitle")
#undef FindNextFile
#undef GetFileTitle

// CXFileFind: visits the entries of a directory that match a pattern, in the order of the disk,
// without "." and "..". Used by one thread at a time.
//
//   CXFileFind find;
//   bool more = find.FindFile(L"C:\\scenes\\*.kor");
//   while (more) {
//       more = find.FindNextFile();
//       load(find.GetFilePath());
//   }
class KORTOOLS_API CXFileFind {
public:
    CXFileFind();
    CXFileFind(CXFileFind const &) = delete;
    CXFileFind &operator=(CXFileFind const &) = delete;
    virtual ~CXFileFind();

    // Starts a search: directory and pattern, or a pattern for the current directory (null: every
    // entry of it). True when something matches; FindNextFile() then goes to it.
    virtual bool FindFile(wchar_t const *pattern = nullptr);

    // Goes to the first match, or to the next one. True when there is yet another one; false at the
    // last, and when there was no next one, where the entry stays.
    virtual bool FindNextFile();
    bool FindNextFileA() { return FindNextFile(); }
    bool FindNextFileW() { return FindNextFile(); }

    void Close(); // ends the search; there is no entry then

    // --- The entry that FindNextFile() went to. Before there is one: empty, 0 and false.

    xFileFindInfo const &GetInfo() const { return m_info; }
    CXTString<wchar_t> GetFileName() const { return m_info.fileName; }
    CXTString<wchar_t> GetFilePath() const { return m_info.filePath; }
    CXTString<wchar_t> GetFileTitle() const; // the name without its extension
    CXTString<wchar_t> GetFileTitleA() const { return GetFileTitle(); }
    CXTString<wchar_t> GetFileTitleW() const { return GetFileTitle(); }
    CXTString<wchar_t> GetRoot() const { return m_root; } // the directory of the search
    unsigned long long GetLength() const { return m_info.size; }
    CXTime GetCreationTime() const { return m_info.creationDate; }
    CXTime GetLastAccessTime() const { return m_info.lastAccessDate; }
    CXTime GetLastWriteTime() const { return m_info.lastWriteDate; }

    bool MatchesMask(unsigned int attributes) const
    {
        return (m_info.attributes & attributes) != 0;
    }
    bool IsReadOnly() const { return MatchesMask(0x1); }
    bool IsHidden() const { return MatchesMask(0x2); }
    bool IsSystem() const { return MatchesMask(0x4); }
    bool IsDirectory() const { return MatchesMask(0x10); }
    bool IsArchived() const { return MatchesMask(0x20); }
    bool IsNormal() const { return MatchesMask(0x80); }

private:
    struct Search;

    std::unique_ptr<Search> m_search; // while there may be more
    CXTString<wchar_t> m_root;
    xFileFindInfo m_info;
};

#pragma pop_macro("GetFileTitle")
#pragma pop_macro("FindNextFile")
