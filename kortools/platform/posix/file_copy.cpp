// SPDX-License-Identifier: MIT
//
// A copy is written under a name of its own beside its place, and gets its name when it is
// complete. So a full disk, and even the end of the process, leave what was there before.
#include "kortools/platform/posix/file_copy.h"

#include "kortools/platform/posix/native_path.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace kortools::platform {
namespace {

constexpr unsigned int error_sharing_violation = 32;
constexpr unsigned int error_file_exists = 80;
constexpr std::size_t block_size = std::size_t { 1 } << 18;
constexpr std::size_t kernel_block_size = std::size_t { 1 } << 30; // of one call

// A descriptor that closes itself and leaves errno alone.
class Descriptor {
public:
    explicit Descriptor(int fd)
        : m_fd(fd)
    {
    }
    ~Descriptor()
    {
        int const saved = errno;
        close_now();
        errno = saved;
    }
    Descriptor(Descriptor const &) = delete;
    Descriptor &operator=(Descriptor const &) = delete;

    int get() const { return m_fd; }
    bool close_now()
    {
        int const fd = std::exchange(m_fd, -1);
        return fd < 0 || close(fd) == 0 || errno == EINTR;
    }

private:
    int m_fd;
};

bool write_all(int target, char const *data, std::size_t size)
{
    while (size > 0) {
        ssize_t const written = retry([&] { return write(target, data, size); });
        if (written < 0)
            return false;
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool copy_by_blocks(int source, int target)
{
    std::unique_ptr<char[]> const buffer(new (std::nothrow) char[block_size]);
    if (!buffer) {
        errno = ENOMEM;
        return false;
    }
    for (;;) {
        ssize_t const size = retry([&] { return read(source, buffer.get(), block_size); });
        if (size <= 0)
            return size == 0;
        if (!write_all(target, buffer.get(), static_cast<std::size_t>(size)))
            return false;
    }
}

// Lets the kernel copy, which shares the blocks where the disk can. It refuses some pairs of file
// systems, and takes files that are made up when read, as in /proc, for empty ones.
bool copy_data(int source, int target)
{
    ssize_t size = 0;
    do {
        size = retry([&] {
            return copy_file_range(source, nullptr, target, nullptr, kernel_block_size, 0);
        });
    } while (size > 0);
    if (size < 0 && (errno == ENOSPC || errno == EFBIG || errno == EDQUOT || errno == EIO))
        return false;
    return copy_by_blocks(source, target); // from where the kernel stopped
}

bool copy_facts(int target, struct stat const &facts, CopyOwner copy_owner)
{
    mode_t mode = facts.st_mode & 0777;
    if (copy_owner == CopyOwner::Yes && fchown(target, facts.st_uid, facts.st_gid) == 0)
        mode = facts.st_mode & 07777;
    timespec times[2] = { facts.st_atim, facts.st_mtim };
    if (copy_owner == CopyOwner::No)
        times[0].tv_nsec = UTIME_OMIT;
    // Some shares have no permissions to set.
    return (fchmod(target, mode) == 0 || errno == EPERM || errno == EOPNOTSUPP)
        && futimens(target, times) == 0;
}

bool fail(unsigned int code)
{
    set_last_os_error(code);
    return false;
}

// A file that is written to as it is, such as a device.
bool copy_into(int source, std::string const &to)
{
    Descriptor target(retry([&] { return open(to.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY); }));
    return target.get() >= 0 && copy_by_blocks(source, target.get()) && target.close_now();
}

bool commit(std::string const &temporary, std::string const &to, Existing existing)
{
    if (existing == Existing::Replace)
        return rename(temporary.c_str(), to.c_str()) == 0;
    if (rename_to_free_name(temporary, to))
        return true;
    return errno == EEXIST ? fail(error_file_exists) : false;
}

bool copy_beside(int source, struct stat const &facts, std::string const &to, Existing existing,
    CopyOwner copy_owner)
{
    std::string const pattern = to.substr(0, to.rfind('/') + 1) + ".kortools-XXXXXX";
    std::string temporary = pattern;
    Descriptor target(retry([&] {
        temporary.assign(pattern); // an attempt that failed has changed it
        return mkostemp(temporary.data(), O_CLOEXEC);
    }));
    if (target.get() < 0)
        return false;
    if (copy_data(source, target.get()) && copy_facts(target.get(), facts, copy_owner)
        && target.close_now() && commit(temporary, to, existing))
        return true;
    int const saved = errno;
    unlink(temporary.c_str());
    errno = saved;
    return false;
}

// Where a link leads to; the path itself when it is none, or leads nowhere.
std::string follow_link(std::string const &path)
{
    std::unique_ptr<char, void (*)(void *)> const resolved(
        realpath(path.c_str(), nullptr), std::free);
    return resolved ? resolved.get() : path;
}

} // namespace

void report_missing_folder(std::string const &path)
{
    if (errno != ENOENT)
        return;
    std::size_t const slash = path.find_last_not_of('/');
    std::size_t const end = path.rfind('/', slash);
    struct stat facts;
    bool const has_folder
        = end == std::string::npos || end == 0 || stat(path.substr(0, end).c_str(), &facts) == 0;
    errno = ENOENT;
    if (!has_folder)
        set_last_os_error(error_path_not_found);
}

bool rename_to_free_name(std::string const &from, std::string const &to)
{
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // The file system knows no such renaming. A second name does not replace either, but folders
    // have none, and some file systems neither.
    if (link(from.c_str(), to.c_str()) == 0)
        return unlink(from.c_str()) == 0;
    if (errno == EEXIST)
        return false;
    struct stat facts;
    if (lstat(to.c_str(), &facts) == 0) {
        errno = EEXIST;
        return false;
    }
    return rename(from.c_str(), to.c_str()) == 0;
}

bool copy_native_file(
    std::string const &from, std::string const &to, Existing existing, CopyOwner copy_owner)
{
    struct stat facts;
    if (retry([&] { return stat(from.c_str(), &facts); }) != 0)
        return false;
    if (!S_ISREG(facts.st_mode))
        return fail(error_access_denied);
    Descriptor const source(
        retry([&] { return open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY); }));
    if (source.get() < 0 || fstat(source.get(), &facts) != 0)
        return false;
    struct stat target_facts;
    bool const exists = retry([&] { return stat(to.c_str(), &target_facts); }) == 0;
    if (!exists && errno != ENOENT)
        return false; // it may be the source, or no regular file
    if (exists && target_facts.st_dev == facts.st_dev && target_facts.st_ino == facts.st_ino)
        return fail(error_sharing_violation);
    if (exists && existing == Existing::Keep)
        return fail(error_file_exists);
    if (exists && S_ISDIR(target_facts.st_mode))
        return fail(error_access_denied);
    if (exists && faccessat(AT_FDCWD, to.c_str(), W_OK, AT_EACCESS) != 0)
        return false;
    if (exists && !S_ISREG(target_facts.st_mode))
        return copy_into(source.get(), to);
    return copy_beside(source.get(), facts, follow_link(to), existing, copy_owner);
}

} // namespace kortools::platform
