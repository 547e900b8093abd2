// SPDX-License-Identifier: MIT
#include "kortools/platform/current_directory.h"

#include <windows.h>

namespace kortools::platform {
std::wstring get_current_directory()
{
    std::wstring text(MAX_PATH, L'\0');
    for (;;) {
        auto const size = static_cast<DWORD>(text.size());
        DWORD const length = GetCurrentDirectoryW(size, text.data());
        text.resize(length);
        if (length < size)
            return text;
    }
}

NextDirectory::~NextDirectory()
{
    if (m_handle)
        CloseHandle(m_handle);
}

bool NextDirectory::open(wchar_t const *path)
{
    HANDLE const directory
        = CreateFileW(path, FILE_TRAVERSE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
            nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (directory == INVALID_HANDLE_VALUE)
        return false;
    m_handle = directory;
    m_path = path;
    return true;
}

bool NextDirectory::change() const
{
    return m_handle && SetCurrentDirectoryW(m_path.c_str());
}

} // namespace kortools::platform
