// SPDX-License-Identifier: MIT
#include "kortools/platform/file_system.h"

#include "kortools/platform/os_error.h"
#include "kortools/platform/posix/file_sharing.h"
#include "kortools/platform/posix/native_path.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <exception>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kortools::platform {
namespace {

constexpr unsigned int error_negative_seek = 131;

// A single call transfers no more than this many bytes on Linux, and no more than a ssize_t.
constexpr unsigned int max_transfer = 0x40000000;

int to_descriptor(FileHandle file)
{
    return static_cast<int>(reinterpret_cast<std::intptr_t>(file));
}

FileHandle to_handle(int fd)
{
    return reinterpret_cast<FileHandle>(static_cast<std::intptr_t>(fd));
}

// The system reports a descriptor of the wrong mode as if it were none, or as a bad argument.
void report_wrong_mode(int fd, int needed_mode)
{
    if (errno != EBADF && errno != EINVAL)
        return;
    int const saved = errno;
    int const flags = fcntl(fd, F_GETFL);
    errno = saved;
    int const mode = flags & O_ACCMODE;
    if (flags >= 0 && mode != O_RDWR && mode != needed_mode)
        set_last_os_error(error_access_denied);
}

int close_after_failure(int fd)
{
    int const saved = errno;
    close(fd);
    errno = saved;
    return -1;
}

// Tells a missing folder of the path from a missing file, and a folder from a file.
void report_open_failure(std::string const &path)
{
    if (errno != ENOENT)
        return;
    std::size_t const slash = path.find_last_of('/');
    struct stat status;
    bool const has_folder = slash == std::string::npos || slash == 0
        || stat(path.substr(0, slash).c_str(), &status) == 0;
    errno = ENOENT;
    if (!has_folder)
        set_last_os_error(error_path_not_found);
}

int get_open_flags(FileAccess access, FileCreation creation)
{
    int flags = O_CLOEXEC | O_NOCTTY;
    flags |= access == FileAccess::Read ? O_RDONLY
        : access == FileAccess::Write   ? O_WRONLY
                                        : O_RDWR;
    // O_TRUNC would cut the file before its other users are asked.
    if (creation != FileCreation::OpenExisting)
        flags |= O_CREAT;
    return flags;
}

// Empties a file that was opened for `access`. One opened for reading needs a second descriptor.
bool truncate_file(int fd, FileAccess access, off_t size)
{
    if (access != FileAccess::Read)
        return retry([&] { return ftruncate(fd, 0); }) == 0;
    if (size == 0)
        return true;
    std::string const link = "/proc/self/fd/" + std::to_string(fd);
    return retry([&] { return truncate(link.c_str(), 0); }) == 0;
}

// Checks the sharing of a file that was just opened, and empties it where that is asked for.
// Devices and pipes are shared by everybody.
bool settle_open_file(int fd, FileAccess access, FileSharing sharing, FileCreation creation)
{
    struct stat status;
    if (fstat(fd, &status) != 0)
        return false;
    if (S_ISDIR(status.st_mode)) {
        set_last_os_error(error_access_denied);
        return false;
    }
    if (!S_ISREG(status.st_mode))
        return true;
    SharingFacts const facts = get_sharing_facts(access, sharing);
    if (creation != FileCreation::CreateAlways)
        return claim_sharing(fd, access, facts);
    // Truncating is writing, for as long as it lasts, and needs the permission of the others.
    if (!claim_sharing(fd, access, facts | fact_writes)
        || !truncate_file(fd, access, status.st_size))
        return false;
    release_sharing(fd, fact_writes & ~facts);
    return true;
}

int open_native(
    std::string const &path, FileAccess access, FileSharing sharing, FileCreation creation)
{
    int const flags = get_open_flags(access, creation);
    int const fd = retry([&] { return open(path.c_str(), flags, 0666); });
    if (fd < 0) {
        report_open_failure(path);
        return -1;
    }
    if (!settle_open_file(fd, access, sharing, creation))
        return close_after_failure(fd);
    return fd;
}

} // namespace

FileHandle open_file(
    wchar_t const *path, FileAccess access, FileSharing sharing, FileCreation creation)
try {
    std::string const native = to_native_path({ path, std::wcslen(path) });
    if (native.empty())
        return invalid_file_handle();
    int const fd = open_native(native, access, sharing, creation);
    return fd < 0 ? invalid_file_handle() : to_handle(fd);
} catch (std::exception const &) {
    set_last_os_error(error_not_enough_memory);
    return invalid_file_handle();
}

bool close_file(FileHandle file)
{
    // An interrupted close has closed the descriptor all the same.
    return close(to_descriptor(file)) == 0 || errno == EINTR;
}

long long read_file(FileHandle file, void *target, unsigned int count)
{
    int const fd = to_descriptor(file);
    auto *const bytes = static_cast<char *>(target);
    unsigned int done = 0;
    while (done < count) {
        unsigned int const wanted = std::min(count - done, max_transfer);
        ssize_t const size = retry([&] { return read(fd, bytes + done, wanted); });
        if (size < 0) {
            report_wrong_mode(fd, O_RDONLY);
            return -1;
        }
        if (size == 0)
            break;
        done += static_cast<unsigned int>(size);
    }
    return done;
}

bool write_file(FileHandle file, void const *source, unsigned int count)
{
    int const fd = to_descriptor(file);
    auto const *const bytes = static_cast<char const *>(source);
    unsigned int done = 0;
    while (done < count) {
        unsigned int const wanted = std::min(count - done, max_transfer);
        ssize_t const size = retry([&] { return write(fd, bytes + done, wanted); });
        if (size < 0) {
            report_wrong_mode(fd, O_WRONLY);
            return false;
        }
        if (size == 0) {
            errno = ENOSPC;
            return false;
        }
        done += static_cast<unsigned int>(size);
    }
    return true;
}

long long seek_file(FileHandle file, long long offset, SeekOrigin origin)
{
    int const whence = origin == SeekOrigin::Begin ? SEEK_SET
        : origin == SeekOrigin::Current            ? SEEK_CUR
                                                   : SEEK_END;
    off_t const position = lseek(to_descriptor(file), offset, whence);
    if (position < 0 && (errno == EINVAL || errno == EOVERFLOW))
        set_last_os_error(error_negative_seek);
    return position;
}

long long get_file_size(FileHandle file)
{
    struct stat status;
    return fstat(to_descriptor(file), &status) == 0 ? status.st_size : -1;
}

bool set_file_size(FileHandle file, long long size)
{
    int const fd = to_descriptor(file);
    if (size < 0) {
        set_last_os_error(error_negative_seek);
        return false;
    }
    if (retry([&] { return ftruncate(fd, size); }) == 0)
        return true;
    report_wrong_mode(fd, O_WRONLY);
    return false;
}

bool flush_file(FileHandle file)
{
    // EINVAL and EROFS: pipes, terminals and the like have nothing to bring to a disk.
    return retry([&] { return fsync(to_descriptor(file)); }) == 0 || errno == EINVAL
        || errno == EROFS;
}

FileHandle get_stream_handle(void *c_stream)
{
    if (c_stream == nullptr)
        return invalid_file_handle();
    auto *const stream = static_cast<std::FILE *>(c_stream);
    // For a stream that was read this also moves the descriptor back to the stream's position.
    std::fflush(stream);
    int const fd = fileno(stream);
    return fd < 0 ? invalid_file_handle() : to_handle(fd);
}

} // namespace kortools::platform
