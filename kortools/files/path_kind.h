// SPDX-License-Identifier: MIT
// What the text of a path says about it, without a look at the disk. Both separators count.
#pragma once

#include <string_view>

namespace kortools::files {

// "\\server\share" and what lies below it; "\\?\UNC\server\share" too, other "\\?\" paths not.
bool is_unc_path(std::wstring_view path);

// "\", "C:\", "\\server" and "\\server\share".
bool is_root(std::wstring_view path);

// "\\server\share", also with a separator at the end.
bool is_server_share(std::wstring_view path);

// Neither a drive nor a separator at the front; "C:a" counts as absolute.
bool is_relative(std::wstring_view path);

} // namespace kortools::files
