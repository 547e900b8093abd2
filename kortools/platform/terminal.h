// SPDX-License-Identifier: MIT
// What a command-line program needs of the system: its arguments and its output as UTF-8.
#pragma once

#include "kortools/export.h"

#include <string>
#include <vector>

namespace kortools::platform {

// The program's arguments, its name first, in UTF-8 (Windows hands main() the ANSI page, which
// cannot name every file; there the arguments are taken from the system).
KORTOOLS_API std::vector<std::string> get_utf8_arguments(int argc, char const *const *argv);

// Makes standard output and error take UTF-8 and leave line ends alone.
KORTOOLS_API void prepare_standard_streams();

// True when standard error is a terminal that can redraw a line.
KORTOOLS_API bool is_error_stream_terminal();

} // namespace kortools::platform
