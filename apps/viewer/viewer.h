// SPDX-License-Identifier: MIT
// The whole program behind main(), for every back end.
#pragma once

#include "kortools/ui/back_end.h"

#include <functional>
#include <string>
#include <vector>

namespace viewer {

// Runs one command line, the program's name first. Windows come from the back end that
// `install_back_end` installs, once the command line is understood. The exit code is that of the
// first file that could not be shown, or 2 when the command line is not understood.
int run_viewer(std::vector<std::string> const &arguments,
    std::function<kortools::ui::BackEnd &()> const &install_back_end);

} // namespace viewer
