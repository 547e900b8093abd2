// SPDX-License-Identifier: MIT
#include "apps/scoutrix/host_folder.h"

#include "kortools/files/directories.h"
#include "kortools/platform/known_folders.h"

namespace scoutrix {

Text get_host_folder()
{
    Text folder(kortools::platform::get_user_data_folder().c_str());
    if (folder.IsEmpty())
        return folder;
    folder += L"\\Brantis\\scoutrix\\";
    fileCreateDirectory(folder, true);
    return folder;
}

} // namespace scoutrix
