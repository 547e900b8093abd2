// SPDX-License-Identifier: MIT
#include "kortools/files/relative_path.h"

#include "kortools/files/file_status.h"
#include "kortools/files/path_text.h"
#include "kortools/platform/shell_paths.h"

using namespace kortools::files;

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

bool is_directory_text(String const &path)
{
    return fileIsSlashTerminated(path) || platform::is_network_path(view_of(path))
        || fileIsDirectory(path);
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

CXTString<wchar_t> fileMakeAbsolutePath(
    CXTString<wchar_t> const &base, CXTString<wchar_t> const &path, bool slashTerminateDirectory)
{
    if (base.IsEmpty() && path.IsEmpty())
        return {};
    String result = converted(path);
    if (platform::is_relative_path(view_of(result))) {
        String joined = converted(base);
        if (!joined.IsEmpty())
            fileSlashTerminate(joined);
        joined += result;
        result.Swap(joined);
        fileMakePathShortest(result);
    } else if (!slashTerminateDirectory) {
        return path;
    }
    if (slashTerminateDirectory && is_directory_text(result))
        fileSlashTerminate(result);
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
