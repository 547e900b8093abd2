// SPDX-License-Identifier: MIT
// What a file needs that must survive whatever happens to its writers: a lock that ends with its
// holder, and a way to the disk that tells when a change has arrived.
//
// Every function reports a failure by its result and leaves the reason for get_last_os_error().
#pragma once

#include "kortools/platform/file_system.h"

namespace kortools::platform {

enum class LockKind { Shared, Exclusive };

// Takes the advisory lock of an open file, which excludes the locks of every other open of it, in
// this process and in others; shared ones only exclude exclusive ones. Does not wait: false when
// somebody else has it. Independent of sharing modes, and of what is read and written. An exclusive
// lock needs a file that is open for writing. Ends with unlock_file(), with close_file() and with
// the process. On a file system without locks everything is granted.
bool try_lock_file(FileHandle file, LockKind kind);
void unlock_file(FileHandle file);

// Whether the file at `path` is still the open one: on Linux it may have been deleted or replaced.
bool is_file_at(FileHandle file, wchar_t const *path);

// Reserves room on the disk for a file of `size` bytes, its contents and size unchanged, until its
// size is set. False only when it is certain that the disk does not have the room; some may be
// reserved then.
bool reserve_room(FileHandle file, long long size);

// Brings the name of the file at `path` to the disk, which flushing the file does not do on Linux.
bool flush_file_name(wchar_t const *path);

} // namespace kortools::platform
