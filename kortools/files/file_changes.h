// SPDX-License-Identifier: MIT
// Files copied, moved, renamed and deleted by name. On failure (false) the disk is as it was; the
// reason is the thread's last OS error.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// Copies a file with its permissions and the date of its last writing; a link is followed. False
// for a directory, a file onto itself, and with `failIfExists` when `target` exists.
//
// A copy that fails, for want of space for instance, leaves no part of it. On Linux a file that is
// replaced stays whole until the copy is complete; its other names (hard links) keep what it held.
KORTOOLS_API bool fileCopy(
    CXTString<wchar_t> const &source, CXTString<wchar_t> const &target, bool failIfExists = false);

// Moves a file or directory; a link is moved itself. Unless `renameOnly`, an existing file is
// replaced, and a file (not a directory) may go to another volume, as a copy that keeps dates and
// permissions. An existing directory is never replaced.
KORTOOLS_API bool fileMove(
    CXTString<wchar_t> const &source, CXTString<wchar_t> const &target, bool renameOnly = false);

// Renames a file or directory. False when the new name exists. A file may go to another volume.
KORTOOLS_API bool fileRename(CXTString<wchar_t> const &oldName, CXTString<wchar_t> const &newName);

// Deletes a file, or a link and not what it leads to. False for a directory, a missing file and one
// that may not be deleted.
KORTOOLS_API bool fileDelete(CXTString<wchar_t> const &path);

// Asks the user whether `path` may be replaced, with "no" as the default. True without asking when
// it does not exist.
KORTOOLS_API bool fileAskForReplace(CXTString<wchar_t> const &path);
