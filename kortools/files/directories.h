// SPDX-License-Identifier: MIT
// Directories made, removed and counted.
#pragma once

#include "kortools/archive/archive.h" // for the array below
#include "kortools/core/array.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

// Makes a directory, with `recursive` also those that should hold it. True as well when it exists
// (without `recursive`: when anything of that name exists). When one cannot be made, those that
// this call has made are removed again. `timeout` as in file_status.h, for the call as a whole.
KORTOOLS_API bool fileCreateDirectory(
    CXTString<wchar_t> const &path, bool recursive = false, unsigned int *timeout = nullptr);

// Removes a directory: an empty one, with `contents` any, with everything below it. A link is
// removed itself, never what it leads to. `readOnly`: also what is marked as read-only (on Linux:
// in directories that the user has no permission to change, but owns).
//
// Goes on after a failure, and appends to `failed` each path that stays because of one, inner paths
// first. True when nothing stays; false for a directory that does not exist, and for roots and
// server shares, which are refused.
KORTOOLS_API bool fileRemoveDirectory(CXTString<wchar_t> const &path, bool contents = false,
    bool readOnly = false, CXArray<CXTString<wchar_t>> *failed = nullptr);

// The number of files in a directory, with `recursive` also of those in the directories below. What
// is no directory counts, a link to one does not and is not followed. -1 when there is no such
// directory and when it is late; `timeout` as in file_status.h. Directories below that cannot be
// read count as empty.
KORTOOLS_API int fileGetFileCount(
    CXTString<wchar_t> const &path, bool recursive = false, unsigned int *timeout = nullptr);

// Makes a directory in the user's temporary directory and returns its path with a separator at the
// end; empty when that fails. Its name is the last part of `name` ("tmp" when that is empty), with
// '_' for characters that no file name has. Without `reuse` at most 60 characters of it count, and
// random digits make the directory a new one: "scene-3f09a1c8". With `reuse` there may be a
// directory of that name already. On Linux a new one is for the calling user only.
KORTOOLS_API CXTString<wchar_t> fileCreateTmpFolder(
    CXTString<wchar_t> const &name, bool reuse = false);
