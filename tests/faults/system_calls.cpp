// SPDX-License-Identifier: MIT
// The system calls that the readers and writers make, as functions that may fail.
#include "tests/faults/strike.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

using kor_test::Fault;
using kor_test::strikes;

namespace {

enum Waiting { never_waits, may_wait, cleans_up };

bool fails(int error, Waiting waiting)
{
    if (waiting == cleans_up && kor_test::get_fault_plan().forever)
        return false;
    int const code = strikes(Fault::Error)                 ? error
        : waiting == may_wait && strikes(Fault::Interrupt) ? EINTR
                                                           : 0;
    if (code != 0)
        errno = code;
    return code != 0;
}

std::size_t cut(std::size_t size)
{
    return size > 1 && strikes(Fault::Short) ? size / 2 : size;
}

mode_t get_mode(int flags, std::va_list list)
{
    return (flags & O_CREAT) != 0 ? va_arg(list, mode_t) : 0;
}

} // namespace

#define KOR_NEXT(name)                                                                             \
    static auto const next = reinterpret_cast<decltype(&name)>(dlsym(RTLD_NEXT, #name))

// KOR_CALL(result, name, parameters, arguments, what follows them, failure, errno, waiting)
#define KOR_CALL(result, name, parameters, arguments, specifier, failure, error, waiting)          \
    KOR_PUBLIC result name parameters specifier                                                    \
    {                                                                                              \
        KOR_NEXT(name);                                                                            \
        if (fails(error, waiting))                                                                 \
            return failure;                                                                        \
        return next arguments;                                                                     \
    }

KOR_CALL(
    int, stat, (char const *path, struct stat *facts), (path, facts), noexcept, -1, EIO, may_wait)
KOR_CALL(int, lstat, (char const *path, struct stat *facts), (path, facts), noexcept, -1, EIO,
    never_waits)
KOR_CALL(int, fstat, (int file, struct stat *facts), (file, facts), noexcept, -1, EIO, never_waits)
KOR_CALL(int, fstatat, (int folder, char const *path, struct stat *facts, int flags),
    (folder, path, facts, flags), noexcept, -1, EIO, never_waits)
KOR_CALL(int, statx, (int folder, char const *path, int flags, unsigned mask, struct statx *facts),
    (folder, path, flags, mask, facts), noexcept, -1, EIO, never_waits)
KOR_CALL(int, access, (char const *path, int mode), (path, mode), noexcept, -1, EIO, never_waits)
KOR_CALL(int, faccessat, (int folder, char const *path, int mode, int flags),
    (folder, path, mode, flags), noexcept, -1, EIO, never_waits)
KOR_CALL(off_t, lseek, (int file, off_t offset, int origin), (file, offset, origin), noexcept, -1,
    EIO, never_waits)
KOR_CALL(int, ftruncate, (int file, off_t size), (file, size), noexcept, -1, EIO, may_wait)
KOR_CALL(int, truncate, (char const *path, off_t size), (path, size), noexcept, -1, EIO, may_wait)
KOR_CALL(int, fallocate, (int file, int mode, off_t start, off_t size), (file, mode, start, size), ,
    -1, ENOSPC, may_wait)
KOR_CALL(int, fchmod, (int file, mode_t mode), (file, mode), noexcept, -1, EIO, never_waits)
KOR_CALL(int, fchown, (int file, uid_t user, gid_t group), (file, user, group), noexcept, -1, EIO,
    never_waits)
KOR_CALL(int, futimens, (int file, struct timespec const *times), (file, times), noexcept, -1, EIO,
    never_waits)
KOR_CALL(
    int, rename, (char const *from, char const *to), (from, to), noexcept, -1, EIO, never_waits)
KOR_CALL(int, renameat2, (int a, char const *from, int b, char const *to, unsigned flags),
    (a, from, b, to, flags), noexcept, -1, EIO, never_waits)
KOR_CALL(int, link, (char const *from, char const *to), (from, to), noexcept, -1, EIO, never_waits)
KOR_CALL(int, unlink, (char const *path), (path), noexcept, -1, EIO, cleans_up)
KOR_CALL(int, unlinkat, (int folder, char const *path, int flags), (folder, path, flags), noexcept,
    -1, EIO, cleans_up)
KOR_CALL(
    int, mkdir, (char const *path, mode_t mode), (path, mode), noexcept, -1, ENOSPC, never_waits)
KOR_CALL(int, rmdir, (char const *path), (path), noexcept, -1, EIO, cleans_up)
KOR_CALL(int, mkostemp, (char *path, int flags), (path, flags), , -1, EMFILE, may_wait)
KOR_CALL(char *, realpath, (char const *path, char *result), (path, result), noexcept, nullptr, EIO,
    never_waits)
KOR_CALL(char *, getcwd, (char *path, std::size_t size), (path, size), noexcept, nullptr, EIO,
    never_waits)
KOR_CALL(ssize_t, getdents64, (int folder, void *target, std::size_t size), (folder, target, size),
    noexcept, -1, EIO, may_wait)
KOR_CALL(ssize_t, read, (int file, void *target, std::size_t size), (file, target, cut(size)), , -1,
    EIO, may_wait)
KOR_CALL(ssize_t, write, (int file, void const *source, std::size_t size),
    (file, source, cut(size)), , -1, ENOSPC, may_wait)
KOR_CALL(ssize_t, pread, (int file, void *target, std::size_t size, off_t at),
    (file, target, cut(size), at), , -1, EIO, may_wait)
KOR_CALL(ssize_t, copy_file_range,
    (int from, off_t *a, int to, off_t *b, std::size_t size, unsigned flags),
    (from, a, to, b, cut(size), flags), , -1, EIO, may_wait)

KOR_PUBLIC int open(char const *path, int flags, ...)
{
    KOR_NEXT(open);
    std::va_list list;
    va_start(list, flags);
    mode_t const mode = get_mode(flags, list);
    va_end(list);
    return fails(EMFILE, may_wait) ? -1 : next(path, flags, mode);
}

KOR_PUBLIC int openat(int folder, char const *path, int flags, ...)
{
    KOR_NEXT(openat);
    std::va_list list;
    va_start(list, flags);
    mode_t const mode = get_mode(flags, list);
    va_end(list);
    return fails(EMFILE, may_wait) ? -1 : next(folder, path, flags, mode);
}

KOR_PUBLIC int fcntl(int file, int command, ...)
{
    KOR_NEXT(fcntl);
    std::va_list list;
    va_start(list, command);
    void *const argument = va_arg(list, void *);
    va_end(list);
    bool const locks = command == F_OFD_SETLK || command == F_OFD_SETLKW;
    return fails(EIO, locks ? may_wait : never_waits) ? -1 : next(file, command, argument);
}

// Nothing waits for the disk: that would take the most of the time.
KOR_PUBLIC int fsync(int)
{
    return fails(EIO, may_wait) ? -1 : 0;
}

// The file is closed all the same.
KOR_PUBLIC int close(int file)
{
    KOR_NEXT(close);
    int const result = next(file);
    return fails(EIO, may_wait) ? -1 : result;
}

KOR_PUBLIC int pthread_create(pthread_t *thread, pthread_attr_t const *attributes,
    void *(*start)(void *), void *argument) noexcept
{
    KOR_NEXT(pthread_create);
    return strikes(Fault::Error) ? EAGAIN : next(thread, attributes, start, argument);
}
