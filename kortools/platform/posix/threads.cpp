// SPDX-License-Identifier: MIT
#include "kortools/platform/threads.h"

#include <new>
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

pthread_mutex_t *create_recursive_mutex()
{
    pthread_mutexattr_t attributes;
    if (pthread_mutexattr_init(&attributes) != 0)
        throw std::bad_alloc();
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    auto *const mutex = new (std::nothrow) pthread_mutex_t;
    bool const created = mutex && pthread_mutex_init(mutex, &attributes) == 0;
    pthread_mutexattr_destroy(&attributes);
    if (!created) {
        delete mutex;
        throw std::bad_alloc();
    }
    return mutex;
}

} // namespace

unsigned long long get_current_thread_id()
{
    if (s_thread_id == 0)
        s_thread_id = static_cast<unsigned long long>(syscall(SYS_gettid));
    return s_thread_id;
}

RecursiveLock::RecursiveLock()
    : m_lock(create_recursive_mutex())
{
}

RecursiveLock::~RecursiveLock()
{
    auto *const mutex = static_cast<pthread_mutex_t *>(m_lock);
    pthread_mutex_destroy(mutex);
    delete mutex;
}

void RecursiveLock::lock()
{
    pthread_mutex_lock(static_cast<pthread_mutex_t *>(m_lock));
}

void RecursiveLock::unlock()
{
    pthread_mutex_unlock(static_cast<pthread_mutex_t *>(m_lock));
}

} // namespace kortools::platform
