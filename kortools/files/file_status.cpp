// SPDX-License-Identifier: MIT
#include "kortools/files/file_status.h"

#include "kortools/files/guarded_call.h"
#include "kortools/files/path_kind.h"
#include "kortools/platform/file_status.h"

using namespace kortools::files;
using namespace kortools::platform;

namespace {

bool is_separator(wchar_t ch)
{
    return ch == L'\\' || ch == L'/';
}

void normalize(CXTString<wchar_t> &directory)
{
    directory.Replace(L'/', L'\\');
    directory.MakeLower();
    if (directory.IsEmpty() || directory[directory.GetLength() - 1] != L'\\')
        directory += L'\\';
}

} // namespace

bool fileExists(CXTString<wchar_t> const &path, unsigned int *timeout)
{
    return run_guarded(path, timeout, false, [](auto const &name, auto const &) {
        FileStatus status;
        return get_file_status(name, status);
    });
}

bool fileDirectoryExists(CXTString<wchar_t> const &path, unsigned int *timeout)
{
    return run_guarded(path, timeout, false, [](auto const &name, auto const &) {
        FileStatus status;
        return get_file_status(name, status) && status.is_directory;
    });
}

bool fileIsDirectory(CXTString<wchar_t> const &path, bool bySeparator, unsigned int *timeout)
{
    if (is_root(path) || is_server_share(path))
        return true;
    if (bySeparator && is_separator(path[path.GetLength() - 1]))
        return true;
    return fileDirectoryExists(path, timeout);
}

unsigned long long fileGetSize(CXTString<wchar_t> const &path)
{
    FileStatus status;
    return get_file_status(path, status) ? status.size : 0;
}

DirCompare fileCompareDirectory(CXTString<wchar_t> a, CXTString<wchar_t> b)
{
    normalize(a);
    normalize(b);
    if (a == b)
        return dirSame;
    if (is_relative(a) || is_relative(b))
        return dirDifferent;
    if (a.GetView().find(b.GetView()) != std::wstring_view::npos)
        return dirFirstInSecond;
    if (b.GetView().find(a.GetView()) != std::wstring_view::npos)
        return dirSecondInFirst;
    return dirDifferent;
}
