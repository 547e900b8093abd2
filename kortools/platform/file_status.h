// SPDX-License-Identifier: MIT
// What a path names: its kind, size and dates. Links are followed.
//
// Every function reports a failure by its result and leaves the reason for get_last_os_error().
#pragma once

namespace kortools::platform {

struct FileStatus {
    bool is_directory = false;
    unsigned long long size = 0; // bytes; 0 for a directory
};

// False when the path names nothing, or nothing that may be looked at.
bool get_file_status(wchar_t const *path, FileStatus &status);

} // namespace kortools::platform
