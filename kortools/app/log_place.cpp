// SPDX-License-Identifier: MIT
#include "kortools/app/log_place.h"

#include "kortools/files/directories.h"
#include "kortools/files/path_parts.h"
#include "kortools/platform/known_folders.h"
#include "kortools/platform/program.h"

namespace kortools::app {

CXTString<wchar_t> get_log_title()
{
    return fileStripPathAndExtension(platform::get_program_path());
}

CXTString<wchar_t> get_log_folder()
{
    CXTString<wchar_t> folder = platform::get_user_data_folder();
    if (folder.IsEmpty())
        return folder;
    folder += L"\\Brantis\\" + get_log_title() + L"\\";
    fileCreateDirectory(folder, true);
    return folder;
}

} // namespace kortools::app
