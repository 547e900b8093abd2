// SPDX-License-Identifier: MIT
#include "kortools/platform/shell_paths.h"

#include <algorithm>
#include <iterator>
#include <vector>
#include <windows.h>
// <shlwapi.h> needs <windows.h> in front of it.
#include <shlwapi.h>

namespace kortools::platform {
namespace {

// A copy of a path that ends with a zero, and that the system may write to.
class Scratch {
public:
    explicit Scratch(std::wstring_view path)
    {
        std::size_t const size = path.size() + 2; // some functions look behind the zero
        if (size > std::size(m_small)) {
            m_large.resize(size);
            m_text = m_large.data();
        }
        std::copy(path.begin(), path.end(), m_text);
        std::fill_n(m_text + path.size(), 2, L'\0');
    }
    Scratch(Scratch const &) = delete;
    Scratch &operator=(Scratch const &) = delete;

    wchar_t *get() { return m_text; }
    std::size_t get_length() const { return std::wstring_view(m_text).size(); }
    std::size_t get_position(wchar_t const *at) const
    {
        return static_cast<std::size_t>(at - m_text);
    }

private:
    wchar_t m_small[max_path_units + 2];
    std::vector<wchar_t> m_large;
    wchar_t *m_text = m_small;
};

// Takes over what the system built, unless it is too long.
bool set_result(wchar_t const *text, PathText &result)
{
    std::wstring_view const view(text);
    if (view.size() >= max_path_units)
        return false;
    std::copy(view.begin(), view.end(), result.text);
    result.length = view.size();
    result.text[result.length] = L'\0';
    return true;
}

} // namespace

std::size_t find_file_name(std::wstring_view path)
{
    Scratch scratch(path);
    return scratch.get_position(PathFindFileNameW(scratch.get()));
}

std::size_t find_extension(std::wstring_view path)
{
    Scratch scratch(path);
    return scratch.get_position(PathFindExtensionW(scratch.get()));
}

bool is_url(std::wstring_view path)
{
    return PathIsURLW(Scratch(path).get()) != 0;
}

bool is_unc_path(std::wstring_view path)
{
    return PathIsUNCW(Scratch(path).get()) != 0;
}

bool is_unc_server_share(std::wstring_view path)
{
    return PathIsUNCServerShareW(Scratch(path).get()) != 0;
}

bool is_relative_path(std::wstring_view path)
{
    return PathIsRelativeW(Scratch(path).get()) != 0;
}

bool is_root_path(std::wstring_view path)
{
    return PathIsRootW(Scratch(path).get()) != 0;
}

PathCut strip_to_root(std::wstring_view path)
{
    Scratch scratch(path);
    bool const is_done = PathStripToRootW(scratch.get()) != 0;
    return { scratch.get_length(), is_done };
}

PathCut remove_file_spec(std::wstring_view path)
{
    Scratch scratch(path);
    bool const is_done = PathRemoveFileSpecW(scratch.get()) != 0;
    return { scratch.get_length(), is_done };
}

bool canonicalize_path(std::wstring_view path, PathText &result)
{
    result.length = 0;
    result.text[0] = L'\0';
    if (path.size() >= max_path_units)
        return false;
    Scratch source(path);
    wchar_t target[2 * max_path_units] = {};
    return PathCanonicalizeW(target, source.get()) && set_result(target, result);
}

bool make_relative_path(PathEnd from, PathEnd to, PathText &result)
{
    result.length = 0;
    result.text[0] = L'\0';
    if (from.path.size() >= max_path_units || to.path.size() >= max_path_units)
        return false;
    auto const attributes = [](PathEnd const &end) {
        return end.is_directory ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
    };
    Scratch source(from.path);
    Scratch target(to.path);
    wchar_t relative[4 * max_path_units] = {}; // "..\" for each two characters, and the other path
    return PathRelativePathToW(
               relative, source.get(), attributes(from), target.get(), attributes(to))
        && set_result(relative, result);
}

bool is_network_path(std::wstring_view path)
{
    return PathIsNetworkPathW(Scratch(path).get()) != 0;
}

} // namespace kortools::platform
