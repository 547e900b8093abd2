// SPDX-License-Identifier: MIT
// What a path names: its kind, size, dates and identity. Links are followed on Linux; on Windows
// the attributes and dates are the link's own.
//
// Every function reports a failure by its result and leaves the reason for get_last_os_error().
#pragma once

#include <optional>

namespace kortools::platform {

// Those of Windows that have a counterpart elsewhere. On Linux a file that nobody may write to is
// read-only, and one whose name begins with a dot is hidden.
enum FileAttributes : unsigned int {
    attribute_read_only = 0x1,
    attribute_hidden = 0x2,
    attribute_system = 0x4,
    attribute_directory = 0x10,
    attribute_archive = 0x20,
    attribute_normal = 0x80, // none of the others
    attribute_link = 0x400,  // or another kind of reparse point
};

struct FileStatus {
    unsigned int attributes = 0;
    unsigned long long size = 0; // bytes; 0 for a directory

    bool is_directory() const { return (attributes & attribute_directory) != 0; }
};

// False when the path names nothing, or nothing that may be looked at.
bool get_file_status(wchar_t const *path, FileStatus &status);

// Seconds since 1970-01-01 00:00:00 UTC, rounded down.
struct FileDates {
    long long creation = 0;
    long long access = 0;
    long long write = 0;
};

// On Linux the date of creation is the one that was set, else that of the disk, else the oldest.
bool get_file_dates(wchar_t const *path, FileDates &dates);

// Sets the dates that are given. Linux has no means to set the date of creation: it is kept in an
// extended attribute, and that fails with code 50 where the disk has none.
bool set_file_dates(
    wchar_t const *path, std::optional<long long> creation, std::optional<long long> write);

// Equal for two names of the same file, and only for these.
struct FileIdentity {
    unsigned long long volume = 0;
    unsigned long long file = 0;
    bool operator==(FileIdentity const &) const = default;
};

bool get_file_identity(wchar_t const *path, FileIdentity &identity);

// Whether the calling user could open the file or directory for `access`, a Windows access mask:
// generic rights, or those of files. Sharing counts, as with any open.
bool check_file_access(wchar_t const *path, unsigned int access);

// Whether the system would run the file as a program.
bool is_executable_file(wchar_t const *path);

} // namespace kortools::platform
