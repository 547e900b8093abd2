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

std::wstring get_system_name()
{
    // The one function that does not tell older programs of an older system.
    using GetVersion = LONG(WINAPI *)(OSVERSIONINFOW *);
    auto const get_version = reinterpret_cast<GetVersion>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    OSVERSIONINFOW system {};
    system.dwOSVersionInfoSize = sizeof system;
    if (!get_version || get_version(&system) != 0)
        return L"Windows";
    return L"Windows " + std::to_wstring(system.dwMajorVersion) + L'.'
        + std::to_wstring(system.dwMinorVersion) + L'.' + std::to_wstring(system.dwBuildNumber);
}

} // namespace kortools::platform
