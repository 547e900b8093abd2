// SPDX-License-Identifier: MIT
#include "kortools/platform/call_guard.h"

#include <chrono>
#include <system_error>

namespace kortools::platform {
namespace {

constexpr unsigned int late_mark = 0xFFFFFFFF;

// An interruption that comes just before the call blocks is lost, so it is repeated.
constexpr std::chrono::milliseconds interrupt_interval { 5 };

} // namespace

bool CallGuard::start()
{
    if (m_watcher.joinable())
        return false;
    m_is_late = false;
    m_is_busy = true;
    m_target.emplace();
    try {
        m_watcher = std::thread([this] { watch(); });
        return true;
    } catch (std::system_error const &) {
        m_target.reset();
        m_is_busy = false;
        return false;
    }
}

bool CallGuard::end()
{
    if (m_watcher.joinable()) {
        {
            std::scoped_lock const lock(m_mutex);
            m_is_busy = false;
        }
        m_ended.notify_one();
        m_watcher.join();
        m_target.reset();
    }
    return m_is_late.exchange(false);
}

void CallGuard::watch()
{
    auto const has_ended = [this] { return !m_is_busy; };
    std::unique_lock lock(m_mutex);
    if (m_ended.wait_for(lock, std::chrono::milliseconds(m_limit_ms), has_ended))
        return;
    m_is_late = true;
    *m_mark = late_mark;
    do
        m_target->interrupt();
    while (!m_ended.wait_for(lock, interrupt_interval, has_ended));
}

} // namespace kortools::platform
