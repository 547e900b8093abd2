// SPDX-License-Identifier: MIT
// A file name cut into views of its parts.
#pragma once

#include "kortools/platform/shell_paths.h"

#include <string_view>

namespace kortools::files {

struct NameParts {
    std::wstring_view directory; // up to the last '\', '/' or ':', with it
    std::wstring_view base;
    std::wstring_view extension; // with its dot
};

// `path` must be followed by a zero.
inline NameParts split_name(std::wstring_view path)
{
    std::size_t const separator = path.find_last_of(L"\\/:");
    std::size_t const name = separator == std::wstring_view::npos ? 0 : separator + 1;
    std::wstring_view const last = path.substr(name);
    std::size_t const dot = platform::find_extension(last);
    return { path.substr(0, name), last.substr(0, dot), last.substr(dot) };
}

} // namespace kortools::files
