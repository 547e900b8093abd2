// SPDX-License-Identifier: MIT
#include "kortools/platform/shell_paths.h"

#include "kortools/platform/file_system.h"
#include "kortools/platform/posix/mount_table.h"
#include "kortools/platform/posix/path_mapping.h"
#include "kortools/platform/posix/place.h"

#include <string>

namespace kortools::platform {
std::size_t find_file_name(std::wstring_view path)
{
    return portable::find_file_name(path);
}

std::size_t find_extension(std::wstring_view path)
{
    return portable::find_extension(path);
}

bool is_url(std::wstring_view path)
{
    return portable::is_url(path);
}

bool is_unc_path(std::wstring_view path)
{
    return portable::is_unc_path(path);
}

bool is_unc_server_share(std::wstring_view path)
{
    return portable::is_unc_server_share(path);
}

bool is_relative_path(std::wstring_view path)
{
    return portable::is_relative_path(path);
}

bool is_root_path(std::wstring_view path)
{
    return portable::is_root_path(path);
}

PathCut strip_to_root(std::wstring_view path)
{
    return portable::strip_to_root(path);
}

PathCut remove_file_spec(std::wstring_view path)
{
    return portable::remove_file_spec(path);
}

bool canonicalize_path(std::wstring_view path, PathText &result)
{
    return portable::canonicalize_path(path, result);
}

bool make_relative_path(PathEnd from, PathEnd to, PathText &result)
{
    return portable::make_relative_path(from, to, result);
}

bool is_network_path(std::wstring_view path)
{
    if (is_unc_path(path))
        return true;
    ParsedPath const parsed = parse_path(path);
    if (parsed.root != ParsedPath::Root::Drive)
        return false;
    std::string const native = to_native_path(std::wstring { parsed.drive, L':', L'\\' });
    if (native.empty())
        return false;
    Mount const mount = find_place(native).mount;
    return is_remote_type(mount.type) || !get_remote_names(mount).empty();
}

} // namespace kortools::platform
