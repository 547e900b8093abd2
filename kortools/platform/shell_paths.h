// SPDX-License-Identifier: MIT
// What the text of a Windows-style path says: where its root ends, where its name begins, how it
// looks without "..". Nothing here looks at the disk, except for is_network_path().
//
// The separator is '\'; a '/' separates only where it is said. Positions and lengths count wide
// characters. Nothing allocates. On Windows the system's own functions answer, for the text up to
// the first zero; elsewhere those of portable_paths.h, whose header has the rules.
#pragma once

#include "kortools/platform/portable_paths.h"

#include <cstddef>
#include <string_view>

namespace kortools::platform {

std::size_t find_file_name(std::wstring_view path);
std::size_t find_extension(std::wstring_view path);
bool is_url(std::wstring_view path);
bool is_unc_path(std::wstring_view path);
bool is_unc_server_share(std::wstring_view path);
bool is_relative_path(std::wstring_view path);
bool is_root_path(std::wstring_view path);
PathCut strip_to_root(std::wstring_view path);
PathCut remove_file_spec(std::wstring_view path);
bool canonicalize_path(std::wstring_view path, PathText &result);
bool make_relative_path(PathEnd from, PathEnd to, PathText &result);

// True for a path on a share, and for one whose drive is a share. Folders of other machines that
// are mounted below drive C do not make it one.
bool is_network_path(std::wstring_view path);

} // namespace kortools::platform
