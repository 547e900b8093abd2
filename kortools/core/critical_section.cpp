// SPDX-License-Identifier: MIT
#include "kortools/core/critical_section.h"

#include "kortools/core/throw.h"
#include "kortools/platform/threads.h"

#include <new>

CXCriticalSection::CXCriticalSection()
{
    try {
        m_lock = new kortools::platform::RecursiveLock;
    } catch (std::bad_alloc const &) {
        kortools::core::throw_out_of_memory();
    }
}

CXCriticalSection::~CXCriticalSection()
{
    delete m_lock;
}

void CXCriticalSection::Lock()
{
    m_lock->lock();
    // Only the holder writes, so no read-modify-write is needed.
    m_depth.store(m_depth.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

void CXCriticalSection::Unlock()
{
    m_depth.store(m_depth.load(std::memory_order_relaxed) - 1, std::memory_order_relaxed);
    m_lock->unlock();
}

CXSingleLock::CXSingleLock(CXCriticalSection *section, bool lockNow)
    : m_section(section)
{
    if (lockNow)
        Lock();
}

CXSingleLock::~CXSingleLock()
{
    Unlock();
}

void CXSingleLock::Attach(CXCriticalSection *section)
{
    Unlock();
    m_section = section;
}

void CXSingleLock::Lock()
{
    if (!m_section || m_locked)
        return;
    m_section->Lock();
    m_locked = true;
}

void CXSingleLock::Unlock()
{
    if (!m_locked)
        return;
    m_section->Unlock();
    m_locked = false;
}
