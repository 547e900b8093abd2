// SPDX-License-Identifier: MIT
#pragma once

#include "kortools/platform/file_changes.h"

#include <string>

namespace kortools::platform {

// What a copy takes over besides data, permissions and the date of writing.
enum class CopyOwner { No, Yes }; // Yes: owner and date of access too, as a moved file keeps them

// Copies a regular file, see copy_file(); the paths are native ones.
bool copy_native_file(
    std::string const &from, std::string const &to, Existing existing, CopyOwner copy_owner);

// Renames, but fails with EEXIST when the new name exists.
bool rename_to_free_name(std::string const &from, std::string const &to);

// For a failed system call that makes `path`: code 3 instead of 2 when its folder is missing.
void report_missing_folder(std::string const &path);

} // namespace kortools::platform
