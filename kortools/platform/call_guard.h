// SPDX-License-Identifier: MIT
// Limits for calls that may never come back, such as those on a share that no longer answers.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>

namespace kortools::platform {

// Work that may block. `is_late` becomes true when nobody waits any longer: work of several steps
// then stops, and takes back what nobody asked for.
using BlockingWork = std::function<void(std::atomic<bool> const &is_late)>;

// Runs `work`, which is about `path`, and returns true when it is done; false, with
// get_last_os_error() saying so, when it was not after `limit_ms` milliseconds. An exception of the
// work is passed on.
//
// Windows: on the calling thread, whose synchronous input and output is then cancelled.
// Linux: on a thread of its own, which is left behind and ends when the system lets it; a signal
// does not reach a thread that waits for a dead mount. So `work` must own everything it uses. To
// keep those threads few, at most one waits for the same path and 16 for the same mount; a call
// that finds them there waits for its turn, and its time runs.
//
// Without a thread to be had the work has no limit.
bool run_within(unsigned int limit_ms, std::string_view native_path, BlockingWork work);

// Cancels what the calling thread waits for. On Linux that is a signal: calls that no signal
// interrupts, and those that start again after one, are not cancelled.
class InterruptTarget {
public:
    InterruptTarget(); // the calling thread
    ~InterruptTarget();
    InterruptTarget(InterruptTarget const &) = delete;
    InterruptTarget &operator=(InterruptTarget const &) = delete;

    void interrupt() const; // from any thread

private:
    void *m_thread;
};

// The same limit for whatever a thread does between start() and end(). Used by that thread only;
// a helper thread watches it meanwhile.
class CallGuard {
public:
    // `*mark` becomes 0xFFFFFFFF when the time is over.
    CallGuard(unsigned int limit_ms, unsigned int *mark)
        : m_limit_ms(limit_ms)
        , m_mark(mark)
    {
    }
    ~CallGuard() { end(); }
    CallGuard(CallGuard const &) = delete;
    CallGuard &operator=(CallGuard const &) = delete;

    bool start(); // false when it has started already, or when the system has no thread for it
    bool end();   // true when the time was over since start(); the helper thread is gone then
    std::atomic<bool> const &is_late() const { return m_is_late; }

private:
    void watch();

    unsigned int const m_limit_ms;
    unsigned int *const m_mark;
    std::mutex m_mutex; // guards m_is_busy
    std::condition_variable m_ended;
    bool m_is_busy = false; // between start() and end()
    std::atomic<bool> m_is_late { false };
    std::optional<InterruptTarget> m_target; // while there is a watcher
    std::thread m_watcher;
};

} // namespace kortools::platform
