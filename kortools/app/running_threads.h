// SPDX-License-Identifier: MIT
// The threads that have been begun and have not ended, of one kind.
#pragma once

#include "kortools/core/critical_section.h"
#include "kortools/platform/native_thread.h"

#include <vector>

namespace kortools::app {

// Locks itself. Ended threads are dropped now and then, not by themselves: a thread may be listed
// for a while after its end, but is not counted.
class RunningThreads {
public:
    void add(platform::NativeThread const &thread) noexcept; // without memory it is not listed

    int count(); // not the calling thread

    // Until none but the calling thread runs. False when the time is over before.
    bool wait(unsigned int timeout_ms);

    // All but the calling thread; returns how many. Those that do not react go on.
    int terminate();

private:
    using Threads = std::vector<platform::NativeThread>;

    void drop_ended();
    Threads get_others();
    int terminate_once();

    CXCriticalSection m_lock;
    Threads m_threads;
    std::size_t m_drop_size = 32; // from this size on, add() looks for ended threads
};

// Never destroyed.
RunningThreads &get_running_custom_threads();

} // namespace kortools::app
