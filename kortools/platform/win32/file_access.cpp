// SPDX-License-Identifier: MIT
//
// The native open takes any access mask as it is; the one of the Windows interface adds rights to
// it. It is looked up at run time, as it has no import library of its own.
#include "kortools/platform/file_status.h"

#include <string>
#include <vector>
#include <windows.h>
// These need <windows.h> in front of them.
#include <shellapi.h>
#include <winternl.h>

namespace kortools::platform {
namespace {

struct NativeFunctions {
    decltype(&NtCreateFile) create_file;
    decltype(&RtlInitUnicodeString) init_string;
    decltype(&RtlNtStatusToDosError) to_error;
};

template <class Function> Function find(HMODULE module, char const *name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void *>(GetProcAddress(module, name)));
}

NativeFunctions const &get_native_functions()
{
    static NativeFunctions const s_functions = [] {
        HMODULE const module = GetModuleHandleW(L"ntdll.dll");
        return NativeFunctions { find<decltype(&NtCreateFile)>(module, "NtCreateFile"),
            find<decltype(&RtlInitUnicodeString)>(module, "RtlInitUnicodeString"),
            find<decltype(&RtlNtStatusToDosError)>(module, "RtlNtStatusToDosError") };
    }();
    return s_functions;
}

// Absolute, with "." and ".." resolved: the native form is taken literally.
std::wstring get_full_path(wchar_t const *path)
{
    std::vector<wchar_t> buffer(MAX_PATH);
    for (;;) {
        auto const size = static_cast<DWORD>(buffer.size());
        DWORD const length = GetFullPathNameW(path, size, buffer.data(), nullptr);
        if (length < size)
            return { buffer.data(), length };
        buffer.resize(length);
    }
}

std::wstring get_native_name(wchar_t const *path)
{
    std::wstring const full = get_full_path(path);
    if (full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\"))
        return L"\\??\\" + full.substr(4);
    if (full.starts_with(L"\\\\"))
        return L"\\??\\UNC" + full.substr(1);
    return L"\\??\\" + full;
}

} // namespace

bool check_file_access(wchar_t const *path, unsigned int access)
{
    NativeFunctions const &native = get_native_functions();
    std::wstring const name = get_native_name(path);
    UNICODE_STRING native_name;
    native.init_string(&native_name, name.c_str());
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, &native_name, OBJ_CASE_INSENSITIVE, nullptr, nullptr);
    HANDLE file = nullptr;
    IO_STATUS_BLOCK block;
    // Nobody is refused the two rights that every open takes along.
    NTSTATUS const status = native.create_file(&file, access | FILE_READ_ATTRIBUTES | SYNCHRONIZE,
        &attributes, &block, nullptr, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        FILE_OPEN, FILE_OPEN_FOR_BACKUP_INTENT, nullptr, 0);
    if (status < 0) {
        SetLastError(native.to_error(status));
        return false;
    }
    CloseHandle(file);
    return true;
}

bool is_executable_file(wchar_t const *path)
{
    return SHGetFileInfoW(path, 0, nullptr, 0, SHGFI_EXETYPE) != 0;
}

} // namespace kortools::platform
