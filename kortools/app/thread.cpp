// SPDX-License-Identifier: MIT
#include "kortools/app/thread.h"

#include "kortools/app/thread_hooks.h"
#include "kortools/app/thread_records.h"
#include "kortools/app/thread_registry.h"
#include "kortools/archive/exception.h"
#include "kortools/platform/native_thread.h"
#include "kortools/platform/threads.h"

#include <new>

using kortools::platform::NativeThread;
using kortools::platform::ThreadPriority;

KOR_IMPLEMENT_CLASS(CXThread, CXObject, 1 | CXRuntimeClass::not_serializable)

CXThread::CXThread(bool keep)
    : m_flags(keep ? 0U : autoDelete)
{
}

CXThread::CXThread(ThreadFunction function, void *data)
    : m_function(function)
    , m_userData(data)
{
}

CXThread::~CXThread()
{
    Release();
}

void CXThread::Release()
{
    if (m_threadID != 0)
        kortools::app::forget_thread(m_threadID);
    m_threadID = 0;
    if (m_native)
        m_native->close();
    m_native.reset();
}

bool CXThread::Start()
{
    return true;
}

void CXThread::Finish() { }

bool CXThread::Run()
{
    return true;
}

CXThread *CXThread::BeginThread(ThreadFunction function, void *data, xThreadPriority priority,
    unsigned int creationFlags, unsigned int stackSize)
{
    CXThread *thread = nullptr;
    try {
        thread = new CXThread(function, data);
    } catch (CXException *exception) {
        exception->Delete();
    } catch (std::bad_alloc const &) {
        thread = nullptr;
    }
    return BeginThread(thread, priority, creationFlags, stackSize);
}

CXThread *CXThread::BeginThread(CXRuntimeClass const *threadClass, xThreadPriority priority,
    unsigned int creationFlags, unsigned int stackSize)
{
    CXThread *thread = nullptr;
    if (threadClass && threadClass->IsDerivedFrom(GetThisRuntimeClassDescriptor()))
        thread = static_cast<CXThread *>(threadClass->CreateObject());
    return BeginThread(thread, priority, creationFlags, stackSize);
}

CXThread *CXThread::BeginThread(
    CXThread *thread, xThreadPriority priority, unsigned int creationFlags, unsigned int stackSize)
{
    if (thread && thread->m_native && !(thread->IsTerminated() && thread->WaitForEnd())
        && !thread->m_native->is_finished())
        return nullptr;
    bool started = false;
    try {
        started = thread && thread->Launch(priority, creationFlags, stackSize);
    } catch (CXException *exception) {
        exception->Delete();
    } catch (std::bad_alloc const &) {
        started = false;
    }
    XDeleteThreadException();
    if (started)
        return thread; // not touched any more: it may be gone
    delete thread;
    return nullptr;
}

// Makes room for a new thread, also where one has ended.
void CXThread::Prepare()
{
    if (m_native)
        Release();
    CXSingleLock const lock(&m_lock, true);
    if ((m_flags & terminated) != 0)
        m_flags &= ~static_cast<unsigned>(terminated | cancelRequested);
    m_result = false;
    m_suspended = false;
    m_native = std::make_unique<NativeThread>();
}

bool CXThread::Launch(xThreadPriority priority, unsigned int creationFlags, unsigned int stackSize)
{
    Prepare();
    if ((creationFlags & keepAutoDelete) == 0)
        SetAutoDelete(true);
    m_parentID = GetCurrentThreadID();
    kortools::platform::ThreadStart start {};
    start.announce = Announce;
    start.run = Main;
    start.argument = this;
    start.priority = static_cast<ThreadPriority>(priority);
    start.stack_size = stackSize;
    start.suspended = (creationFlags & beginSuspended) != 0;
    m_suspended = start.suspended;
    return m_native->start(start);
}

void CXThread::Announce(void *argument, unsigned long long id)
{
    auto *const thread = static_cast<CXThread *>(argument);
    thread->m_threadID = id;
    kortools::app::record_started_thread(id, thread->m_parentID);
    if (thread->m_hooks)
        thread->m_hooks->announce(*thread, *thread->m_native);
}

bool CXThread::RunBody()
{
    if (m_function)
        return m_function(m_userData);
    bool const result = Start() && Run();
    Finish();
    return result;
}

bool CXThread::CatchingBody(void *argument)
{
    auto *const thread = static_cast<CXThread *>(argument);
    try {
        return thread->RunBody();
    } catch (CXException *exception) {
        exception->Delete();
        return false;
    }
}

// Also when the body ends the thread itself instead of returning.
bool CXThread::Main(void *argument)
{
    struct Ending {
        CXThread *const m_thread;
        ~Ending()
        {
            m_thread->End();
            XDeleteThreadException();
        }
    } const ending { static_cast<CXThread *>(argument) };

    CXThread &thread = *ending.m_thread;
    if (thread.m_hooks)
        thread.m_hooks->enter(thread);
    bool const result = kortools::platform::call_guarded(CatchingBody, argument);
    CXSingleLock const lock(&thread.m_lock, true);
    thread.m_result = result;
    return result;
}

// Whoever sees the flag may delete the object at once.
void CXThread::End()
{
    if (m_hooks)
        m_hooks->leave(*this);
    CXSingleLock lock(&m_lock, true);
    m_flags |= terminated;
    bool const deletes = (m_flags & autoDelete) != 0;
    lock.Unlock();
    if (deletes)
        delete this;
}

void CXThread::SetCancel()
{
    SetFlag(cancelRequested);
}

bool CXThread::ShouldCancel() const
{
    return IsFlagSet(cancelRequested);
}

bool CXThread::IsTerminated() const
{
    return IsFlagSet(terminated);
}

void CXThread::SetAutoDelete(bool deleteAtEnd)
{
    SetFlag(autoDelete, deleteAtEnd);
}

void CXThread::SetFlag(ThreadFlags flag, bool on)
{
    CXSingleLock const lock(&m_lock, true);
    m_flags = on ? m_flags | flag : m_flags & ~static_cast<unsigned>(flag);
}

bool CXThread::IsFlagSet(ThreadFlags flag) const
{
    CXSingleLock const lock(&m_lock, true);
    return (m_flags & flag) != 0;
}

bool CXThread::Lock(bool lock)
{
    if (lock)
        m_lock.Lock();
    else
        m_lock.Unlock();
    return true;
}

bool CXThread::SuspendThread()
{
    if (!m_native)
        return false;
    m_suspended = true; // before: a thread may suspend itself
    bool const done = m_native->suspend();
    if (!done)
        m_suspended = false;
    return done;
}

bool CXThread::ResumeThread()
{
    if (!m_native)
        return false;
    bool const before = m_suspended.exchange(false); // at once: it may suspend itself again
    bool const done = m_native->resume();
    if (!done && before)
        m_suspended = true;
    return done;
}

bool CXThread::IsSuspended() const
{
    return m_suspended;
}

bool CXThread::WaitForEnd(unsigned int timeout) const
{
    if (!m_native)
        return false;
    NativeThread const native = *m_native; // the thread may delete the object
    return native.wait(timeout);
}

bool CXThread::GetThreadResult() const
{
    CXSingleLock const lock(&m_lock, true);
    return m_result;
}

bool CXThread::IsValidThread() const
{
    return m_native != nullptr;
}

void *CXThread::GetThreadHandle() const
{
    return m_native ? m_native->handle() : nullptr;
}

unsigned long long CXThread::GetThreadID() const
{
    return m_threadID;
}

xThreadPriority CXThread::GetThreadPriority() const
{
    return m_native ? static_cast<xThreadPriority>(m_native->priority()) : xThreadPriorityNormal;
}

bool CXThread::SetThreadPriority(xThreadPriority priority)
{
    return m_native && m_native->set_priority(static_cast<ThreadPriority>(priority));
}

unsigned long long CXThread::GetMainThreadID()
{
    return GetApplicationMainThreadID();
}

unsigned long long CXThread::GetCurrentThreadID()
{
    return kortools::platform::get_current_thread_id();
}

void CXThread::SleepCurrentThread(unsigned int milliseconds)
{
    kortools::platform::sleep_current_thread(milliseconds);
}
