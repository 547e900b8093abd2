// SPDX-License-Identifier: MIT
// How the lines of the system's text files end: "\r\n" on Windows, "\n" on Linux.
#pragma once

#include <string_view>

namespace kortools::platform {

std::string_view get_line_end();

} // namespace kortools::platform
