// SPDX-License-Identifier: MIT
#include "kortools/platform/call_guard.h"

#include <windows.h>

namespace kortools::platform {

InterruptTarget::InterruptTarget()
    : m_thread(nullptr)
{
    HANDLE const process = GetCurrentProcess();
    if (!DuplicateHandle(
            process, GetCurrentThread(), process, &m_thread, THREAD_ALL_ACCESS, FALSE, 0))
        m_thread = nullptr;
}

InterruptTarget::~InterruptTarget()
{
    if (m_thread)
        CloseHandle(m_thread);
}

void InterruptTarget::interrupt() const
{
    if (m_thread)
        CancelSynchronousIo(m_thread);
}

bool run_within(unsigned int limit_ms, std::string_view, BlockingWork work)
{
    unsigned int mark = 0;
    CallGuard guard(limit_ms, &mark);
    guard.start();
    work(guard.is_late());
    DWORD const code = GetLastError();
    bool const is_late = guard.end();
    SetLastError(is_late ? ERROR_OPERATION_ABORTED : code);
    return !is_late;
}

} // namespace kortools::platform
