// SPDX-License-Identifier: MIT
#include "kortools/platform/durable_files.h"

#include <windows.h>

namespace kortools::platform {
namespace {

// One byte far behind all data: a locked byte cannot be read or written by others. The place is
// the same as on Linux, for shares that both use.
OVERLAPPED get_lock_place()
{
    OVERLAPPED place {};
    place.Offset = 0xFFFFFFFF;
    place.OffsetHigh = 0x3FFFFFFF;
    return place;
}

} // namespace

bool try_lock_file(FileHandle file, LockKind kind)
{
    OVERLAPPED place = get_lock_place();
    DWORD const flags
        = LOCKFILE_FAIL_IMMEDIATELY | (kind == LockKind::Exclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0U);
    if (LockFileEx(file, flags, 0, 1, 0, &place))
        return true;
    DWORD const error = GetLastError();
    return error != ERROR_LOCK_VIOLATION && error != ERROR_IO_PENDING;
}

void unlock_file(FileHandle file)
{
    OVERLAPPED place = get_lock_place();
    UnlockFileEx(file, 0, 1, 0, &place);
}

bool is_file_at(FileHandle, wchar_t const *)
{
    return true; // open_file() never lets others delete or rename
}

bool reserve_room(FileHandle file, long long size)
{
    LARGE_INTEGER present;
    // Less room than the file has bytes would cut it.
    if (!GetFileSizeEx(file, &present) || size <= present.QuadPart)
        return true;
    FILE_ALLOCATION_INFO room;
    room.AllocationSize.QuadPart = size;
    return SetFileInformationByHandle(file, FileAllocationInfo, &room, sizeof(room))
        || GetLastError() != ERROR_DISK_FULL;
}

bool flush_file_name(wchar_t const *)
{
    return true; // the file system's journal keeps names in order with what is flushed
}

} // namespace kortools::platform
