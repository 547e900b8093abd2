// SPDX-License-Identifier: MIT
//
// A Windows access mask in terms of permissions. Rights to the data of a file are tried by opening
// it, which takes other openers into account; the rest is asked for.
#include "kortools/platform/posix/native_path.h"

#include "kortools/platform/file_status.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kortools::platform {
namespace {

enum AccessRights : unsigned int {
    read_rights = 0x80000000 | 0x10000000 | 0x1,        // GENERIC_READ, GENERIC_ALL, data
    write_rights = 0x40000000 | 0x10000000 | 0x2 | 0x4, // GENERIC_WRITE, data, appended data
    execute_rights = 0x20000000 | 0x20,                 // GENERIC_EXECUTE, FILE_EXECUTE
    delete_rights = 0x10000,
    delete_child_right = 0x40,
    owner_rights = 0x40000 | 0x80000 | 0x100, // security, owner, dates and attributes
};

bool may(std::string const &path, int mode)
{
    return faccessat(AT_FDCWD, path.c_str(), mode, AT_EACCESS) == 0;
}

// In a folder whose sticky bit is set only owners delete.
bool may_delete(std::string const &path, struct stat const &facts)
{
    std::size_t const slash = path.find_last_of('/');
    std::string const folder = slash == std::string::npos ? "."
        : slash == 0                                      ? "/"
                                                          : path.substr(0, slash);
    struct stat folder_facts;
    if (!may(folder, W_OK | X_OK) || stat(folder.c_str(), &folder_facts) != 0)
        return false;
    uid_t const user = geteuid();
    if ((folder_facts.st_mode & S_ISVTX) == 0 || user == 0 || user == facts.st_uid
        || user == folder_facts.st_uid)
        return true;
    errno = EPERM;
    return false;
}

bool may_change(struct stat const &facts)
{
    if (geteuid() == 0 || geteuid() == facts.st_uid)
        return true;
    errno = EPERM;
    return false;
}

int get_mode(unsigned int access, bool is_directory)
{
    int mode = F_OK;
    if ((access & read_rights) != 0)
        mode |= R_OK;
    if ((access & write_rights) != 0 || (is_directory && (access & delete_child_right) != 0))
        mode |= W_OK;
    // GENERIC_ALL is there for data files too, which nobody executes.
    if ((access & execute_rights) != 0)
        mode |= X_OK;
    return mode;
}

bool may_open(wchar_t const *path, int mode)
{
    FileAccess const access = (mode & W_OK) == 0 ? FileAccess::Read
        : (mode & R_OK) == 0                     ? FileAccess::Write
                                                 : FileAccess::ReadWrite;
    FileHandle const file
        = open_file(path, access, FileSharing::ReadWrite, FileCreation::OpenExisting);
    return file != invalid_file_handle() && close_file(file);
}

} // namespace

bool check_file_access(wchar_t const *path, unsigned int access)
{
    return with_native_path(path, false, [&](std::string const &native) {
        struct stat facts;
        if (retry([&] { return stat(native.c_str(), &facts); }) != 0)
            return false;
        int const mode = get_mode(access, S_ISDIR(facts.st_mode));
        if (!may(native, mode) || ((access & delete_rights) != 0 && !may_delete(native, facts))
            || ((access & owner_rights) != 0 && !may_change(facts)))
            return false;
        return !S_ISREG(facts.st_mode) || (mode & (R_OK | W_OK)) == 0 || may_open(path, mode);
    });
}

bool is_executable_file(wchar_t const *path)
{
    return with_native_path(path, false, [](std::string const &native) {
        struct stat facts;
        return retry([&] { return stat(native.c_str(), &facts); }) == 0 && S_ISREG(facts.st_mode)
            && may(native, X_OK);
    });
}

} // namespace kortools::platform
