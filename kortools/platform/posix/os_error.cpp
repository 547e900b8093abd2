// SPDX-License-Identifier: MIT
//
// The last failure is errno, read through a table. A code that is set and that some errno stands
// for is stored as that errno. Any other code is kept beside errno, which then holds a mark that no
// system call produces: the kernel's numbers end at 4095. The next failing call overwrites errno,
// so the newer of the two failures is the one reported.
#include "kortools/platform/os_error.h"

#include <cerrno>

namespace kortools::platform {
namespace {

struct ErrorPair {
    int error_number;
    unsigned int code;
};

// Where several errno values share a code, the first is the one that set_last_os_error() stores.
// Codes are those that Windows reports for the same mishap on a file or share, not the ones with
// the most similar name: EISDIR is "access denied" because that is what opening a folder gives.
constexpr ErrorPair error_pairs[] = {
    { 0, 0 }, // no failure
    { EACCES, 5 }, { EPERM, 5 }, { EISDIR, 5 }, { ENOENT, 2 },
    { ENOTDIR, 3 },                             // a file where a folder of the path should be
    { EMFILE, 4 }, { ENFILE, 4 }, { EBADF, 6 }, // invalid handle
    { ENOMEM, 8 },                              // not enough memory
    { E2BIG, 10 },                              // bad environment
    { EXDEV, 17 }, { EROFS, 19 },               // write-protected
    { ENXIO, 20 },                              // no such unit
    { ENOMEDIUM, 21 },                          // not ready
    { EIO, 23 },                                // data error
    { EBADMSG, 23 },                            // a checksum of the file system is wrong
    { ETXTBSY, 32 },                            // sharing violation
    { EAGAIN, 32 },                             // refused by a lock of another opener
    { ENOLCK, 36 },                             // no more sharing locks
    { EOPNOTSUPP, 50 },                         // not supported
    { EHOSTUNREACH, 53 },                       // the server of a share does not answer
    { EHOSTDOWN, 53 }, { ENODEV, 55 },          // the device or share is gone
    { EREMOTEIO, 59 },                          // unexpected network error
    { EPROTO, 59 }, { ECOMM, 59 }, { ECONNRESET, 64 }, // network name deleted
    { ENOTCONN, 64 }, { EINVAL, 87 }, { EPIPE, 109 }, { ENOSPC, 112 },
    { EDQUOT, 112 },                  // a used-up quota is a full disk on Windows as well
    { ENOSYS, 120 }, { ERANGE, 122 }, // the buffer is too small
    { ECHILD, 128 },                  // no child processes
    { ESPIPE, 132 },                  // seek on a device
    { ENOTEMPTY, 145 }, { EBUSY, 170 }, { EEXIST, 183 }, { ENOEXEC, 193 }, { ENAMETOOLONG, 206 },
    { EFBIG, 223 }, { EOVERFLOW, 534 },                // arithmetic overflow
    { ECANCELED, 995 },                                // input or output aborted
    { EINTR, 995 }, { EINPROGRESS, 997 },              // pending
    { EALREADY, 997 }, { EFAULT, 998 }, { ENOTTY, 1 }, // the device does not know the operation
    { ESTALE, 1006 },                                  // the volume of the open file was replaced
    { EILSEQ, 1113 },                                  // no Unicode translation
    { EDEADLK, 1131 },                                 // possible deadlock
    { EMLINK, 1142 },                                  // too many links
    { ESRCH, 1168 },                                   // not found
    { ENETUNREACH, 1231 }, { ENETDOWN, 1231 }, { ECONNREFUSED, 1225 },
    { EUCLEAN, 1392 },                                           // the file system is damaged
    { ENOBUFS, 1450 },                                           // no system resources
    { ETIMEDOUT, 1460 }, { EMEDIUMTYPE, 1785 }, { ELOOP, 1921 }, // the name cannot be resolved
};

constexpr unsigned int general_failure = 31;
constexpr int code_beside_errno = 0x4B0000; // errno while s_code is the last failure

thread_local unsigned int s_code = 0;

} // namespace

unsigned int get_last_os_error()
{
    int const error_number = errno;
    if (error_number == code_beside_errno)
        return s_code;
    for (ErrorPair const &pair : error_pairs) {
        if (pair.error_number == error_number)
            return pair.code;
    }
    return general_failure;
}

void set_last_os_error(unsigned int code)
{
    for (ErrorPair const &pair : error_pairs) {
        if (pair.code == code) {
            errno = pair.error_number;
            return;
        }
    }
    s_code = code;
    errno = code_beside_errno;
}

} // namespace kortools::platform
