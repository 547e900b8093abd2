// SPDX-License-Identifier: MIT
// Files and folders that come and go.
//
// Every function reports a failure by its result and leaves the reason for get_last_os_error().
#pragma once

namespace kortools::platform {

// Code 183 when something of that name exists, 3 when the folder that is to hold it does not.
bool create_directory(wchar_t const *path);

// Removes an empty folder; not a link to one.
bool remove_directory(wchar_t const *path);

// Removes a file, or a link and not what it leads to; a folder fails with code 5. On Windows a
// read-only file is refused, on Linux the permissions of its folder decide.
bool delete_file(wchar_t const *path);

} // namespace kortools::platform
