// SPDX-License-Identifier: MIT
#include "kortools/platform/terminal.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <shellapi.h>

namespace kortools::platform {
namespace {

std::string to_utf8(wchar_t const *text)
{
    int const size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1)
        return {};
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
    bytes.pop_back(); // the terminator
    return bytes;
}

} // namespace

std::vector<std::string> get_utf8_arguments(int argc, char const *const *argv)
{
    int count = 0;
    wchar_t **const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr)
        return { argv, argv + argc };
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i)
        arguments.push_back(to_utf8(wide[i]));
    LocalFree(wide);
    return arguments;
}

void prepare_standard_streams()
{
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

bool is_error_stream_terminal()
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

} // namespace kortools::platform
