// SPDX-License-Identifier: MIT
// What the text of a path says about it, without a look at the disk. Both separators count.
#pragma once

#include <string>
#include <string_view>

namespace kortools::files {

inline bool is_separator(wchar_t ch)
{
    return ch == L'\\' || ch == L'/';
}

// The path with '\' for every '/'.
std::wstring convert_separators(std::wstring_view path);

// A path on a share: "\\server\share" and what lies below it.
bool is_on_share(std::wstring_view path);

// What is a directory whether it exists or not: a root (\, C:\, \\server) or a server share, also
// with a separator behind it.
bool is_top_directory(std::wstring_view path);

// Neither a drive nor a separator at the front; "C:a" counts as absolute.
bool is_relative(std::wstring_view path);

// `directory` and `name` with one separator in between.
std::wstring join_path(std::wstring_view directory, std::wstring_view name);

} // namespace kortools::files
