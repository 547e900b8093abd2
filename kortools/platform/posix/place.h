// SPDX-License-Identifier: MIT
// Where a native path lies: on which mount, and where there.
#pragma once

#include "kortools/platform/posix/mount_table.h"

#include <string>
#include <string_view>

namespace kortools::platform {

struct Place {
    Mount mount;      // without a mount point when the table has none for the path
    std::string path; // absolute, links followed as far as that is safe
};

// Follows links on disks of this machine only and asks nothing of other mounts, so it does not wait
// for a server. What the path names need not exist.
Place find_place(std::string_view native_path);

// The same with a given table.
Place find_place(std::string_view native_path, std::vector<Mount> const &mounts);

// True when what is mounted with that type lies on another machine.
bool is_remote_type(std::string_view type);

// The same, or behind a program, which may stop answering as well.
bool may_stop_answering(std::string_view type);

} // namespace kortools::platform
