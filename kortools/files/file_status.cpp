// SPDX-License-Identifier: MIT
#include "kortools/files/file_status.h"

#include "kortools/files/guarded_call.h"
#include "kortools/files/path_kind.h"
#include "kortools/platform/current_directory.h"
#include "kortools/platform/file_status.h"
#include "kortools/platform/file_system.h"
#include "kortools/platform/shell_paths.h"

#include <algorithm>

using namespace kortools::files;
using namespace kortools::platform;

namespace {

void normalize(CXTString<wchar_t> &directory)
{
    directory.Replace(L'/', L'\\');
    directory.MakeLower();
    if (directory.IsEmpty() || directory[directory.GetLength() - 1] != L'\\')
        directory += L'\\';
}

bool get_date(CXTString<wchar_t> const &path, long long FileDates::*which, CXTime &date)
{
    FileDates dates;
    if (!get_file_dates(path, dates))
        return false;
    date = dates.*which;
    return true;
}

// The name that a file would have, for comparison: absolute, resolved and without case.
CXTString<wchar_t> get_full_name(CXTString<wchar_t> const &path)
{
    std::wstring full = convert_separators(path.GetView());
    if (is_relative(full))
        full = join_path(get_current_directory(), full);
    PathText resolved;
    CXTString<wchar_t> name = full.c_str();
    if (canonicalize_path(full, resolved))
        name = resolved.text;
    normalize(name);
    return name;
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
        return get_file_status(name, status) && status.is_directory();
    });
}

bool fileIsDirectory(CXTString<wchar_t> const &path, bool bySeparator, unsigned int *timeout)
{
    if (is_top_directory(path))
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

bool fileGetCreationDate(CXTString<wchar_t> const &path, CXTime &date)
{
    return get_date(path, &FileDates::creation, date);
}

CXTime fileGetCreationDate(CXTString<wchar_t> const &path)
{
    CXTime date;
    fileGetCreationDate(path, date);
    return date;
}

bool fileSetCreationDate(CXTString<wchar_t> const &path, CXTime const &date)
{
    return set_file_dates(path, date.GetTime(), {});
}

bool fileGetLastWriteDate(CXTString<wchar_t> const &path, CXTime &date)
{
    return get_date(path, &FileDates::write, date);
}

CXTime fileGetLastWriteDate(CXTString<wchar_t> const &path)
{
    CXTime date;
    fileGetLastWriteDate(path, date);
    return date;
}

bool fileSetLastWriteDate(CXTString<wchar_t> const &path, CXTime const &date)
{
    return set_file_dates(path, {}, date.GetTime());
}

bool fileIsSameFile(CXTString<wchar_t> const &a, CXTString<wchar_t> const &b)
{
    FileIdentity identity_a;
    FileIdentity identity_b;
    bool const has_a = get_file_identity(a, identity_a);
    bool const has_b = get_file_identity(b, identity_b);
    if (has_a || has_b)
        return has_a && has_b && identity_a == identity_b;
    return !a.IsEmpty() && get_full_name(a) == get_full_name(b);
}

bool fileIsSameDir(CXTString<wchar_t> const &a, CXTString<wchar_t> const &b)
{
    FileStatus status;
    for (auto const *path : { &a, &b }) {
        if (get_file_status(*path, status) && !status.is_directory())
            return false;
    }
    return fileIsSameFile(a, b);
}

bool fileCheckAccess(CXTString<wchar_t> const &path, unsigned int access)
{
    return check_file_access(path, access);
}

bool fileIsShortcut(CXTString<wchar_t> const &path)
{
    // The size of the header, and the class of shortcuts.
    static constexpr unsigned char beginning[]
        = { 0x4C, 0, 0, 0, 0x01, 0x14, 0x02, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46 };
    FileStatus status;
    if (!get_file_status(path, status) || status.size < sizeof beginning)
        return false; // and no pipe or device is opened
    FileHandle const file
        = open_file(path, FileAccess::Read, FileSharing::ReadWrite, FileCreation::OpenExisting);
    if (file == invalid_file_handle())
        return false;
    unsigned char bytes[sizeof beginning];
    bool const has_beginning = read_file(file, bytes, sizeof bytes) == sizeof bytes
        && std::ranges::equal(bytes, beginning);
    close_file(file);
    return has_beginning;
}

bool fileIsExecutable(CXTString<wchar_t> const &path)
{
    return is_executable_file(path);
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
