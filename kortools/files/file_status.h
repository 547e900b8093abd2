// SPDX-License-Identifier: MIT
// Questions about files and directories by name.
//
// A time-out keeps a share that does not answer from blocking the caller: `timeout` points to
//
//   null, or 0, 0xFFFFFFFF, 0x80000000   no limit
//   1 ... 0x7FFFFFFF                     milliseconds, for paths on a share (\\server\share) only
//   0x80000000 + milliseconds            the same for every path; the bit is cleared by the call
//
// and holds 0xFFFFFFFF after a call that gave up, which tells late from absent.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// True when the path names a file or directory. A link is what it leads to.
KORTOOLS_API bool fileExists(CXTString<wchar_t> const &path, unsigned int *timeout = nullptr);

// True when the path names a directory.
KORTOOLS_API bool fileDirectoryExists(
    CXTString<wchar_t> const &path, unsigned int *timeout = nullptr);

// True for a root (\, C:\, \\server), a server share and a directory that exists; the disk is not
// asked about roots and shares. `bySeparator`: also for every path that ends with a separator.
KORTOOLS_API bool fileIsDirectory(
    CXTString<wchar_t> const &path, bool bySeparator = false, unsigned int *timeout = nullptr);

// The size in bytes; 0 for directories and for what does not exist.
KORTOOLS_API unsigned long long fileGetSize(CXTString<wchar_t> const &path);

// How two directories lie to each other.
enum DirCompare : int {
    dirDifferent = 0,
    dirSame = 1,
    dirFirstInSecond = 2,
    dirSecondInFirst = 3,
};

// Compares the texts only, without upper and lower case; / is taken for \ and a missing separator
// at the end is added. Relative paths are dirSame or dirDifferent. A directory is inside another
// one when the other's text occurs anywhere in its own.
//
//   C:\Data      c:\data\   dirSame
//   C:\Data\Sub  C:\Data    dirFirstInSecond
//   C:\Data      C:/Data/x  dirSecondInFirst
//   Data         Data\Sub   dirDifferent
KORTOOLS_API DirCompare fileCompareDirectory(CXTString<wchar_t> a, CXTString<wchar_t> b);
