// SPDX-License-Identifier: MIT
#include "kortools/files/path_parts.h"

#include "kortools/files/file_status.h"
#include "kortools/files/path_text.h"
#include "kortools/platform/shell_paths.h"

#include <utility>

using namespace kortools::files;

namespace platform = kortools::platform;

namespace {

using String = CXTString<wchar_t>;

// Cuts, and does nothing for a length beyond the end.
void cut(String &path, std::size_t length)
{
    CXTCharArray<wchar_t> &characters = path;
    if (length < static_cast<std::size_t>(characters.GetLength()))
        characters.SetLength(static_cast<long long>(length));
}

// The path without the separators at its end that are not part of a root.
std::wstring_view trim(std::wstring_view path)
{
    while (path.ends_with(L'\\') && !platform::is_root_path(path))
        path.remove_suffix(1);
    return path;
}

// False when there is no parent.
bool cut_to_parent(String &path)
{
    std::wstring_view const directory = trim(view_of(path));
    if (platform::is_root_path(directory))
        return false;
    platform::PathCut const parent = platform::remove_file_spec(directory);
    if (parent.is_done)
        cut(path, trim(directory.substr(0, parent.length)).size());
    return parent.is_done;
}

std::wstring_view get_url_extension(std::wstring_view url)
{
    url = url.substr(0, url.find(L'?'));
    std::size_t const dot = url.rfind(L'.');
    return dot == std::wstring_view::npos ? std::wstring_view() : url.substr(dot);
}

} // namespace

CXTString<wchar_t> fileStripPath(CXTString<wchar_t> const &name, bool removeExtension)
{
    if (fileIsDirectory(name))
        return {};
    std::wstring_view const path = view_of(name);
    std::wstring_view const last = path.substr(platform::find_file_name(path));
    return to_string(removeExtension ? last.substr(0, platform::find_extension(last)) : last);
}

CXTString<wchar_t> fileStripPathAndExtension(CXTString<wchar_t> const &name)
{
    return fileStripPath(name, true);
}

CXTString<wchar_t> fileRemoveExtension(CXTString<wchar_t> const &name)
{
    std::wstring_view const path = view_of(name);
    return to_string(path.substr(0, platform::find_extension(path)));
}

CXTString<wchar_t> fileGetExtension(CXTString<wchar_t> const &name)
{
    std::wstring_view const path = view_of(name);
    if (platform::is_url(path))
        return to_string(get_url_extension(path));
    return to_string(path.substr(platform::find_extension(path)));
}

CXTString<wchar_t> fileStripName(CXTString<wchar_t> const &name)
{
    String path = converted(name);
    if (path.IsEmpty() || fileIsSlashTerminated(path))
        return path;
    std::wstring_view const view = view_of(path);
    bool const is_whole = platform::is_network_path(view) || fileIsDirectory(path);
    if (!is_whole)
        cut(path, platform::remove_file_spec(view).length);
    if (!path.IsEmpty())
        fileSlashTerminate(path);
    return path;
}

CXTString<wchar_t> fileGetRoot(CXTString<wchar_t> const &name)
{
    std::wstring_view const path = view_of(name);
    return to_string(path.substr(0, platform::strip_to_root(path).length));
}

CXTString<wchar_t> fileGetTopDirectory(CXTString<wchar_t> const &name, bool slashTerminated)
{
    String path = converted(name);
    std::wstring_view const view = view_of(path);
    std::size_t const root = platform::strip_to_root(view).length;
    std::size_t const first = view.find_first_not_of(L'\\', root);
    cut(path, first == std::wstring_view::npos ? root : view.find(L'\\', first));
    if (slashTerminated && !path.IsEmpty())
        fileSlashTerminate(path);
    return path;
}

bool fileGetParentDirectory(CXTString<wchar_t> &path)
{
    if (path.Find(L'/') < 0)
        return cut_to_parent(path);
    String parent = converted(path);
    if (!cut_to_parent(parent))
        return false;
    path = std::move(parent);
    return true;
}

bool fileIsUNCPath(CXTString<wchar_t> const &name)
{
    return platform::is_unc_path(name.GetView());
}

bool fileIsPathRelative(CXTString<wchar_t> const &name)
{
    return platform::is_relative_path(name.GetView());
}
