// SPDX-License-Identifier: MIT
// Where a Windows-style path lies in the native tree.
//
//   path                        native path
//   -------------------------   -----------------------------------------------------------
//   C:\a\b  \a\b  /a/b          /a/b
//   a\b  C:a\b                  a/b, from the current directory
//   D:\a  D:a                   the directory mapped to D (map_drive) and /a; else code 3
//   \\server\share\a            the directory mapped to the share (map_share), else where the
//                               mount table has it, and /a; else code 53 (no such server), or
//                               67 when another share of that server is known
//   \\?\C:\a  \\?\UNC\s\h\a     C:\a  \\s\h\a
//   (empty)                     code 3
//
// Drive letters, servers and shares do not tell upper from lower case; folders and files do.
// "." and ".." are left to the system, except below a mapped directory: there they are resolved in
// the text, as on Windows, and ".." stays within it. Reserved names (NUL) and trailing dots mean
// nothing special. path_text.h tells how characters become bytes.
#pragma once

#include "kortools/platform/posix/mount_table.h"

#include <string>
#include <string_view>
#include <vector>

namespace kortools::platform {

// A path cut into its parts, which are views into it.
struct ParsedPath {
    enum class Root { Current, Top, Drive, Share, Device };
    Root root = Root::Current;
    wchar_t drive = 0;             // Drive: 'A' to 'Z', but not 'C', whose paths are Top or Current
    std::wstring_view server = {}; // Share
    std::wstring_view share = {};  // Share; may be empty
    std::wstring_view rest = {};   // Top: begins with a separator
};

ParsedPath parse_path(std::wstring_view path);

struct MappedShare {
    std::wstring server; // as it was given to map_share()
    std::wstring share;
    std::string directory; // native, without a slash at the end; "" is the root
};

std::vector<MappedShare> get_mapped_shares();

// The native form of a path on a share, according to `mounts`. Empty, with code 53 or 67, when
// they do not have it.
std::string find_share(ParsedPath const &path, std::vector<Mount> const &mounts);

} // namespace kortools::platform
