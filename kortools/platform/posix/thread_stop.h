// SPDX-License-Identifier: MIT
// Stopping a running thread: a real-time signal whose handler waits until the thread may go on.
#pragma once

#include <atomic>
#include <pthread.h>

namespace kortools::platform::posix {

// Belongs to one thread. The requests are made under a lock of the caller's; the thread itself
// takes none, so that it can be stopped wherever it is.
class StopGate {
public:
    // What the handler finds: the gate of the calling thread, or null.
    static void attach_current(StopGate *gate);
    static bool is_current(StopGate const *gate);

    // A thread that does not run yet stops at its first wait_while_closed(); a running one must be
    // sent the signal, too.
    void close();

    // False when the signal cannot be sent.
    static bool send_signal(pthread_t thread);

    // Waits until the thread has stopped at the closed gate, or is in the kernel where no signal
    // reaches it: it then stops before its next own instruction. A negative time is no limit.
    bool wait_until_stopped(unsigned long long thread_id, int timeout_ms);

    void open();

    // By the thread: comes back when the gate is open.
    void wait_while_closed();

private:
    std::atomic<unsigned> m_request { 0 }; // odd: closed. Each change counts one on.
    std::atomic<unsigned> m_reached { 0 }; // the last odd request at which the thread has stopped
};

// Lets the stop signal through to the calling thread, whatever mask it has inherited.
void unblock_stop_signal();

} // namespace kortools::platform::posix
