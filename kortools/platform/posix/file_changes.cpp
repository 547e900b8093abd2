// SPDX-License-Identifier: MIT
#include "kortools/platform/file_changes.h"

#include "kortools/platform/posix/file_copy.h"
#include "kortools/platform/posix/native_path.h"

#include <climits>
#include <cstdio>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace kortools::platform {
namespace {

bool make_directory(wchar_t const *path, mode_t mode)
{
    return with_native_path(path, false, [mode](std::string const &native) {
        if (mkdir(native.c_str(), mode) == 0)
            return true;
        report_missing_folder(native);
        return false;
    });
}

// `call` with the native forms of two paths.
template <class Call> bool with_two_paths(wchar_t const *from, wchar_t const *to, Call call)
{
    return with_native_path(from, false, [&](std::string const &native_from) {
        return with_native_path(
            to, false, [&](std::string const &native_to) { return call(native_from, native_to); });
    });
}

bool copy_link(std::string const &from, std::string const &to, Existing existing)
{
    char target[PATH_MAX];
    ssize_t const size = readlink(from.c_str(), target, sizeof target - 1);
    if (size < 0)
        return false;
    target[size] = '\0';
    if (existing == Existing::Replace)
        unlink(to.c_str());
    return symlink(target, to.c_str()) == 0;
}

// A file that goes to another volume.
bool move_by_copying(std::string const &from, std::string const &to, Existing existing)
{
    struct stat facts;
    if (lstat(from.c_str(), &facts) != 0)
        return false;
    bool copied = false;
    if (S_ISLNK(facts.st_mode))
        copied = copy_link(from, to, existing);
    else if (S_ISREG(facts.st_mode))
        copied = copy_native_file(from, to, existing, CopyOwner::Yes);
    else
        errno = EXDEV;
    if (copied)
        unlink(from.c_str());
    return copied;
}

bool is_directory(std::string const &path)
{
    struct stat facts;
    return stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

bool is_file(std::string const &path)
{
    struct stat facts;
    return stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode);
}

bool is_other_than_file(std::string const &path)
{
    struct stat facts;
    return stat(path.c_str(), &facts) == 0 && !S_ISREG(facts.st_mode);
}

// Holds a file open, as the other users of the library see it.
class OpenUse {
public:
    OpenUse(wchar_t const *path, FileAccess access)
        : m_file(open_file(path, access, FileSharing::ReadWrite, FileCreation::OpenExisting))
    {
    }
    ~OpenUse()
    {
        int const saved = errno;
        if (is_granted())
            close_file(m_file);
        errno = saved;
    }
    OpenUse(OpenUse const &) = delete;
    OpenUse &operator=(OpenUse const &) = delete;

    bool is_granted() const { return m_file != invalid_file_handle(); }

private:
    FileHandle m_file;
};

bool move_native(
    std::string const &from, std::string const &to, Existing existing, OtherVolume other_volume)
{
    struct stat facts;
    if (lstat(from.c_str(), &facts) != 0)
        return false;
    if (from == to)
        return true;
    if (existing == Existing::Replace && is_directory(to)) {
        set_last_os_error(error_access_denied);
        return false;
    }
    bool const moved = existing == Existing::Replace ? rename(from.c_str(), to.c_str()) == 0
                                                     : rename_to_free_name(from, to);
    if (moved)
        return true;
    if (errno == EXDEV && other_volume == OtherVolume::Copy)
        return move_by_copying(from, to, existing);
    report_missing_folder(to);
    return false;
}

} // namespace

bool create_directory(wchar_t const *path)
{
    return make_directory(path, 0777);
}

bool create_private_directory(wchar_t const *path)
{
    return make_directory(path, 0700);
}

bool copy_file(wchar_t const *from, wchar_t const *to, Existing existing)
{
    auto const copy = [&](std::string const &native_from, std::string const &native_to) {
        if (is_other_than_file(native_from)) {
            set_last_os_error(error_access_denied);
            return false;
        }
        OpenUse const source(from, FileAccess::Read);
        if (!source.is_granted())
            return false;
        std::optional<OpenUse> target;
        if (existing == Existing::Replace && is_file(native_to)
            && !target.emplace(to, FileAccess::Write).is_granted())
            return false;
        if (copy_native_file(native_from, native_to, existing, CopyOwner::No))
            return true;
        report_missing_folder(native_to);
        return false;
    };
    return with_two_paths(from, to, copy);
}

bool move_file(wchar_t const *from, wchar_t const *to, Existing existing, OtherVolume other_volume)
{
    return with_two_paths(
        from, to, [&](std::string const &native_from, std::string const &native_to) {
            return move_native(native_from, native_to, existing, other_volume);
        });
}

bool delete_file(wchar_t const *path)
{
    return with_native_path(
        path, false, [](std::string const &native) { return unlink(native.c_str()) == 0; });
}

} // namespace kortools::platform
