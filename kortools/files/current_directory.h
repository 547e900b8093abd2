// SPDX-License-Identifier: MIT
// The current directory of the process, and a stack to come back to earlier ones.
//
//   if (filePushCurrentDirectory(folder)) {
//       load(L"relative.txt");
//       filePopCurrentDirectory();
//   }
#pragma once

#include "kortools/archive/archive.h" // for the array below
#include "kortools/core/array.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

// A stack of current directories. Not for concurrent use: the current directory is one for all
// threads.
class KORTOOLS_API CCurrentDir {
public:
    // Saves the current directory and changes to `path`. False, and nothing changed or saved, when
    // it is no directory, may not be entered, or is late (`timeout` as in file_status.h).
    bool Push(CXTString<wchar_t> const &path, unsigned int *timeout = nullptr);

    // Changes back to the directory saved last, and forgets it. False when there is none, and when
    // it is there no more; the current directory then stays.
    bool Pop();

    int GetCount() const { return m_saved.GetSize(); } // saved directories

    // The current directory, as an absolute path; empty when it has been removed.
    static CXTString<wchar_t> Get();

private:
    CXArray<CXTString<wchar_t>> m_saved; // the last one is popped first
};

// The one that the functions below use.
extern KORTOOLS_API CCurrentDir gCurrentDir;

// The same on gCurrentDir.
KORTOOLS_API bool filePushCurrentDirectory(
    CXTString<wchar_t> const &path, unsigned int *timeout = nullptr);
KORTOOLS_API bool filePopCurrentDirectory();
KORTOOLS_API CXTString<wchar_t> fileGetCurrentDirectory();
