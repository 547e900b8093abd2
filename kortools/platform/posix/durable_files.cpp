// SPDX-License-Identifier: MIT
#include "kortools/platform/durable_files.h"

#include "kortools/platform/posix/native_path.h"

#include <cstdint>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kortools::platform {
namespace {

// One byte far behind all data, below those that keep the sharing modes.
constexpr off_t lock_offset = (off_t { 1 } << 62) - 1;

int to_descriptor(FileHandle file)
{
    return static_cast<int>(reinterpret_cast<std::intptr_t>(file));
}

int set_lock(FileHandle file, short type)
{
    struct flock range { };
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = lock_offset;
    range.l_len = 1;
    return retry([&] { return fcntl(to_descriptor(file), F_OFD_SETLK, &range); });
}

bool flush_folder(std::string const &folder)
{
    int const fd = retry([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    // A folder that may not be listed cannot be flushed either; its files still can be used.
    if (fd < 0)
        return errno == EACCES;
    bool const flushed = retry([&] { return fsync(fd); }) == 0 || errno == EINVAL;
    int const saved = errno;
    close(fd);
    errno = saved;
    return flushed;
}

} // namespace

bool try_lock_file(FileHandle file, LockKind kind)
{
    if (set_lock(file, kind == LockKind::Shared ? F_RDLCK : F_WRLCK) == 0)
        return true;
    return errno != EAGAIN && errno != EACCES;
}

void unlock_file(FileHandle file)
{
    set_lock(file, F_UNLCK);
}

bool is_file_at(FileHandle file, wchar_t const *path)
{
    return with_native_path(path, false, [&](std::string const &native) {
        struct stat open_one;
        struct stat found;
        return fstat(to_descriptor(file), &open_one) == 0 && stat(native.c_str(), &found) == 0
            && open_one.st_dev == found.st_dev && open_one.st_ino == found.st_ino;
    });
}

bool reserve_room(FileHandle file, long long size)
{
    if (size <= 0)
        return true;
    int const result = retry(
        [&] { return fallocate(to_descriptor(file), FALLOC_FL_KEEP_SIZE, 0, off_t { size }); });
    return result == 0 || (errno != ENOSPC && errno != EDQUOT && errno != EFBIG);
}

bool flush_file_name(wchar_t const *path)
{
    return with_native_path(path, false, [](std::string const &native) {
        std::size_t const slash = native.find_last_of('/');
        return flush_folder(slash == std::string::npos ? "." : native.substr(0, slash + 1));
    });
}

} // namespace kortools::platform
