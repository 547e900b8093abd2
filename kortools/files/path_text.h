// SPDX-License-Identifier: MIT
// Paths as views, for the functions on their text.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/files/path_separators.h"

#include <string_view>

namespace kortools::files {

// A path ends at its first zero, as it does for the system.
inline std::wstring_view view_of(CXTString<wchar_t> const &path)
{
    return path.GetConstBuffer();
}

inline CXTString<wchar_t> to_string(std::wstring_view text)
{
    return CXTString<wchar_t>(text.data(), static_cast<int>(text.size()));
}

// The path with '\\' for '/'.
inline CXTString<wchar_t> converted(CXTString<wchar_t> path)
{
    fileConvertSlash(path);
    return path;
}

} // namespace kortools::files
