// SPDX-License-Identifier: MIT
#include "kortools/files/relative_path.h"

#include "kortools/files/file_status.h"
#include "kortools/files/path_text.h"
#include "kortools/platform/shell_paths.h"

#include <algorithm>

using namespace kortools::files;
using namespace std::string_view_literals;

namespace platform = kortools::platform;

namespace {

using String = CXTString<wchar_t>;

// A directory that ends with a separator is the same as without.
String without_separator(String directory)
{
    if (!platform::is_root_path(view_of(directory)))
        fileRemoveSlashTermination(directory);
    return directory;
}

bool names_directory(String const &path, unsigned int *timeout)
{
    return fileIsSlashTerminated(path) || platform::is_network_path(view_of(path))
        || fileIsDirectory(path, false, timeout);
}

bool needs_separator(std::wstring_view base)
{
    return !base.empty() && base.back() != L'\\' && base.back() != L'/';
}

// Both joined, as far as there is room, with '\' for '/'.
std::wstring_view join(std::wstring_view base, std::wstring_view path, platform::PathText &joined)
{
    joined.length = 0;
    for (std::wstring_view const part : { base, needs_separator(base) ? L"\\"sv : L""sv, path }) {
        std::replace_copy(part.begin(), part.end(), joined.text + joined.length, L'/', L'\\');
        joined.length += part.size();
    }
    return joined.view();
}

// A relative path from a directory on.
String resolve(std::wstring_view base, std::wstring_view path)
{
    platform::PathText joined;
    platform::PathText resolved;
    bool const has_room = base.size() + 1 + path.size() <= platform::max_path_units;
    if (has_room && platform::canonicalize_path(join(base, path, joined), resolved))
        return to_string(resolved.view());
    String text = to_string(base);
    if (needs_separator(base))
        text += L'\\';
    text += path;
    fileConvertSlash(text);
    return text;
}

} // namespace

CXTString<wchar_t> fileMakeRelativePath(CXTString<wchar_t> const &dir,
    CXTString<wchar_t> const &path, bool removeDotSlash, FILENAME_TYPE type)
{
    String const target = converted(path);
    if (platform::is_relative_path(view_of(target)) || !fileIsDirectory(dir))
        return path;
    String const start = without_separator(converted(dir));
    bool const is_directory = (static_cast<unsigned>(type) & filenameDirectory) != 0;
    platform::PathText relative;
    if (!platform::make_relative_path(
            { view_of(start), true }, { view_of(target), is_directory }, relative))
        return path;
    std::wstring_view result = relative.view();
    if (result.starts_with(L".\\") && (removeDotSlash || type == filenameNoDotSlash))
        result.remove_prefix(2);
    return to_string(result);
}

CXTString<wchar_t> fileMakeAbsolutePath(CXTString<wchar_t> const &base,
    CXTString<wchar_t> const &path, bool slashTerminateDirectory, unsigned int *timeout)
{
    if (base.IsEmpty() && path.IsEmpty())
        return {};
    std::wstring_view const target = view_of(path);
    bool const is_relative = !target.starts_with(L'/') && platform::is_relative_path(target);
    String result = is_relative ? resolve(view_of(base), target) : path;
    if (slashTerminateDirectory) {
        fileConvertSlash(result);
        if (names_directory(result, timeout))
            fileSlashTerminate(result);
    }
    return result;
}

bool fileMakePathShortest(CXTString<wchar_t> &path)
{
    platform::PathText shortest;
    if (!platform::canonicalize_path(view_of(path), shortest))
        return false;
    path = shortest.view();
    return true;
}
