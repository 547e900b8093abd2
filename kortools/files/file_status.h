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
#include "kortools/data/xtime.h"
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

// The dates of a file or directory, exact to the second. False, and `date` unchanged, when it does
// not exist; the second form then gives no date (0).
//
// Linux disks do not let a date of creation be set, so it is kept beside the file, in an extended
// attribute; setting it is false where the disk has none. A file on a disk that does not record its
// creation has the older of its dates of writing and of change.
KORTOOLS_API bool fileGetCreationDate(CXTString<wchar_t> const &path, CXTime &date);
KORTOOLS_API CXTime fileGetCreationDate(CXTString<wchar_t> const &path);
KORTOOLS_API bool fileSetCreationDate(CXTString<wchar_t> const &path, CXTime const &date);
KORTOOLS_API bool fileGetLastWriteDate(CXTString<wchar_t> const &path, CXTime &date);
KORTOOLS_API CXTime fileGetLastWriteDate(CXTString<wchar_t> const &path);
KORTOOLS_API bool fileSetLastWriteDate(CXTString<wchar_t> const &path, CXTime const &date);

// True when both names lead to one file or directory, however they are written: through links, over
// a share, with other case where the disk does not tell. When neither exists, the names are
// compared, made absolute and without case; false when one exists.
KORTOOLS_API bool fileIsSameFile(CXTString<wchar_t> const &a, CXTString<wchar_t> const &b);

// The same; false when one of them is not a directory, but exists.
KORTOOLS_API bool fileIsSameDir(CXTString<wchar_t> const &a, CXTString<wchar_t> const &b);

// Whether the calling user could open the file or directory with these rights, a Windows access
// mask: 0x80000000 to read, 0x40000000 to write, 0x10000 to delete ... As with any open, false too
// when another opener does not share it. 0 asks whether it exists.
KORTOOLS_API bool fileCheckAccess(CXTString<wchar_t> const &path, unsigned int access);

// True for a shell shortcut, on every system: a file that begins as shortcuts do, whatever its
// extension.
KORTOOLS_API bool fileIsShortcut(CXTString<wchar_t> const &path);

// True for a file that the system would run as a program: by its kind on Windows, by permission on
// Linux.
KORTOOLS_API bool fileIsExecutable(CXTString<wchar_t> const &path);

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
