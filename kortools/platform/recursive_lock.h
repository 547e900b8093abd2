// SPDX-License-Identifier: MIT
// A lock that its holder may take again.
#pragma once

#include <atomic>

namespace kortools::platform {

// Lock and unlock report nothing: they cannot fail on a live lock used in pairs.
class RecursiveLock {
public:
    RecursiveLock(); // throws std::bad_alloc when the system refuses one
    ~RecursiveLock();
    RecursiveLock(RecursiveLock const &) = delete;
    RecursiveLock &operator=(RecursiveLock const &) = delete;

    void lock();
    void unlock();

    // Calls of lock() without their unlock(), of all threads.
    int depth() const { return m_depth.load(std::memory_order_relaxed); }

private:
    // Only the holder writes, so no read-modify-write is needed.
    int change_depth(int by)
    {
        int const depth = m_depth.load(std::memory_order_relaxed) + by;
        m_depth.store(depth, std::memory_order_relaxed);
        return depth;
    }

    alignas(8) unsigned char m_system[40]; // the system's object
    std::atomic<int> m_depth { 0 };
};

} // namespace kortools::platform
