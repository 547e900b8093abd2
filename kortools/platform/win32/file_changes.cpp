// SPDX-License-Identifier: MIT
#include "kortools/platform/file_changes.h"

#include <windows.h>

namespace kortools::platform {

bool create_directory(wchar_t const *path)
{
    return CreateDirectoryW(path, nullptr) != 0;
}

bool remove_directory(wchar_t const *path)
{
    return RemoveDirectoryW(path) != 0;
}

bool delete_file(wchar_t const *path)
{
    return DeleteFileW(path) != 0;
}

} // namespace kortools::platform
