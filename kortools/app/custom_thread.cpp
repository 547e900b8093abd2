// SPDX-License-Identifier: MIT
#include "kortools/app/custom_thread.h"

#include "kortools/app/running_threads.h"
#include "kortools/app/thread_hooks.h"
#include "kortools/app/thread_registry.h"
#include "kortools/platform/native_thread.h"

#include <atomic>

using kortools::app::get_running_custom_threads;
using kortools::platform::NativeThread;

KOR_IMPLEMENT_CLASS(CCustomThread, CXThread, 1 | CXRuntimeClass::not_serializable)
KOR_IMPLEMENT_CLASS(CWinCustomThread, CCustomThread, 1 | CXRuntimeClass::not_serializable)

static constinit std::atomic<bool> s_threads_must_terminate = false;

constinit kortools::app::ThreadHooks const CCustomThread::s_hooks { Announce, Enter, Leave };
constinit kortools::app::ThreadHooks const CWinCustomThread::s_hooks { Announce, Enter, Leave };

CCustomThread::CCustomThread(bool keep)
    : CXThread(keep)
{
    m_hooks = &s_hooks;
}

CCustomThread::CCustomThread(ThreadFunction function, void *data)
    : CXThread(function, data)
{
    m_hooks = &s_hooks;
}

void CCustomThread::Announce(CXThread &, NativeThread const &native)
{
    get_running_custom_threads().add(native);
}

void CCustomThread::Enter(CXThread &thread)
{
    CXTString<wchar_t> const name = static_cast<CCustomThread &>(thread).GetThreadName();
    if (!name.IsEmpty())
        SetCurrentThreadName(name);
}

void CCustomThread::Leave(CXThread &) { }

void CCustomThread::AskForThreadsEnd(bool end)
{
    s_threads_must_terminate = end;
}

bool CCustomThread::ThreadsMustTerminate()
{
    return s_threads_must_terminate;
}

bool CCustomThread::WaitEndOfThreads(unsigned int timeout)
{
    return get_running_custom_threads().wait(timeout);
}

int CCustomThread::HardThreadsTermination()
{
    return get_running_custom_threads().terminate();
}

int CCustomThread::GetRunningThreadCount()
{
    return get_running_custom_threads().count();
}

bool CCustomThread::MustTerminate() const
{
    unsigned long long const id = GetThreadID();
    return ThreadsMustTerminate() || ShouldCancel() || (id != 0 && ShouldCancelThread(id));
}

bool CCustomThread::StopThread(unsigned int timeout)
{
    if (!m_native)
        return true;
    NativeThread native = *m_native; // the object may delete itself from now on
    SetCancel();
    while (native.is_suspended() && native.resume()) { }
    return native.wait(timeout);
}

void CCustomThread::SetThreadName(CXTString<wchar_t> const &name)
{
    CXSingleLock const lock(&m_lock, true);
    m_name = name;
    if (m_native)
        m_native->set_name(name);
}

CXTString<wchar_t> CCustomThread::GetThreadName() const
{
    CXSingleLock const lock(&m_lock, true);
    return m_name;
}

void CCustomThread::SetCurrentThreadName(CXTString<wchar_t> const &name)
{
    kortools::platform::set_current_thread_name(name);
}

CWinCustomThread::CWinCustomThread(bool keep)
    : CCustomThread(keep)
{
    m_hooks = &s_hooks;
}

CWinCustomThread::CWinCustomThread(ThreadFunction function, void *data)
    : CCustomThread(function, data)
{
    m_hooks = &s_hooks;
}

void CWinCustomThread::Enter(CXThread &thread)
{
    CCustomThread::Enter(thread);
    static_cast<CWinCustomThread &>(thread).m_inApartment
        = kortools::platform::enter_ole_apartment();
}

void CWinCustomThread::Leave(CXThread &thread)
{
    if (static_cast<CWinCustomThread &>(thread).m_inApartment)
        kortools::platform::leave_ole_apartment();
}
