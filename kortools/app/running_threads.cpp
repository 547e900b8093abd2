// SPDX-License-Identifier: MIT
#include "kortools/app/running_threads.h"

#include "kortools/app/thread_records.h"
#include "kortools/platform/clock.h"
#include "kortools/platform/threads.h"

#include <algorithm>
#include <new>

namespace kortools::app {

using platform::NativeThread;

void RunningThreads::drop_ended()
{
    std::erase_if(m_threads, [](NativeThread const &thread) { return thread.is_finished(); });
    m_drop_size = std::max<std::size_t>(32, 2 * m_threads.size());
}

void RunningThreads::add(NativeThread const &thread) noexcept
{
    CXSingleLock const lock(&m_lock, true);
    if (m_threads.size() >= m_drop_size)
        drop_ended();
    try {
        m_threads.push_back(thread);
    } catch (std::bad_alloc const &) {
        return; // it runs all the same
    }
}

RunningThreads::Threads RunningThreads::get_others()
{
    CXSingleLock const lock(&m_lock, true);
    drop_ended();
    Threads others = m_threads;
    unsigned long long const self = platform::get_current_thread_id();
    std::erase_if(others, [self](NativeThread const &thread) { return thread.id() == self; });
    return others;
}

int RunningThreads::count()
{
    return static_cast<int>(get_others().size());
}

// Looks again after waiting: a thread may have begun others before it ended.
bool RunningThreads::wait(unsigned int timeout_ms)
{
    constexpr unsigned no_limit = 0xFFFFFFFF;
    long long const end = platform::get_tick() + timeout_ms;
    for (;;) {
        Threads const others = get_others();
        if (others.empty())
            return true;
        for (NativeThread const &thread : others) {
            long long const left = std::max(end - platform::get_tick(), 0LL);
            if (!thread.wait(timeout_ms == no_limit ? no_limit : static_cast<unsigned>(left)))
                return false;
        }
    }
}

// Holds the locks that the threads may want, so that none is stopped with one of them.
int RunningThreads::terminate_once()
{
    int count = 0;
    CXSingleLock const lock(&m_lock, true);
    lock_thread_registry();
    for (NativeThread &thread : get_others())
        count += thread.terminate() ? 1 : 0;
    unlock_thread_registry();
    return count;
}

int RunningThreads::terminate()
{
    int count = 0;
    while (int const more = terminate_once()) // until no new ones have begun meanwhile
        count += more;
    return count;
}

RunningThreads &get_running_custom_threads()
{
    static auto *const s_threads = new RunningThreads;
    return *s_threads;
}

} // namespace kortools::app
