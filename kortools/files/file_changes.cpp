// SPDX-License-Identifier: MIT
#include "kortools/files/file_changes.h"

#include "kortools/platform/file_changes.h"

bool fileDelete(CXTString<wchar_t> const &path)
{
    return kortools::platform::delete_file(path);
}
