// SPDX-License-Identifier: MIT
#include "kortools/platform/threads.h"

#include <memory>
#include <new>
#include <windows.h>

namespace kortools::platform {

unsigned long long get_current_thread_id()
{
    return GetCurrentThreadId();
}

RecursiveLock::RecursiveLock()
{
    auto section = std::make_unique<CRITICAL_SECTION>();
    if (!InitializeCriticalSectionAndSpinCount(section.get(), 0))
        throw std::bad_alloc();
    m_lock = section.release();
}

RecursiveLock::~RecursiveLock()
{
    auto *const section = static_cast<CRITICAL_SECTION *>(m_lock);
    DeleteCriticalSection(section);
    delete section;
}

void RecursiveLock::lock()
{
    EnterCriticalSection(static_cast<CRITICAL_SECTION *>(m_lock));
}

void RecursiveLock::unlock()
{
    LeaveCriticalSection(static_cast<CRITICAL_SECTION *>(m_lock));
}

} // namespace kortools::platform
