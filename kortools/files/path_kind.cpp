// SPDX-License-Identifier: MIT
#include "kortools/files/path_kind.h"

#include "kortools/platform/shell_paths.h"

#include <algorithm>

namespace kortools::files {

std::wstring convert_separators(std::wstring_view path)
{
    std::wstring converted(path);
    std::ranges::replace(converted, L'/', L'\\');
    return converted;
}

bool is_on_share(std::wstring_view path)
{
    return path.size() >= 2 && is_separator(path[0]) && is_separator(path[1])
        && platform::is_unc_path(convert_separators(path));
}

bool is_top_directory(std::wstring_view path)
{
    // Nearly every path is told from a root by its third name, or by its length.
    if (path.empty() || (!is_separator(path[0]) && path.size() != 3))
        return false;
    std::wstring converted = convert_separators(path);
    if (platform::is_root_path(converted))
        return true;
    if (converted.back() == L'\\')
        converted.pop_back();
    return platform::is_unc_server_share(converted);
}

bool is_relative(std::wstring_view path)
{
    return path.empty() || (!is_separator(path[0]) && (path.size() < 2 || path[1] != L':'));
}

std::wstring join_path(std::wstring_view directory, std::wstring_view name)
{
    std::wstring path(directory);
    if (!path.empty() && !is_separator(path.back()))
        path += L'\\';
    return path += name;
}

} // namespace kortools::files
