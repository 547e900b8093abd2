// SPDX-License-Identifier: MIT
#include "kortools/platform/win32/long_path.h"

#include <windows.h>

namespace kortools::platform {

std::wstring lift_path_limit(wchar_t const *path)
{
    std::wstring full(path);
    DWORD const size = GetFullPathNameW(path, 0, nullptr, nullptr);
    if (size != 0) {
        full.resize(size);
        full.resize(GetFullPathNameW(path, size, full.data(), nullptr));
    }
    while (!full.empty() && full.back() == L'\\')
        full.pop_back();
    if (full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\"))
        return full;
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

long long to_seconds(FILETIME const &time)
{
    // Tenths of microseconds from 1601 on.
    unsigned long long const ticks
        = (static_cast<unsigned long long>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    return static_cast<long long>(ticks / 10'000'000) - 11'644'473'600;
}

} // namespace kortools::platform
