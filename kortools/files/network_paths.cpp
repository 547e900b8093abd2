// SPDX-License-Identifier: MIT
#include "kortools/files/network_paths.h"

#include "kortools/files/path_kind.h"
#include "kortools/platform/drives.h"

using namespace kortools::platform;

bool fileIsOnNetworkDrive(CXTString<wchar_t> const &path)
{
    return kortools::files::is_on_share(path) || get_drive_type(path) == DriveType::remote;
}

unsigned int fileGetDriveType(CXTString<wchar_t> const &path)
{
    return static_cast<unsigned int>(get_drive_type(path));
}

bool fileConvertToUNCPath(CXTString<wchar_t> const &path, CXTString<wchar_t> &unc)
{
    if (kortools::files::is_on_share(path)) {
        unc = path;
        return true;
    }
    SharedPath shared;
    if (path.IsEmpty() || !find_shared_path(path, shared))
        return false;
    unc.Format(L"\\\\%s\\%s%s%s", shared.computer.c_str(), shared.share.c_str(),
        shared.rest.empty() ? L"" : L"\\", shared.rest.c_str());
    return true;
}
