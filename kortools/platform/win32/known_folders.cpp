// SPDX-License-Identifier: MIT
#include "kortools/platform/known_folders.h"

#include <windows.h>

#include <initguid.h>
#include <knownfolders.h>
#include <shlobj.h>

namespace kortools::platform {

std::wstring get_user_data_folder()
{
    wchar_t *path = nullptr;
    std::wstring folder;
    if (SUCCEEDED(SHGetKnownFolderPath(FOLDERID_LocalAppData, KF_FLAG_CREATE, nullptr, &path)))
        folder = path;
    CoTaskMemFree(path); // also after a failure; null is fine
    return folder;
}

} // namespace kortools::platform
