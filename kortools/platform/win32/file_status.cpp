// SPDX-License-Identifier: MIT
#include "kortools/platform/file_status.h"

#include <windows.h>

namespace kortools::platform {

bool get_file_status(wchar_t const *path, FileStatus &status)
{
    WIN32_FILE_ATTRIBUTE_DATA facts;
    if (!GetFileAttributesExW(path, GetFileExInfoStandard, &facts))
        return false;
    status.is_directory = (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    status.size = status.is_directory
        ? 0
        : (static_cast<unsigned long long>(facts.nFileSizeHigh) << 32) | facts.nFileSizeLow;
    return true;
}

} // namespace kortools::platform
