// SPDX-License-Identifier: MIT
#pragma once

namespace kortools::app {

// Calls and forgets the exit callbacks. Throws CXInvalidArgException, before the first call, when
// the table is found to be overwritten.
void run_exit_callbacks();

// Frees the table with those that were added since.
void forget_exit_callbacks();

} // namespace kortools::app
