// SPDX-License-Identifier: MIT
// Open files, and the mapping of Windows-style paths to the system's own.
//
// Every function reports a failure by its result and leaves the reason for get_last_os_error().
#pragma once

#include "kortools/export.h"

#include <string>
#include <string_view>

namespace kortools::platform {

// The system's handle (HANDLE on Windows, the descriptor on Linux).
using FileHandle = void *;

inline FileHandle invalid_file_handle()
{
    return reinterpret_cast<FileHandle>(~static_cast<unsigned long long>(0));
}

enum class FileAccess { Read, Write, ReadWrite };
enum class FileSharing { None, Read, Write, ReadWrite }; // what other users of the file may do
enum class FileCreation { OpenExisting, CreateAlways, OpenAlways }; // CreateAlways truncates
enum class SeekOrigin { Begin, Current, End };

// Opens a file, not inherited by child processes. Sharing is checked in both directions against
// every other open of the same file through this function, in any process: it succeeds when each
// grants what the other uses. CreateAlways counts as writing while the file is emptied. A refused
// open fails with code 32 and never truncates. Folders do not open (code 5).
// On Linux sharing is kept by locks: other programs do not know of it, devices and pipes are always
// shared, and so are files on a file system without locks.
FileHandle open_file(
    wchar_t const *path, FileAccess access, FileSharing sharing, FileCreation creation);
bool close_file(FileHandle file);

// Bytes read, fewer than `count` only at the end of the file; -1 on failure (code 5 when the file
// is not open for reading).
long long read_file(FileHandle file, void *target, unsigned int count);

// True when all bytes were written. A failure (code 5 when the file is not open for writing, 112
// when the disk is full) may have written some.
bool write_file(FileHandle file, void const *source, unsigned int count);

// The new position, or -1. A position before the beginning fails with code 131; one beyond the end
// is allowed, and a write there leaves zeros in between.
long long seek_file(FileHandle file, long long offset, SeekOrigin origin);

long long get_file_size(FileHandle file);            // -1 on failure
bool set_file_size(FileHandle file, long long size); // new bytes are zero; the position stays
bool flush_file(FileHandle file);                    // to the disk; nothing when only read

// The handle below a C stream, after flushing it, so that both are at the same position;
// invalid_file_handle() when it has none.
FileHandle get_stream_handle(void *c_stream);

// The system's own form of a Windows-style path, in UTF-8: on Linux, drive C and a leading
// separator are the root directory and native paths are taken as they are; on Windows the path is
// unchanged. Empty when the path names nothing on this system: an unmapped drive (code 3), an
// unknown share (53 or 67), characters that no name has (123).
KORTOOLS_API std::string to_native_path(std::wstring_view path);

// The Windows-style form of what the system hands back: "/a/b" becomes "C:\a\b" on Linux. Names
// that are not UTF-8 become lone surrogates, and to_native_path() gives back every byte.
KORTOOLS_API std::wstring from_native_path(std::string_view native);

// Linux: makes drive `letter` (or the share "\\server\share") the native directory `directory`;
// empty removes the mapping. False when the letter is C or none, the share is not of that form or
// the directory is not absolute; it need not exist. Thread safe. Windows: returns false.
KORTOOLS_API bool map_drive(wchar_t letter, std::string_view directory);
KORTOOLS_API bool map_share(std::wstring_view share, std::string_view directory);

} // namespace kortools::platform
