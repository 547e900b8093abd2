// SPDX-License-Identifier: MIT
// Waiting for a word in memory to change. Safe in signal handlers, where no C library lock is.
#pragma once

#include <atomic>
#include <climits>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kortools::platform::posix {

// Returns when the word was woken or is not `expected`, and now and then without a reason.
inline void futex_wait(
    std::atomic<unsigned> &word, unsigned expected, timespec const *limit = nullptr)
{
    syscall(SYS_futex, &word, FUTEX_WAIT_PRIVATE, expected, limit, nullptr, 0);
}

inline void futex_wake(std::atomic<unsigned> &word, int count = INT_MAX)
{
    syscall(SYS_futex, &word, FUTEX_WAKE_PRIVATE, count, nullptr, nullptr, 0);
}

} // namespace kortools::platform::posix
