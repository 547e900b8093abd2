// SPDX-License-Identifier: MIT
#include "kortools/platform/native_thread.h"

#include <atomic>
#include <ole2.h>
#include <process.h>
#include <windows.h>

namespace kortools::platform {

struct NativeThread::State {
    HANDLE thread = nullptr;
    unsigned id = 0;
    std::atomic<int> suspend_count { 0 };
    std::atomic<ThreadPriority> priority { ThreadPriority::Normal };
    ThreadStart start {};

    State() = default;
    State(State const &) = delete;
    State &operator=(State const &) = delete;
    ~State()
    {
        if (thread)
            CloseHandle(thread);
    }
};

namespace {

using State = NativeThread::State;

unsigned __stdcall run_thread(void *argument)
{
    auto *const state = static_cast<std::shared_ptr<State> *>(argument);
    ThreadStart const start = (*state)->start;
    delete state; // the thread needs no handle of itself
    return start.run(start.argument) ? 1 : 0;
}

bool set_system_priority(HANDLE thread, ThreadPriority priority)
{
    return SetThreadPriority(thread, static_cast<int>(priority)) != 0;
}

// A thread that has been told to stop may still run; its registers can be read once it has stopped.
// False when it has ended instead.
bool wait_until_stopped(HANDLE thread)
{
    CONTEXT context {};
    context.ContextFlags = CONTEXT_CONTROL;
    return GetThreadContext(thread, &context) != 0
        && WaitForSingleObject(thread, 0) != WAIT_OBJECT_0;
}

} // namespace

NativeThread::NativeThread()
    : m_state(std::make_shared<State>())
{
}

bool NativeThread::start(ThreadStart const &start)
{
    std::shared_ptr<State> const state = m_state; // this object may be gone soon
    state->start = start;
    auto argument = std::make_unique<std::shared_ptr<State>>(state);
    auto const size = static_cast<unsigned>(start.stack_size);
    auto const flags = static_cast<unsigned>(CREATE_SUSPENDED | STACK_SIZE_PARAM_IS_A_RESERVATION);
    state->thread = reinterpret_cast<HANDLE>(
        _beginthreadex(nullptr, size, run_thread, argument.get(), flags, &state->id));
    if (!state->thread)
        return false;
    static_cast<void>(argument.release());
    if (start.priority != ThreadPriority::Normal
        && set_system_priority(state->thread, start.priority))
        state->priority = start.priority;
    state->suspend_count = start.suspended ? 1 : 0;
    start.announce(start.argument, state->id);
    if (!start.suspended)
        ResumeThread(state->thread);
    return true;
}

// The last copy closes the handle.
void NativeThread::close() { }

void *NativeThread::handle() const
{
    return m_state->thread;
}

unsigned long long NativeThread::id() const
{
    return m_state->id;
}

bool NativeThread::is_finished() const
{
    return m_state->thread && WaitForSingleObject(m_state->thread, 0) == WAIT_OBJECT_0;
}

bool NativeThread::wait(unsigned int timeout_ms) const
{
    return m_state->thread && GetCurrentThreadId() != m_state->id
        && WaitForSingleObject(m_state->thread, timeout_ms) == WAIT_OBJECT_0;
}

bool NativeThread::suspend()
{
    bool const is_self = GetCurrentThreadId() == m_state->id;
    if (!m_state->thread || is_finished())
        return false;
    ++m_state->suspend_count; // before: the calling thread may be the one that stops
    bool const told = SuspendThread(m_state->thread) != static_cast<DWORD>(-1);
    if (told && (is_self || wait_until_stopped(m_state->thread)))
        return true;
    --m_state->suspend_count;
    return false;
}

bool NativeThread::resume()
{
    if (!m_state->thread || is_finished())
        return false;
    DWORD const before = ResumeThread(m_state->thread);
    if (before == static_cast<DWORD>(-1))
        return false;
    m_state->suspend_count -= before > 0 ? 1 : 0;
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
    if (!m_state->thread || is_finished() || !set_system_priority(m_state->thread, priority))
        return false;
    m_state->priority = priority;
    return true;
}

bool NativeThread::terminate()
{
    if (!m_state->thread || GetCurrentThreadId() == m_state->id || is_finished()
        || !TerminateThread(m_state->thread, 0))
        return false;
    return WaitForSingleObject(m_state->thread, INFINITE) == WAIT_OBJECT_0;
}

namespace {

// Windows 10 and later know names of threads.
void set_name_of(HANDLE thread, wchar_t const *name)
{
    using SetThreadDescriptionFunction = HRESULT(WINAPI *)(HANDLE, PCWSTR);
    static auto const s_set_description
        = reinterpret_cast<SetThreadDescriptionFunction>(reinterpret_cast<void *>(
            GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "SetThreadDescription")));
    if (s_set_description)
        s_set_description(thread, name);
}

} // namespace

void NativeThread::set_name(wchar_t const *name)
{
    if (m_state->thread)
        set_name_of(m_state->thread, name);
}

void set_current_thread_name(wchar_t const *name)
{
    set_name_of(GetCurrentThread(), name);
}

void sleep_current_thread(unsigned int milliseconds)
{
    Sleep(milliseconds);
}

bool call_guarded(bool (*function)(void *), void *argument)
{
    try {
        return function(argument);
    } catch (...) {
        return false;
    }
}

bool enter_ole_apartment()
{
    return SUCCEEDED(OleInitialize(nullptr));
}

void leave_ole_apartment()
{
    OleUninitialize();
}

} // namespace kortools::platform
