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

// The running system with its version: "Linux 6.1.0-13-amd64", "Windows 10.0.19045".
std::wstring get_system_name();

} // namespace kortools::platform
