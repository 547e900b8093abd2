// SPDX-License-Identifier: MIT
#include "kortools/files/path_kind.h"

#include <algorithm>
#include <cstddef>

namespace kortools::files {
namespace {

bool is_separator(wchar_t ch)
{
    return ch == L'\\' || ch == L'/';
}

bool starts_with_two_separators(std::wstring_view path)
{
    return path.size() >= 2 && is_separator(path[0]) && is_separator(path[1]);
}

// The number of names in `path` behind the two separators of a UNC path; one separator at the end
// does not count.
std::ptrdiff_t count_names(std::wstring_view path)
{
    path.remove_prefix(2);
    if (!path.empty() && is_separator(path.back()))
        path.remove_suffix(1);
    if (path.empty())
        return 0;
    return 1 + std::count_if(path.begin(), path.end(), is_separator);
}

bool is_letter(wchar_t ch)
{
    return (ch >= L'A' && ch <= L'Z') || (ch >= L'a' && ch <= L'z');
}

} // namespace

bool is_unc_path(std::wstring_view path)
{
    if (!starts_with_two_separators(path))
        return false;
    if (path.size() == 2 || path[2] != L'?')
        return true;
    std::wstring_view const tail = path.substr(std::min<std::size_t>(path.size(), 4));
    return tail.size() >= 4 && (tail[0] == L'U' || tail[0] == L'u')
        && (tail[1] == L'N' || tail[1] == L'n') && (tail[2] == L'C' || tail[2] == L'c')
        && is_separator(tail[3]);
}

bool is_root(std::wstring_view path)
{
    if (starts_with_two_separators(path))
        return is_unc_path(path) && path[path.size() - 1] != L'?' && count_names(path) <= 2;
    if (path.size() == 1)
        return is_separator(path[0]);
    return path.size() == 3 && is_letter(path[0]) && path[1] == L':' && is_separator(path[2]);
}

bool is_server_share(std::wstring_view path)
{
    return is_unc_path(path) && path.size() > 2 && path[2] != L'?' && count_names(path) == 2;
}

bool is_relative(std::wstring_view path)
{
    return path.empty() || (!is_separator(path[0]) && (path.size() < 2 || path[1] != L':'));
}

} // namespace kortools::files
