// SPDX-License-Identifier: MIT
// The viewer is a program of its own, so that scoutrix needs no windows.
#pragma once

#include <string>
#include <vector>

namespace scoutrix {

// Runs scoutrix-view, which lies beside this program or in the path, with the arguments, and
// returns its exit code. Throws CXException when it is not installed or does not start.
int view_files(std::vector<std::string> const &arguments);

} // namespace scoutrix
