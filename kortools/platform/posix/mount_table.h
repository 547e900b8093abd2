// SPDX-License-Identifier: MIT
// The mount table of the process, read to find where the shares of other machines are mounted.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kortools::platform {

struct Mount {
    std::string root; // what of the file system is mounted, from its own root on
    std::string mount_point;
    std::string type;
    std::string source; // "//server/share", "server:/export" or a device
};

// Lines of the form of /proc/self/mountinfo, in their order: a later mount hides an earlier one at
// the same place. Lines of another form are left out.
std::vector<Mount> parse_mount_table(std::string_view text);

// Empty when the system has no such table.
std::vector<Mount> read_mount_table();

// The names that lead to what is mounted there: server, share, folders of the share. Empty unless
// it is a folder of another machine (CIFS or NFS).
std::vector<std::string> get_remote_names(Mount const &mount);

} // namespace kortools::platform
