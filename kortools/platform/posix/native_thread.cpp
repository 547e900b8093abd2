// SPDX-License-Identifier: MIT
#include "kortools/platform/native_thread.h"

#include "kortools/platform/posix/thread_stop.h"
#include "kortools/platform/posix/thread_urgency.h"
#include "kortools/platform/threads.h"
#include "kortools/platform/utf8.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cwchar>
#include <cxxabi.h>
#include <iterator>
#include <limits.h>
#include <mutex>
#include <sched.h>
#include <time.h>

namespace kortools::platform {

struct NativeThread::State {
    std::mutex mutex; // held by whoever sends something to the thread, and at its end
    std::condition_variable changed;        // one of the three that follow
    bool announced = false;                 // under the lock
    std::atomic<bool> finished { false };   // changes under the lock
    std::atomic<bool> terminated { false }; // changes under the lock; stands at its closed gate
    std::atomic<int> suspend_count { 0 };   // changes under the lock
    std::atomic<ThreadPriority> priority { ThreadPriority::Normal };
    std::atomic<unsigned long long> id { 0 };
    pthread_t thread {};
    posix::StopGate gate;
    ThreadStart start {};
    ThreadPriority inherited {}; // of the thread that started this one
    std::shared_ptr<State> keep; // the running thread's own reference
};

namespace {

using State = NativeThread::State;

constexpr int reaction_time_ms = 2000; // how long terminate() waits for the thread to stop

thread_local State *s_state = nullptr; // null on threads that were not started here

void report_end(State &state)
{
    std::shared_ptr<State> const keep = std::move(state.keep);
    // Whoever holds the lock may be waiting for this thread to stop, and the signal may be late.
    std::unique_lock lock(state.mutex, std::try_to_lock);
    while (!lock.owns_lock()) {
        state.gate.wait_while_closed();
        sched_yield();
        static_cast<void>(lock.try_lock());
    }
    posix::StopGate::attach_current(nullptr);
    s_state = nullptr;
    state.finished = true;
    state.changed.notify_all();
}

// The first thread-local object of its thread and therefore the last one to be destroyed; also when
// the thread ends itself somewhere below.
struct EndReporter {
    State *m_state = nullptr;
    ~EndReporter()
    {
        if (m_state)
            report_end(*m_state);
    }
};
thread_local EndReporter s_end_reporter;

// The new thread tells its identifier itself: whoever starts it would have to hold it back until
// that is done, which takes longer.
void announce(State &state)
{
    ThreadStart const &start = state.start;
    state.id = get_current_thread_id();
    bool const changed = posix::change_urgency(state.id, state.inherited, start.priority);
    state.priority = changed ? start.priority : state.inherited;
    start.announce(start.argument, state.id);
    std::lock_guard const lock(state.mutex);
    state.announced = true;
    state.changed.notify_all();
}

void *run_thread(void *argument)
{
    auto &state = *static_cast<State *>(argument);
    s_end_reporter.m_state = &state;
    s_state = &state;
    posix::StopGate::attach_current(&state.gate);
    posix::unblock_stop_signal();
    announce(state);
    state.gate.wait_while_closed();
    return state.start.run(state.start.argument) ? argument : nullptr;
}

class ThreadAttributes {
public:
    ThreadAttributes() { m_valid = pthread_attr_init(&m_attributes) == 0; }
    ~ThreadAttributes()
    {
        if (m_valid)
            pthread_attr_destroy(&m_attributes);
    }
    ThreadAttributes(ThreadAttributes const &) = delete;
    ThreadAttributes &operator=(ThreadAttributes const &) = delete;

    bool set_stack_size(unsigned long long size)
    {
        constexpr unsigned long long page = 4096;
        auto const minimum = static_cast<unsigned long long>(PTHREAD_STACK_MIN) + page;
        size = (std::max(size, minimum) + page - 1) / page * page;
        return m_valid && pthread_attr_setstacksize(&m_attributes, size) == 0;
    }
    pthread_attr_t const *get() const { return m_valid ? &m_attributes : nullptr; }

private:
    pthread_attr_t m_attributes;
    bool m_valid;
};

} // namespace

NativeThread::NativeThread()
    : m_state(std::make_shared<State>())
{
}

bool NativeThread::start(ThreadStart const &start)
{
    std::shared_ptr<State> const state = m_state; // this object may be gone soon
    ThreadAttributes attributes;
    if (start.stack_size != 0 && !attributes.set_stack_size(start.stack_size))
        return false;
    state->start = start;
    state->inherited = s_state ? s_state->priority.load() : ThreadPriority::Normal;
    if (start.suspended) {
        state->suspend_count = 1;
        state->gate.close();
    }
    state->keep = state;
    if (pthread_create(&state->thread, attributes.get(), run_thread, state.get()) != 0) {
        state->keep.reset();
        state->finished = true;
        return false;
    }
    std::unique_lock lock(state->mutex);
    state->changed.wait(lock, [&] { return state->announced || state->terminated; });
    return true;
}

// Joining also waits for the few instructions that follow report_end(), so that the library can be
// unloaded.
void NativeThread::close()
{
    if (m_state->id == 0)
        return;
    bool const can_join = m_state->finished && !m_state->terminated;
    if (can_join && !pthread_equal(pthread_self(), m_state->thread))
        pthread_join(m_state->thread, nullptr);
    else
        pthread_detach(m_state->thread);
}

void *NativeThread::handle() const
{
    return reinterpret_cast<void *>(m_state->thread);
}

unsigned long long NativeThread::id() const
{
    return m_state->id;
}

bool NativeThread::is_finished() const
{
    return m_state->finished;
}

bool NativeThread::wait(unsigned int timeout_ms) const
{
    State &state = *m_state;
    if (s_state == &state || state.id == 0)
        return false;
    auto const is_over = [&state] { return state.finished.load(); };
    std::unique_lock lock(state.mutex);
    if (timeout_ms == 0xFFFFFFFF) {
        state.changed.wait(lock, is_over);
        return true;
    }
    return state.changed.wait_for(lock, std::chrono::milliseconds(timeout_ms), is_over);
}

bool NativeThread::suspend()
{
    State &state = *m_state;
    std::unique_lock lock(state.mutex);
    if (state.id == 0 || state.finished)
        return false;
    if (state.suspend_count.fetch_add(1) > 0)
        return true;
    state.gate.close();
    bool const is_self = s_state == &state;
    if (is_self)
        lock.unlock(); // the thread that resumes this one needs it
    if (!posix::StopGate::send_signal(state.thread)) {
        --state.suspend_count;
        state.gate.open();
        return false;
    }
    return is_self || state.gate.wait_until_stopped(state.id, -1);
}

bool NativeThread::resume()
{
    State &state = *m_state;
    std::lock_guard const lock(state.mutex);
    if (state.id == 0 || state.finished)
        return false;
    if (state.suspend_count > 0 && --state.suspend_count == 0)
        state.gate.open();
    return true;
}

bool NativeThread::is_suspended() const
{
    return m_state->suspend_count > 0;
}

ThreadPriority NativeThread::priority() const
{
    return m_state->priority;
}

bool NativeThread::set_priority(ThreadPriority priority)
{
    State &state = *m_state;
    std::lock_guard const lock(state.mutex); // another thread has the number after the end
    if (state.id == 0 || state.finished
        || !posix::change_urgency(state.id, state.priority, priority))
        return false;
    state.priority = priority;
    return true;
}

// The thread stays at its gate. Ending it for good would unwind it through code that is not made
// for that, or take its stack away under pointers of others.
bool NativeThread::terminate()
{
    State &state = *m_state;
    std::lock_guard const lock(state.mutex);
    if (state.id == 0 || state.finished || s_state == &state)
        return false;
    if (state.suspend_count == 0) {
        state.gate.close();
        if (!posix::StopGate::send_signal(state.thread)
            || !state.gate.wait_until_stopped(state.id, reaction_time_ms)) {
            state.gate.open();
            return false;
        }
    }
    state.terminated = true;
    state.finished = true;
    state.changed.notify_all();
    return true;
}

namespace {

void set_name_of(pthread_t thread, wchar_t const *name)
{
    char text[16] = {}; // the kernel's limit, with the zero
    std::size_t length = std::min<std::size_t>(std::wcslen(name), std::size(text) - 1);
    while (encode_utf8(name, length, text, std::size(text) - 1) < 0)
        --length;
    pthread_setname_np(thread, text);
}

} // namespace

void NativeThread::set_name(wchar_t const *name)
{
    std::lock_guard const lock(m_state->mutex);
    if (m_state->id != 0 && !m_state->finished)
        set_name_of(m_state->thread, name);
}

void set_current_thread_name(wchar_t const *name)
{
    set_name_of(pthread_self(), name);
}

void sleep_current_thread(unsigned int milliseconds)
{
    if (milliseconds == 0) {
        sched_yield();
        return;
    }
    timespec left { milliseconds / 1000, milliseconds % 1000 * 1'000'000L };
    while (nanosleep(&left, &left) != 0 && errno == EINTR) { }
}

// The exception that ends a thread has no object for the reference to mean.
__attribute__((no_sanitize("null"))) bool call_guarded(bool (*function)(void *), void *argument)
{
    try {
        return function(argument);
    } catch (abi::__forced_unwind const &) { // pthread_exit() or pthread_cancel()
        throw;
    } catch (...) {
        return false;
    }
}

bool enter_ole_apartment()
{
    return true;
}

void leave_ole_apartment() { }

} // namespace kortools::platform
