// SPDX-License-Identifier: MIT
#include "kortools/platform/threads.h"

#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kortools::platform {
namespace {

// gettid() is a system call; a thread keeps its number. The one thread that survives in a child
// process gets another.
thread_local unsigned long long s_thread_id = 0;

[[maybe_unused]] int const s_fork_handler
    = pthread_atfork(nullptr, nullptr, [] { s_thread_id = 0; });

} // namespace

unsigned long long get_current_thread_id()
{
    if (s_thread_id == 0)
        s_thread_id = static_cast<unsigned long long>(syscall(SYS_gettid));
    return s_thread_id;
}

} // namespace kortools::platform
