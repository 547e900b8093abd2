// SPDX-License-Identifier: MIT
// The running program.
#pragma once

#include <string>

namespace kortools::platform {

// The program's file as a Windows-style path; empty when the system does not tell.
std::wstring get_program_path();

} // namespace kortools::platform
