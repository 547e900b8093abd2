// SPDX-License-Identifier: MIT
// Libraries that are loaded while the program runs.
#pragma once

#include <string>

namespace kortools::platform {

using ModuleHandle = void *; // HMODULE on Windows, what dlopen() returns on Linux

// Loads the library, runs its start-up code and binds all that it needs; nothing of it becomes
// visible to others. Loads are counted. Null on failure, with what the system says in `problem`
// (UTF-8). The path is absolute.
ModuleHandle load_module(wchar_t const *path, std::string &problem);
void unload_module(ModuleHandle module);

void *find_in_module(ModuleHandle module, char const *name); // null: not exported

// Where the system finds a library that another one needs. Linux: always found, as the failure of
// load_module() says what is missing.
struct FoundLibrary {
    bool is_found;
    std::wstring path; // empty: loaded already, or one of the system's own
};
FoundLibrary find_library(std::string const &name);

// The libraries that this process can load: their format, and its number for the processor.
struct ModuleKind {
    bool is_elf; // else PE
    unsigned int machine;
};
ModuleKind get_module_kind();

// The same for two paths of the same file, as far as their text tells.
std::wstring get_module_key(std::wstring path);

} // namespace kortools::platform
