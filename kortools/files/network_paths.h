// SPDX-License-Identifier: MIT
// The drives and shares that paths lie on. Nothing here waits for a server.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// True for a path on a share, and for one on a drive that is a share. On Linux also below a folder
// where one is mounted.
KORTOOLS_API bool fileIsOnNetworkDrive(CXTString<wchar_t> const &path);

// The type of the drive that a path lies on: 0 unknown, 1 there is no such drive or share, 2
// removable, 3 fixed, 4 on another machine, 5 CD-ROM, 6 in memory. On Linux the mount counts.
KORTOOLS_API unsigned int fileGetDriveType(CXTString<wchar_t> const &path);

// The name that other machines have for a path: "\\computer\share\rest", by the innermost share
// that holds it. On Windows those that this machine offers, but for the system's own (C$); on Linux
// those of other machines that are mounted here. A path on a share comes back as it is. False, and
// `unc` unchanged, when no share holds it.
KORTOOLS_API bool fileConvertToUNCPath(CXTString<wchar_t> const &path, CXTString<wchar_t> &unc);
