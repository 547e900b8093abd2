// SPDX-License-Identifier: MIT
#include "apps/common/progress.h"

#include "kortools/app/thread.h"
#include "kortools/app/thread_registry.h"
#include "kortools/platform/user_interrupt.h"

namespace kor_apps {

ConsoleProgress::ConsoleProgress(CXTString<wchar_t> const &label, bool enabled)
    : m_line(std::in_place, label, enabled)
    , m_thread(CXThread::GetCurrentThreadID())
{
    progressPushCallback(Call, this);
    kortools::platform::begin_interrupt_watch();
}

ConsoleProgress::~ConsoleProgress()
{
    Finish();
    kortools::platform::end_interrupt_watch();
    SetCancelThread(false, m_thread);
}

bool ConsoleProgress::Finish()
{
    if (!m_line)
        return ShouldCancelThread(m_thread);
    progressCallCallback(progressQueryCancel, {});
    m_line.reset();
    return progressPopCallback();
}

bool ConsoleProgress::Call(unsigned int flags, ProcessProgressInfo const &info, void *user)
{
    auto &progress = *static_cast<ConsoleProgress *>(user);
    if ((flags & progressShow) != 0)
        progress.m_line->Update(info.done, info.total);
    return (flags & progressQueryCancel) != 0 && progress.IsCancelled();
}

bool ConsoleProgress::IsCancelled()
{
    if (kortools::platform::was_user_interrupted())
        SetCancelThread(true, m_thread);
    return ShouldCancelThread(m_thread);
}

} // namespace kor_apps
