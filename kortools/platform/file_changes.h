// SPDX-License-Identifier: MIT
// Files and folders that come and go.
//
// Every function reports a failure by its result and leaves the reason for get_last_os_error().
#pragma once

#include <functional>
#include <string>

namespace kortools::platform {

enum class Existing { Keep, Replace };        // what becomes of a file that has the new name
enum class OtherVolume { Refuse, Copy };      // whether a file may be moved by copying it
enum class ReadOnlyFiles { Respect, Remove }; // whether read-only files and folders are removed

// Code 183 when something of that name exists, 3 when the folder that is to hold it does not.
bool create_directory(wchar_t const *path);

// The same, for the calling user only on Linux.
bool create_private_directory(wchar_t const *path);

// Copies a file with its date of writing and its permissions; a link is followed. A copy that fails
// leaves no part of it behind. Code 32 when both are the same file, 80 when the new name exists and
// is kept. On Linux what exists stays as it was when the copy fails, and a copy that succeeds takes
// its place at once: other names of the replaced file keep what it held.
bool copy_file(wchar_t const *from, wchar_t const *to, Existing existing);

// Renames a file or folder; a link is renamed itself. Code 17 when the new name is on another
// volume and it is a folder, or copying is refused, 183 when the new name exists and is kept, 5
// when it is an existing folder. A file whose copy exists but that cannot be deleted stays.
bool move_file(wchar_t const *from, wchar_t const *to, Existing existing, OtherVolume other_volume);

// Removes a file, or a link and not what it leads to; a folder fails with code 5. On Windows a
// read-only file is refused, on Linux the permissions of its folder decide.
bool delete_file(wchar_t const *path);

// Removes an empty folder, or a link to a folder and not what it leads to.
bool remove_directory(wchar_t const *path, ReadOnlyFiles read_only = ReadOnlyFiles::Respect);

// Removes a folder with everything in it. Links are removed themselves, and nothing is followed
// that takes a folder's place meanwhile. Goes on after a failure and calls `report` for each path
// that stays because of one, inner ones first. Neither the stack nor the number of open files grow
// with the depth of the folders.
bool remove_tree(wchar_t const *path, ReadOnlyFiles read_only,
    std::function<void(std::wstring const &path)> const &report);

} // namespace kortools::platform
