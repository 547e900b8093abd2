// SPDX-License-Identifier: MIT
// The running program, and the library in it.
#pragma once

#include <string>

namespace kortools::platform {

// The program's file as a Windows-style path; empty when the system does not tell.
std::wstring get_program_path();

// The system's handle of this library (HMODULE; on Linux what dlopen() gives), or of the program
// that it is linked into. Need not be released.
void *get_library_module();

} // namespace kortools::platform
