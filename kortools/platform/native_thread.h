// SPDX-License-Identifier: MIT
// Threads of the system: starting, stopping for a while, ending by force, waiting, priority, name.
#pragma once

#include <memory>

namespace kortools::platform {

enum class ThreadPriority {
    Idle = -15,
    Lowest = -2,
    BelowNormal = -1,
    Normal = 0,
    AboveNormal = 1,
    Highest = 2,
    TimeCritical = 15
};

struct ThreadStart {
    // Called once, with the thread's identifier, before run() and before NativeThread::start()
    // returns, by the new thread or by the one that starts it. Nothing may escape it.
    void (*announce)(void *argument, unsigned long long id);

    // What the thread does. Nothing may escape it.
    bool (*run)(void *argument);

    void *argument;
    ThreadPriority priority = ThreadPriority::Normal; // one that is refused leaves it at normal
    unsigned long long stack_size = 0;                // bytes, rounded up; 0: the system's default
    bool suspended = false;                           // run() waits for a resume()
};

// A handle of a thread; copies mean the same thread. All functions may be called by any thread.
class NativeThread {
public:
    NativeThread(); // of no thread yet; throws std::bad_alloc

    // Starts the thread; once for each object. False when the system refuses. The object may be
    // destroyed by what the thread does before this returns.
    bool start(ThreadStart const &start);

    // Gives back what the system keeps for an ended thread. The thread goes on when it still runs.
    // Called once, and not followed by handle().
    void close();

    // Windows: the HANDLE. Linux: the pthread_t, which must be neither joined nor detached. Valid
    // until close().
    void *handle() const;
    unsigned long long id() const;

    // Has the thread ended, with its thread-local objects, or been ended by terminate()?
    bool is_finished() const;

    // Waits for the end. False when it has not come after the time (0xFFFFFFFF: no limit), and when
    // a thread waits for itself.
    bool wait(unsigned int timeout_ms) const;

    // The thread has stopped when this returns, and goes on after as many calls of resume(). False,
    // and nothing done, when there is no running thread.
    bool suspend();
    bool resume();
    bool is_suspended() const;

    // What is in effect. set_priority() is false when the system refuses.
    ThreadPriority priority() const;
    bool set_priority(ThreadPriority priority);

    // Stops the thread for good, wherever it is: what it holds stays held. False when it had ended,
    // when it does not react, and for the calling thread.
    bool terminate();

    // For debuggers and tools. Linux keeps 15 bytes of its UTF-8 form.
    void set_name(wchar_t const *name);

    struct State;

private:
    std::shared_ptr<State> m_state;
};

void set_current_thread_name(wchar_t const *name);

// At least that long; 0 gives way to other threads.
void sleep_current_thread(unsigned int milliseconds);

// The result of `function`, or false when anything was thrown, which is dropped. What the system
// itself throws to end a thread passes through.
bool call_guarded(bool (*function)(void *), void *argument);

// The calling thread's apartment for OLE: drag and drop, clipboard and controls. True when leave is
// due. Linux has no OLE: true, and nothing is done.
bool enter_ole_apartment();
void leave_ole_apartment();

} // namespace kortools::platform
