// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/mount_table.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace kortools::platform {
namespace {

// Spaces and the like are written as a backslash and three octal digits.
std::string unescape(std::string_view field)
{
    auto const is_octal = [](char ch) { return ch >= '0' && ch <= '7'; };
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() && is_octal(field[i + 1])
            && is_octal(field[i + 2]) && is_octal(field[i + 3])) {
            text += static_cast<char>(
                ((field[i + 1] - '0') << 6) | ((field[i + 2] - '0') << 3) | (field[i + 3] - '0'));
            i += 3;
        } else {
            text += field[i];
        }
    }
    return text;
}

// The parts between separators, without the empty ones.
std::vector<std::string> split(std::string_view text, std::string_view separators)
{
    std::vector<std::string> parts;
    while (!text.empty()) {
        std::size_t const end = std::min(text.find_first_of(separators), text.size());
        if (end > 0)
            parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

// id, parent, device, root, mount point, options, any number of tags, "-", type, source, options.
bool parse_line(std::string_view line, Mount &mount)
{
    std::vector<std::string> const fields = split(line, " ");
    auto const dash = std::find(fields.begin(), fields.end(), "-");
    if (dash - fields.begin() < 6 || fields.end() - dash < 3)
        return false;
    mount = { unescape(fields[3]), unescape(fields[4]), unescape(dash[1]), unescape(dash[2]) };
    return true;
}

} // namespace

std::vector<Mount> parse_mount_table(std::string_view text)
{
    std::vector<Mount> mounts;
    for (std::string const &line : split(text, "\n")) {
        if (Mount mount; parse_line(line, mount))
            mounts.push_back(std::move(mount));
    }
    return mounts;
}

std::vector<Mount> read_mount_table()
{
    std::ifstream file("/proc/self/mountinfo", std::ios::binary);
    return parse_mount_table(std::string(std::istreambuf_iterator<char>(file), {}));
}

std::vector<std::string> get_remote_names(Mount const &mount)
{
    std::vector<std::string> names;
    if (mount.type == "cifs" || mount.type == "smb3" || mount.type == "smbfs") {
        if (mount.source.find_first_not_of("/\\") != 2)
            return {};
        names = split(mount.source, "/\\");
    } else if (mount.type == "nfs" || mount.type == "nfs4") {
        std::size_t const colon = mount.source.find(":/");
        if (colon == std::string::npos || colon == 0)
            return {};
        names = split(mount.source.substr(colon + 1), "/");
        names.insert(names.begin(), mount.source.substr(0, colon));
    }
    if (names.empty())
        return {};
    // A source that names a folder of the share has that folder as root as well on some kernels.
    std::vector<std::string> const root = split(mount.root, "/");
    if (root.size() >= names.size() || !std::equal(root.rbegin(), root.rend(), names.rbegin()))
        names.insert(names.end(), root.begin(), root.end());
    return names;
}

} // namespace kortools::platform
