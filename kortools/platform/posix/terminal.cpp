// SPDX-License-Identifier: MIT
#include "kortools/platform/terminal.h"

#include <cstdlib>
#include <string_view>
#include <unistd.h>

namespace kortools::platform {

std::vector<std::string> get_utf8_arguments(int argc, char const *const *argv)
{
    return { argv, argv + argc };
}

void prepare_standard_streams()
{
    // Linux terminals take UTF-8 and the C library translates nothing.
}

bool is_error_stream_terminal()
{
    char const *const terminal = std::getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && terminal != nullptr
        && std::string_view(terminal) != "dumb";
}

} // namespace kortools::platform
