// SPDX-License-Identifier: MIT
#include "kortools/platform/file_status.h"

#include "kortools/platform/win32/long_path.h"

#include <windows.h>

namespace kortools::platform {
namespace {

// FILETIME counts tenths of microseconds from 1601 on.
constexpr long long ticks_per_second = 10'000'000;
constexpr long long seconds_before_1970 = 11'644'473'600;

// 0 would tell the system to leave the date, and negative ones are not dates to it.
bool to_file_time(long long seconds, FILETIME &time)
{
    if (seconds <= -seconds_before_1970
        || seconds > 0x7FFFFFFFFFFFFFFF / ticks_per_second - seconds_before_1970) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return false;
    }
    auto const ticks
        = static_cast<unsigned long long>((seconds + seconds_before_1970) * ticks_per_second);
    time.dwLowDateTime = static_cast<DWORD>(ticks);
    time.dwHighDateTime = static_cast<DWORD>(ticks >> 32);
    return true;
}

HANDLE open_for(wchar_t const *path, DWORD access)
{
    return CreateFileW(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

// Closes without touching the last error.
bool close_with(HANDLE file, bool result)
{
    DWORD const code = GetLastError();
    CloseHandle(file);
    SetLastError(code);
    return result;
}

} // namespace

bool get_file_status(wchar_t const *path, FileStatus &status)
{
    WIN32_FILE_ATTRIBUTE_DATA facts;
    if (!GetFileAttributesExW(path, GetFileExInfoStandard, &facts))
        return false;
    status.attributes = facts.dwFileAttributes;
    status.size = status.is_directory()
        ? 0
        : (static_cast<unsigned long long>(facts.nFileSizeHigh) << 32) | facts.nFileSizeLow;
    return true;
}

bool get_file_dates(wchar_t const *path, FileDates &dates)
{
    WIN32_FILE_ATTRIBUTE_DATA facts;
    if (!GetFileAttributesExW(path, GetFileExInfoStandard, &facts))
        return false;
    dates = { to_seconds(facts.ftCreationTime), to_seconds(facts.ftLastAccessTime),
        to_seconds(facts.ftLastWriteTime) };
    return true;
}

bool set_file_dates(
    wchar_t const *path, std::optional<long long> creation, std::optional<long long> write)
{
    FILETIME creation_time;
    FILETIME write_time;
    if ((creation && !to_file_time(*creation, creation_time))
        || (write && !to_file_time(*write, write_time)))
        return false;
    HANDLE const file = open_for(path, FILE_WRITE_ATTRIBUTES);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    return close_with(file,
        SetFileTime(
            file, creation ? &creation_time : nullptr, nullptr, write ? &write_time : nullptr));
}

bool get_file_identity(wchar_t const *path, FileIdentity &identity)
{
    HANDLE const file = open_for(path, 0);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    BY_HANDLE_FILE_INFORMATION facts;
    bool const done = GetFileInformationByHandle(file, &facts) != 0;
    if (done)
        identity = { facts.dwVolumeSerialNumber,
            (static_cast<unsigned long long>(facts.nFileIndexHigh) << 32) | facts.nFileIndexLow };
    return close_with(file, done);
}

} // namespace kortools::platform
