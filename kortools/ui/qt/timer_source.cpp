// SPDX-License-Identifier: MIT
#include "kortools/ui/qt/timer_source.h"

#include "kortools/ui/qt/messages.h"
#include "kortools/ui/qt/surface.h"

#include <QTimerEvent>
#include <QWidget>

#include <algorithm>
#include <climits>

namespace kortools::ui::qt {

TimerSource::TimerSource(QWidget &widget, std::weak_ptr<Surface> surface)
    : QObject(&widget)
    , m_surface(std::move(surface))
{
}

void TimerSource::start(unsigned int id, unsigned int milliseconds)
{
    stop(id);
    m_timers[id] = startTimer(static_cast<int>(std::clamp(milliseconds, 1U, unsigned(INT_MAX))));
}

void TimerSource::stop(unsigned int id)
{
    auto const found = m_timers.find(id);
    if (found == m_timers.end())
        return;
    killTimer(found->second);
    m_timers.erase(found);
}

void TimerSource::retire()
{
    m_surface.reset();
    for (auto const &[id, timer] : m_timers)
        killTimer(timer);
    m_timers.clear();
    deleteLater();
}

void TimerSource::timerEvent(QTimerEvent *event)
{
    auto const found = std::ranges::find(
        m_timers, event->timerId(), [](auto const &timer) { return timer.second; });
    auto const surface = m_surface.lock();
    if (found == m_timers.end() || !surface)
        return;
    unsigned int const id = found->first;
    report_timer(static_cast<QWidget const &>(*parent()), id);
    surface->tell([id](WindowHandler &handler) { handler.OnTimer(id); });
}

} // namespace kortools::ui::qt
