// SPDX-License-Identifier: MIT
// Paths relative to a directory, and back. '/' counts as '\' in what is computed; what is returned
// as it was given keeps it.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// What fileMakeRelativePath() makes a path relative to the directory for.
enum FILENAME_TYPE : int {
    filenameFile = 0,
    filenameNoDotSlash = 1, // a file, and without ".\" in front of the result
    filenameDirectory = 2,  // a bit: the path is that of a directory
};

// How to come from the directory `dir` to `path`; `path` as it is when `dir` is no directory that
// exists, when the path is relative, on another drive or share, or when one of them has 260
// characters or more.
//
//   C:\a, C:\a\b.txt  =>  .\b.txt, or b.txt with removeDotSlash or filenameNoDotSlash
//   C:\a\b, C:\a\c    =>  ..\c
//   C:\a, C:\a        =>  ..\a, or . with filenameDirectory
KORTOOLS_API CXTString<wchar_t> fileMakeRelativePath(CXTString<wchar_t> const &dir,
    CXTString<wchar_t> const &path, bool removeDotSlash = true, FILENAME_TYPE type = filenameFile);

// Joins a relative path to `base` and resolves "." and "..", unless the result has 260 characters
// or more, which only joins; an absolute path stays as it is. With `slashTerminateDirectory` the
// result gets a '\' at its end when it is a directory: on a network, a root, or one that exists,
// which is asked within the time-out of file_status.h.
//
//   C:\a, ..\b  =>  C:\b        C:\a, D:\b  =>  D:\b        (both empty)  =>  (empty)
KORTOOLS_API CXTString<wchar_t> fileMakeAbsolutePath(CXTString<wchar_t> const &base,
    CXTString<wchar_t> const &path, bool slashTerminateDirectory = false,
    unsigned int *timeout = nullptr);

// Resolves the "." and ".." of a path. False for 260 characters or more, and the path stays.
//
//   C:\a\.\b\..\c  =>  C:\a\c        a\..\..\b  =>  \b        (empty)  =>  "\"
KORTOOLS_API bool fileMakePathShortest(CXTString<wchar_t> &path);
