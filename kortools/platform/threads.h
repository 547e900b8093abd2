// SPDX-License-Identifier: MIT
// Thread identity and the recursive lock.
#pragma once

#include "kortools/export.h"

namespace kortools::platform {

// The system's identifier of the calling thread (the kernel's on Linux), never 0.
unsigned long long get_current_thread_id();

// A recursive lock of the system. Lock and unlock report nothing: they cannot fail on a live lock
// used in pairs.
class RecursiveLock {
public:
    RecursiveLock(); // throws std::bad_alloc when the system refuses one
    ~RecursiveLock();
    RecursiveLock(RecursiveLock const &) = delete;
    RecursiveLock &operator=(RecursiveLock const &) = delete;

    void lock();
    void unlock();

private:
    void *m_lock; // the system's object
};

} // namespace kortools::platform
