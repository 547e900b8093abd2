// SPDX-License-Identifier: MIT
// The separators of a path's text: '\' is the one, '/' is what callers may write instead.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// Makes every '/' a '\'. True when there was one.
KORTOOLS_API bool fileConvertSlash(CXTString<wchar_t> &path);

// Leaves one '\' of several in a row, also of the two at the front of "\\server\share", which is
// then no longer one. O(length).
KORTOOLS_API void fileRemoveDuplicatedSlash(CXTString<wchar_t> &path);

// Appends a '\' unless there is one at the end; an empty path becomes "\". A '/' is none.
KORTOOLS_API void fileSlashTerminate(CXTString<wchar_t> &path);

// False for an empty path and for one that ends with '/'.
KORTOOLS_API bool fileIsSlashTerminated(CXTString<wchar_t> const &path);

// Removes one '\' at the end, if there is one; so "C:\" becomes "C:".
KORTOOLS_API void fileRemoveSlashTermination(CXTString<wchar_t> &path);
