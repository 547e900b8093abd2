// SPDX-License-Identifier: MIT
// What the loader says about a library.
#pragma once

#include <string>

namespace kortools::platform {

// "/a/b.so: undefined symbol: c" => "undefined symbol: c"
inline std::string without_path(std::string const &text, std::string const &path)
{
    return text.starts_with(path + ": ") ? text.substr(path.size() + 2) : text;
}

} // namespace kortools::platform
