// SPDX-License-Identifier: MIT
// The disks that paths lie on, and the shares that other machines see of them.
#pragma once

#include <string>

namespace kortools::platform {

// The numbers of the Windows function of that name. On Linux the mount that the path lies on
// counts, so folders of other machines are remote wherever they are mounted; what a path names need
// not exist. no_root: a drive or share that is not there.
enum class DriveType : unsigned int {
    unknown = 0,
    no_root = 1,
    removable = 2,
    fixed = 3,
    remote = 4,
    cd_rom = 5,
    ram_disk = 6,
};

// Does not wait for a server.
DriveType get_drive_type(wchar_t const *path);

// Where a path lies as other machines see it: "\\computer\share" and, from there, `rest`.
struct SharedPath {
    std::wstring computer;
    std::wstring share;
    std::wstring rest; // without a separator in front; empty for the share itself
};

// False when no share holds the path. Of several the innermost one counts.
bool find_shared_path(wchar_t const *path, SharedPath &shared);

} // namespace kortools::platform
