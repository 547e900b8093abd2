// SPDX-License-Identifier: MIT
#include "kortools/platform/file_status.h"

#include "kortools/platform/posix/file_facts.h"
#include "kortools/platform/posix/native_path.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <fcntl.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace kortools::platform {
namespace {

constexpr unsigned int error_not_supported = 50;

// Holds a date of creation in decimal digits.
constexpr char const *creation_attribute = "user.kortools.creation_date";

bool is_name_hidden(std::string_view path)
{
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    std::string_view const name = path.substr(path.rfind('/') + 1);
    return name.size() > 1 && name[0] == '.' && name != "..";
}

std::optional<long long> read_creation_attribute(std::string const &path)
{
    char digits[24];
    ssize_t const size = getxattr(path.c_str(), creation_attribute, digits, sizeof digits);
    long long seconds = 0;
    if (size <= 0 || std::from_chars(digits, digits + size, seconds).ptr != digits + size)
        return {};
    return seconds;
}

bool write_creation_attribute(std::string const &path, long long seconds)
{
    std::string const digits = std::to_string(seconds);
    if (setxattr(path.c_str(), creation_attribute, digits.data(), digits.size(), 0) == 0)
        return true;
    // User attributes are for files and directories; others refuse them with EPERM.
    if (errno == EOPNOTSUPP)
        set_last_os_error(error_not_supported);
    return false;
}

bool write_date(std::string const &path, long long seconds)
{
    timespec times[2] = {};
    times[0].tv_nsec = UTIME_OMIT;
    times[1].tv_sec = seconds;
    return utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
}

} // namespace

FileStatus to_file_status(struct stat const &facts, std::string_view name)
{
    FileStatus status;
    bool const is_directory = S_ISDIR(facts.st_mode);
    if ((facts.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0)
        status.attributes |= attribute_read_only;
    if (is_name_hidden(name))
        status.attributes |= attribute_hidden;
    if (is_directory)
        status.attributes |= attribute_directory;
    if (S_ISLNK(facts.st_mode))
        status.attributes |= attribute_link;
    if (status.attributes == 0)
        status.attributes = attribute_normal;
    if (!is_directory)
        status.size = static_cast<unsigned long long>(facts.st_size);
    return status;
}

bool get_file_status(wchar_t const *path, FileStatus &status)
{
    return with_native_path(path, false, [&](std::string const &native) {
        struct stat facts;
        if (retry([&] { return stat(native.c_str(), &facts); }) != 0)
            return false;
        status = to_file_status(facts, native);
        return true;
    });
}

bool get_file_dates(wchar_t const *path, FileDates &dates)
{
    return with_native_path(path, false, [&](std::string const &native) {
        struct statx facts;
        unsigned int const wanted = STATX_ATIME | STATX_MTIME | STATX_CTIME | STATX_BTIME;
        if (retry([&] { return statx(AT_FDCWD, native.c_str(), 0, wanted, &facts); }) != 0)
            return false;
        dates.access = facts.stx_atime.tv_sec;
        dates.write = facts.stx_mtime.tv_sec;
        dates.creation = (facts.stx_mask & STATX_BTIME) != 0
            ? facts.stx_btime.tv_sec
            : std::min(facts.stx_mtime.tv_sec, facts.stx_ctime.tv_sec);
        dates.creation = read_creation_attribute(native).value_or(dates.creation);
        return true;
    });
}

bool set_file_dates(
    wchar_t const *path, std::optional<long long> creation, std::optional<long long> write)
{
    return with_native_path(path, false, [&](std::string const &native) {
        return (!creation || write_creation_attribute(native, *creation))
            && (!write || write_date(native, *write));
    });
}

bool get_file_identity(wchar_t const *path, FileIdentity &identity)
{
    return with_native_path(path, false, [&](std::string const &native) {
        struct stat facts;
        if (retry([&] { return stat(native.c_str(), &facts); }) != 0)
            return false;
        identity = { facts.st_dev, facts.st_ino };
        return true;
    });
}

} // namespace kortools::platform
