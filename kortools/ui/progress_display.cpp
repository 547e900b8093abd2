// SPDX-License-Identifier: MIT
#include "kortools/ui/progress_display.h"

#include "kortools/platform/time_format.h"
#include "kortools/text/string_table.h"
#include "kortools/ui/back_end.h"
#include "kortools/ui/progress_dlg.h"

#include <utility>

namespace kortools::ui {
namespace {

constexpr unsigned int ok_text = 5295;
constexpr unsigned int elapsed_text = 5520;
constexpr unsigned int timer_period = 500; // milliseconds, as are the next two
constexpr long long error_time = 2000;
constexpr long long end_message_time = 2000;
constexpr int ok_button_width = 100; // pixels

// Minutes and seconds; whole hours are not shown.
CXTString<wchar_t> format_elapsed(long long milliseconds)
{
    long long const seconds = milliseconds / 1000;
    platform::TimeToFormat time {};
    time.seconds = seconds;
    time.is_utc = true;
    time.fields.tm_min = static_cast<int>(seconds / 60 % 60);
    time.fields.tm_sec = static_cast<int>(seconds % 60);
    wchar_t text[80];
    int const length
        = platform::format_time(text, std::size(text), xLoadString(elapsed_text), time);
    return { text, length > 0 ? length : 0 };
}

} // namespace

void ProgressDisplay::open(std::unique_ptr<ProgressWindow> window, long long now)
{
    m_window = std::move(window);
    m_error_shown = never;
    m_end_shown = never;
    m_state.has_window = true;
    for (unsigned int const flag : { pendingTitle, pendingCancelText, pendingStatus, pendingMode })
        show_text(flag, now);
    for (int bar = 0; bar < 2; ++bar) {
        m_window->SetBarStep(bar, m_state.bars[static_cast<std::size_t>(bar)].get_step());
        set_marquee(bar, is_marquee(bar));
    }
    show_pos(0, now);
    m_window->SetTimer(timer_id, timer_period);
    m_window->Show(true);
}

void ProgressDisplay::close()
{
    if (is_open()) {
        m_state.has_window = false;
        m_state.take(pendingEnd | pendingClose);
        m_window->KillTimer(timer_id);
        m_window->SetTaskbarPos(-1);
        m_window->Show(false);
    }
    if (m_handler_depth == 0)
        m_window.reset();
}

void ProgressDisplay::pump()
{
    BackEnd *const back_end = get_back_end();
    if (m_is_pumping || !is_open() || back_end == nullptr)
        return;
    struct Reset {
        bool &flag;
        ~Reset() { flag = false; }
    } const reset { m_is_pumping };
    m_is_pumping = true;
    back_end->PumpMessages();
}

// After Cancel nothing more is shown, but the dialog still ends when it was told to.
void ProgressDisplay::tick(long long now)
{
    if (is_open() && !m_state.is_cancelled) {
        show_texts(now);
        show_bars(now);
        pump();
    }
    if (is_open())
        end(now);
}

void ProgressDisplay::show_texts(long long now)
{
    auto const show_pending = [&](unsigned int flag) {
        if (m_state.take(flag))
            show_text(flag, now);
    };
    show_pending(pendingError);
    if (m_error_shown == never || now - m_error_shown >= error_time)
        show_pending(pendingStatus);
    show_pending(pendingCancelText);
    show_pending(pendingTitle);
    show_pending(pendingMode);
}

void ProgressDisplay::show_text(unsigned int flag, long long now)
{
    if (!is_open())
        return;
    switch (flag) {
    case pendingError:
        return show_error(now);
    case pendingStatus:
        return show_status();
    case pendingCancelText:
        return m_window->SetCancelText(m_state.cancel_text.get());
    case pendingTitle:
        return m_window->SetTitle(m_state.title.get());
    default:
        return show_buttons();
    }
}

void ProgressDisplay::show_error(long long now)
{
    m_error_shown = now;
    m_window->SetStatus(m_state.error.get());
    if (!m_window->IsVisible())
        m_window->Show(true);
}

void ProgressDisplay::show_status()
{
    m_error_shown = never;
    m_window->SetStatus(m_state.status.get());
}

void ProgressDisplay::show_buttons()
{
    if (m_end_shown == never)
        m_window->ShowCancel((m_state.mode & progressHideCancel) == 0);
}

void ProgressDisplay::show_bars(long long now)
{
    for (int bar = 0; bar < 2; ++bar)
        if (m_state.bars[static_cast<std::size_t>(bar)].take_change())
            show_pos(bar, now);
}

void ProgressDisplay::end(long long now)
{
    if (m_state.is_raised(pendingClose))
        return close();
    if (!m_state.is_raised(pendingEnd))
        return;
    CXTString<wchar_t> const message = m_state.end_message.get();
    if (!message.IsEmpty() && !m_state.is_cancelled)
        show_end_message(message, now);
    else if (m_end_shown == never || now - m_end_shown >= end_message_time)
        close();
}

void ProgressDisplay::show_end_message(CXTString<wchar_t> const &message, long long now)
{
    m_state.end_message.set(L"");
    m_state.take(pendingStatus); // is older
    m_end_shown = now;
    m_error_shown = never;
    m_window->SetStatus(message);
    m_window->ShowOkButton(xLoadString(ok_text), ok_button_width);
    m_window->ShowCancel(false);
    m_window->Show(true);
}

void ProgressDisplay::set_marquee(int bar, bool on)
{
    m_is_marquee.at(static_cast<std::size_t>(bar)) = on;
    if (!is_open())
        return;
    m_window->SetMarquee(bar, on);
    if (on)
        m_window->ShowBar(bar, true);
}

void ProgressDisplay::show_pos(int bar, long long now)
{
    m_window->SetBarPos(bar, m_state.bars[static_cast<std::size_t>(bar)].get_percent());
    show_label(bar, now);
}

void ProgressDisplay::show_label(int bar, long long now)
{
    int const percent = m_window->GetBarPos(bar);
    CXTString<wchar_t> label;
    label.Format(L"%d %%", percent);
    unsigned int const mode = m_state.mode;
    bool const is_left_out = bar != 0 && (mode & progressElapsedMainBar) != 0;
    if ((mode & progressElapsed) != 0 && !is_left_out) {
        label += L" - ";
        label += format_elapsed(now - m_state.bars[static_cast<std::size_t>(bar)].get_start());
    }
    m_window->SetBarText(bar, label);
    m_window->ShowBar(bar, true);
    if (bar == 0)
        m_window->SetTaskbarPos(percent);
}

} // namespace kortools::ui
