// SPDX-License-Identifier: MIT
#include "kortools/platform/message_hook.h"

#include "kortools/platform/threads.h"

#include <atomic>

namespace kortools::platform {
namespace {

std::atomic<MessageObserver> s_observer { nullptr };
std::atomic<unsigned long long> s_thread { 0 }; // the observed one
thread_local bool s_is_reporting = false;

} // namespace

bool begin_message_hook(MessageObserver observer)
{
    MessageObserver expected = nullptr;
    if (!s_observer.compare_exchange_strong(expected, observer))
        return false;
    s_thread = get_current_thread_id();
    if (install_message_hook())
        return true;
    s_observer = nullptr;
    return false;
}

void end_message_hook()
{
    if (s_observer.exchange(nullptr))
        remove_message_hook();
}

void report_window_message(WindowMessage const &message)
{
    MessageObserver const observer = s_observer;
    if (!observer || s_is_reporting || s_thread != get_current_thread_id())
        return;
    s_is_reporting = true;
    observer(message); // does not throw
    s_is_reporting = false;
}

} // namespace kortools::platform
