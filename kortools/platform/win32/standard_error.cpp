// SPDX-License-Identifier: MIT
#include "kortools/platform/message_box.h"

#include <cstdio>
#include <string>
#include <windows.h>

namespace kortools::platform {

void write_to_standard_error(wchar_t const *text)
{
    std::wstring const line = std::wstring(text) + L"\r\n";
    HANDLE const output = GetStdHandle(STD_ERROR_HANDLE);
    DWORD written = 0;
    if (WriteConsoleW(output, line.data(), static_cast<DWORD>(line.size()), &written, nullptr))
        return;
    // Not a console: a file or a pipe gets UTF-8.
    int const size = WideCharToMultiByte(
        CP_UTF8, 0, line.data(), static_cast<int>(line.size()), nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), bytes.data(), size,
        nullptr, nullptr);
    WriteFile(output, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

} // namespace kortools::platform
