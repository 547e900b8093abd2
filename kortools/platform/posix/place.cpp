// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/place.h"

#include <algorithm>
#include <array>
#include <climits>
#include <unistd.h>

namespace kortools::platform {
namespace {

constexpr int max_links = 40; // as the kernel's own limit

// Cuts the first name off `path`; empty at its end.
std::string take_name(std::string &path)
{
    std::size_t const first = std::min(path.find_first_not_of('/'), path.size());
    std::size_t const end = std::min(path.find('/', first), path.size());
    std::string name = path.substr(first, end - first);
    path.erase(0, end);
    return name;
}

std::string make_absolute(std::string_view path)
{
    if (path.starts_with('/'))
        return std::string(path);
    char directory[PATH_MAX];
    std::string absolute = getcwd(directory, sizeof directory) ? directory : "";
    absolute += '/';
    return absolute += path;
}

// Of several at the same place the last one counts, which hides the others.
Mount const *find_mount(std::vector<Mount> const &mounts, std::string_view point)
{
    auto const at = std::find_if(mounts.rbegin(), mounts.rend(),
        [&](Mount const &mount) { return mount.mount_point == point; });
    return at == mounts.rend() ? nullptr : &*at;
}

// The mount that has `path`, whose last names may lie inside it.
Mount const *find_mount_above(std::vector<Mount> const &mounts, std::string path)
{
    for (;;) {
        if (Mount const *const mount = find_mount(mounts, path.empty() ? "/" : path))
            return mount;
        if (path.empty())
            return nullptr;
        path.erase(path.rfind('/'));
    }
}

std::string read_link(std::string const &path)
{
    char target[PATH_MAX];
    ssize_t const size = readlink(path.c_str(), target, sizeof target);
    return { target, static_cast<std::size_t>(std::max<ssize_t>(size, 0)) };
}

} // namespace

bool is_remote_type(std::string_view type)
{
    static constexpr std::array<std::string_view, 20> types { "9p", "afs", "autofs", "ceph", "cifs",
        "coda", "davfs", "fuse.curlftpfs", "fuse.glusterfs", "fuse.rclone", "fuse.s3fs",
        "fuse.sshfs", "glusterfs", "lustre", "nfs", "nfs4", "smb3", "smbfs", "vboxsf", "virtiofs" };
    return std::ranges::find(types, type) != types.end();
}

bool may_stop_answering(std::string_view type)
{
    return is_remote_type(type) || type == "fuse" || type.starts_with("fuse.");
}

Place find_place(std::string_view native_path, std::vector<Mount> const &mounts)
{
    std::string rest = make_absolute(native_path);
    std::string path; // resolved; "" is the root
    Mount const *mount = find_mount(mounts, "/");
    int links = 0;
    for (std::string name = take_name(rest); !name.empty(); name = take_name(rest)) {
        if (name == ".")
            continue;
        if (name == "..") {
            path.erase(path.empty() ? 0 : path.rfind('/'));
            mount = find_mount_above(mounts, path);
            continue;
        }
        std::string next = path;
        next.append(1, '/').append(name);
        if (Mount const *const entered = find_mount(mounts, next))
            mount = entered;
        bool const is_safe = !mount || !may_stop_answering(mount->type);
        std::string const target = is_safe && links < max_links ? read_link(next) : "";
        if (target.empty()) {
            path = next;
            continue;
        }
        ++links;
        rest.insert(0, target);
        if (target[0] == '/') {
            path.clear();
            mount = find_mount(mounts, "/");
        }
    }
    return { mount ? *mount : Mount {}, path.empty() ? "/" : path };
}

Place find_place(std::string_view native_path)
{
    return find_place(native_path, read_mount_table());
}

} // namespace kortools::platform
