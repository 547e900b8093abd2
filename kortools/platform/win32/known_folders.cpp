// SPDX-License-Identifier: MIT
#include "kortools/platform/known_folders.h"

#include <windows.h>

#include <initguid.h>
#include <knownfolders.h>
#include <shlobj.h>

namespace kortools::platform {

namespace {

std::wstring get_known_folder(KNOWNFOLDERID const &id, unsigned int flags)
{
    wchar_t *path = nullptr;
    std::wstring folder;
    if (SUCCEEDED(SHGetKnownFolderPath(id, flags, nullptr, &path)))
        folder = path;
    CoTaskMemFree(path); // also after a failure; null is fine
    return folder;
}

} // namespace

std::wstring get_user_data_folder()
{
    return get_known_folder(FOLDERID_LocalAppData, KF_FLAG_CREATE);
}

std::wstring get_common_data_folder()
{
    return get_known_folder(FOLDERID_ProgramData, 0);
}

bool set_common_data_folder(std::wstring_view)
{
    return false;
}

std::wstring get_temp_folder()
{
    wchar_t path[MAX_PATH + 1] = {};
    DWORD const length = GetTempPathW(MAX_PATH + 1, path);
    std::wstring folder(path, length <= MAX_PATH ? length : 0);
    if (folder.size() > 3 && folder.back() == L'\\')
        folder.pop_back();
    return folder;
}

} // namespace kortools::platform
