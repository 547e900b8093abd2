// SPDX-License-Identifier: MIT
// Between the library's Windows-style paths and std::filesystem's.
#pragma once

#include "kortools/core/xstring.h"

#include <filesystem>

namespace kor_apps {

std::filesystem::path to_native(CXTString<wchar_t> const &path);
CXTString<wchar_t> from_native(std::filesystem::path const &path);

// As users of this system write it.
CXTString<wchar_t> to_shown(CXTString<wchar_t> const &path);

// With the current folder in front where it is relative, and without "." and "..".
CXTString<wchar_t> make_absolute(CXTString<wchar_t> const &path);

} // namespace kor_apps
