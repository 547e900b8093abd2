// SPDX-License-Identifier: MIT
#include "kortools/platform/program.h"

#include <windows.h>

namespace kortools::platform {

std::wstring get_program_path()
{
    std::wstring path(MAX_PATH, L'\0');
    while (true) {
        DWORD const length
            = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2); // it may have been cut
    }
}

void *get_library_module()
{
    static char const s_inside = 0;
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<wchar_t const *>(&s_inside), &module);
    return module;
}

} // namespace kortools::platform
