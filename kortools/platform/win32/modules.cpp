// SPDX-License-Identifier: MIT
#include "kortools/platform/modules.h"

#include "kortools/platform/text_compare.h"
#include "kortools/platform/win32/quiet_errors.h"

#include <cstring>
#include <windows.h>

namespace kortools::platform {
namespace {

bool starts_with_no_case(std::string const &text, std::string const &start)
{
    return _strnicmp(text.c_str(), start.c_str(), start.size()) == 0;
}

// Sets of functions, which the system maps to its own libraries; there are no files.
bool is_set_of_functions(std::string const &name)
{
    return starts_with_no_case(name, "api-") || starts_with_no_case(name, "ext-");
}

bool is_in_system_directory(std::wstring const &path)
{
    wchar_t directory[MAX_PATH];
    UINT const length = GetSystemDirectoryW(directory, MAX_PATH);
    return length != 0 && _wcsnicmp(path.c_str(), directory, length) == 0;
}

} // namespace

ModuleHandle load_module(wchar_t const *path, std::string &problem)
{
    QuietErrors const quiet;
    HMODULE const module = LoadLibraryW(path);
    if (!module)
        problem = "system error " + std::to_string(GetLastError());
    return module;
}

void unload_module(ModuleHandle module)
{
    FreeLibrary(static_cast<HMODULE>(module));
}

void *find_in_module(ModuleHandle module, char const *name)
{
    return reinterpret_cast<void *>(GetProcAddress(static_cast<HMODULE>(module), name));
}

FoundLibrary find_library(std::string const &name)
{
    if (is_set_of_functions(name) || GetModuleHandleA(name.c_str()))
        return { true, {} };
    std::wstring const wide(name.begin(), name.end()); // such names are ASCII
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = 0;
    while ((length = SearchPathW(nullptr, wide.c_str(), L".dll", static_cast<DWORD>(path.size()),
                path.data(), nullptr))
        > path.size())
        path.resize(length);
    path.resize(length);
    if (is_in_system_directory(path))
        return { true, {} };
    return { length != 0, path };
}

ModuleKind get_module_kind()
{
    return { false, IMAGE_FILE_MACHINE_AMD64 };
}

std::wstring get_module_key(std::wstring path)
{
    for (wchar_t &ch : path)
        ch = to_lower(ch);
    return path;
}

} // namespace kortools::platform
