// SPDX-License-Identifier: MIT
#include "kortools/platform/drives.h"

#include "kortools/platform/posix/native_path.h"
#include "kortools/platform/posix/path_mapping.h"
#include "kortools/platform/posix/path_text.h"
#include "kortools/platform/posix/place.h"

#include <algorithm>
#include <fstream>
#include <optional>

namespace kortools::platform {
namespace {

constexpr unsigned int error_not_shared = 2310;

// Whether the disk under a partition ("/dev/sdb1") can be taken out.
bool is_removable(std::string const &source)
{
    std::string name = source.substr(source.rfind('/') + 1);
    while (!name.empty()) {
        if (std::ifstream file("/sys/block/" + name + "/removable"); file)
            return file.get() == '1';
        name.pop_back(); // the number of the partition
    }
    return false;
}

DriveType to_drive_type(Mount const &mount)
{
    std::string const &type = mount.type;
    if (type.empty())
        return DriveType::unknown;
    if (is_remote_type(type) || !get_remote_names(mount).empty())
        return DriveType::remote;
    if (type == "tmpfs" || type == "ramfs" || type == "devtmpfs")
        return DriveType::ram_disk;
    if (type == "iso9660" || type == "udf")
        return DriveType::cd_rom;
    return is_removable(mount.source) ? DriveType::removable : DriveType::fixed;
}

// The names of `path` below `folder`; nothing when it lies elsewhere.
std::optional<std::string> get_rest(std::string const &path, std::string folder)
{
    while (!folder.empty() && folder.back() == '/')
        folder.pop_back();
    if (!path.starts_with(folder))
        return {};
    if (path.size() == folder.size())
        return std::string();
    if (path[folder.size()] != '/')
        return {};
    return path.substr(folder.size() + 1);
}

std::wstring join(std::vector<std::string>::const_iterator first,
    std::vector<std::string>::const_iterator last, std::string const &rest)
{
    std::string joined;
    for (; first != last; ++first)
        joined += *first + '/';
    joined += rest;
    while (!joined.empty() && joined.back() == '/')
        joined.pop_back();
    return decode_path_text(joined);
}

bool find_mapped_share(std::string const &path, SharedPath &shared)
{
    std::size_t best_size = 0;
    for (MappedShare const &each : get_mapped_shares()) {
        std::string const folder = find_place(each.directory.empty() ? "/" : each.directory).path;
        std::optional<std::string> const rest = get_rest(path, folder);
        if (!rest || folder.size() < best_size)
            continue;
        best_size = folder.size();
        shared = { each.server, each.share, join({}, {}, *rest) };
    }
    return best_size > 0;
}

bool find_mounted_share(Place const &place, SharedPath &shared)
{
    std::vector<std::string> const names = get_remote_names(place.mount);
    std::optional<std::string> const rest = get_rest(place.path, place.mount.mount_point);
    if (names.size() < 2 || !rest)
        return false;
    shared = { decode_path_text(names[0]), decode_path_text(names[1]),
        join(names.begin() + 2, names.end(), *rest) };
    return true;
}

} // namespace

DriveType get_drive_type(wchar_t const *path)
{
    bool const is_share = parse_path(std::wstring_view(path)).root == ParsedPath::Root::Share;
    std::string const native = to_native_path(std::wstring_view(path));
    if (native.empty())
        return DriveType::no_root;
    return is_share ? DriveType::remote : to_drive_type(find_place(native).mount);
}

bool find_shared_path(wchar_t const *path, SharedPath &shared)
{
    return with_native_path(path, false, [&](std::string const &native) {
        Place const place = find_place(native);
        if (find_mapped_share(place.path, shared) || find_mounted_share(place, shared))
            return true;
        set_last_os_error(error_not_shared);
        return false;
    });
}

} // namespace kortools::platform
