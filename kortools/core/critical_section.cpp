// SPDX-License-Identifier: MIT
#include "kortools/core/critical_section.h"

#include "kortools/core/throw.h"

#include <new>

CXCriticalSection::CXCriticalSection()
try : m_lock() {
} catch (std::bad_alloc const &) {
    kortools::core::throw_out_of_memory();
}

CXCriticalSection::~CXCriticalSection() = default;

void CXCriticalSection::Lock()
{
    m_lock.lock();
}

void CXCriticalSection::Unlock()
{
    m_lock.unlock();
}
