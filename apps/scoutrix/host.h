// SPDX-License-Identifier: MIT
// The whole program behind main(), so that tests can call it.
#pragma once

#include <string>
#include <vector>

namespace scoutrix {

// Runs one command line, the program's name first. The exit code: 0, 1 when the command failed, 2
// when it is not understood, 130 when Ctrl+C has cancelled it.
int run_host(std::vector<std::string> const &arguments);

} // namespace scoutrix
