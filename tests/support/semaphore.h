// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <mutex>

// Counts what has been released and not yet acquired. The standard library's semaphores of GCC 12
// lose wake-ups where the system has no futex, so that one run in twenty stood still.
class Semaphore {
public:
    void acquire()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_count > 0; });
        --m_count;
    }
    void release()
    {
        std::lock_guard const lock(m_mutex);
        ++m_count;
        m_changed.notify_one();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_count = 0;
};
