// SPDX-License-Identifier: MIT
// Other programs, started and waited for.
#pragma once

#include "kortools/export.h"

#include <optional>
#include <string>
#include <vector>

namespace kortools::platform {

// The Windows-style path of a program, named without the system's ending: in the folder of the
// running one, else in those that the variable PATH names from the top. Empty when there is none.
KORTOOLS_API std::wstring find_program(std::string const &name);

// Runs a program with arguments in UTF-8, its own name left out, and waits for its end. It uses
// this program's streams, and Ctrl+C is left to it. The result is its exit code, on Linux 128 and
// the number of the signal that ended it; none when it does not start, with the reason left for
// get_last_os_error().
KORTOOLS_API std::optional<int> run_program(
    std::wstring const &path, std::vector<std::string> const &arguments);

} // namespace kortools::platform
