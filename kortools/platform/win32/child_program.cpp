// SPDX-License-Identifier: MIT
#include "kortools/platform/child_program.h"

#include "kortools/platform/program.h"

#include <windows.h>

namespace kortools::platform {
namespace {

bool is_program(std::wstring const &path)
{
    DWORD const attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::wstring to_wide(std::string const &text)
{
    auto const size = static_cast<int>(text.size());
    auto const length = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), length);
    return wide;
}

// A program takes its command line apart by itself: quotes hold a word together; backslashes stand
// for themselves but in front of a quote, where each needs another one.
std::wstring quote(std::wstring const &word)
{
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (wchar_t const ch : word) {
        if (ch == L'"')
            quoted.append(backslashes + 1, L'\\');
        backslashes = ch == L'\\' ? backslashes + 1 : 0;
        quoted += ch;
    }
    return quoted.append(backslashes, L'\\') + L'"';
}

std::wstring get_variable(wchar_t const *name)
{
    std::wstring value(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

// Until the other program has ended, Ctrl+C is its own affair.
BOOL WINAPI ignore_interrupt(DWORD event)
{
    return event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
}

} // namespace

std::wstring find_program(std::string const &name)
{
    std::wstring const file = L'\\' + to_wide(name) + L".exe";
    std::wstring const own = get_program_path();
    std::wstring const folders
        = own.substr(0, own.find_last_of(L'\\')) + L';' + get_variable(L"PATH") + L';';
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = folders.find(L';', begin)) != folders.npos; begin = end + 1) {
        std::wstring const folder = folders.substr(begin, end - begin);
        bool const is_absolute = folder.starts_with(L"\\\\") || folder.find(L":\\") == 1;
        if (is_absolute && is_program(folder + file))
            return folder + file;
    }
    return {};
}

std::optional<int> run_program(std::wstring const &path, std::vector<std::string> const &arguments)
{
    std::wstring command = quote(path);
    for (std::string const &argument : arguments)
        command += L' ' + quote(to_wide(argument));
    STARTUPINFOW startup {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started {};
    if (!CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
            &startup, &started))
        return std::nullopt;
    CloseHandle(started.hThread);
    SetConsoleCtrlHandler(ignore_interrupt, TRUE);
    WaitForSingleObject(started.hProcess, INFINITE);
    SetConsoleCtrlHandler(ignore_interrupt, FALSE);
    DWORD code = 1;
    GetExitCodeProcess(started.hProcess, &code);
    CloseHandle(started.hProcess);
    return static_cast<int>(code);
}

} // namespace kortools::platform
