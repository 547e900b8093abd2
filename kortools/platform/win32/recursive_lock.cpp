// SPDX-License-Identifier: MIT
#include "kortools/platform/recursive_lock.h"

#include <new>
#include <windows.h>

namespace kortools::platform {
namespace {

CRITICAL_SECTION *section_in(unsigned char *storage)
{
    return std::launder(reinterpret_cast<CRITICAL_SECTION *>(storage));
}

} // namespace

RecursiveLock::RecursiveLock()
{
    static_assert(sizeof(CRITICAL_SECTION) <= sizeof(m_system));
    if (!InitializeCriticalSectionAndSpinCount(new (m_system) CRITICAL_SECTION, 0))
        throw std::bad_alloc();
}

RecursiveLock::~RecursiveLock()
{
    DeleteCriticalSection(section_in(m_system));
}

void RecursiveLock::lock()
{
    EnterCriticalSection(section_in(m_system));
    change_depth(1);
}

void RecursiveLock::unlock()
{
    change_depth(-1);
    LeaveCriticalSection(section_in(m_system));
}

} // namespace kortools::platform
