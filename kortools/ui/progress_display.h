// SPDX-License-Identifier: MIT
// The window of a progress dialog and what is shown in it. Of the window's thread only; times are
// in milliseconds of one clock.
#pragma once

#include "kortools/ui/progress_state.h"
#include "kortools/ui/progress_window.h"

#include <array>
#include <memory>

namespace kortools::ui {

class ProgressDisplay {
public:
    static constexpr unsigned int timer_id = 4896;

    // Within a call of the window's handler, during which the window is not deleted.
    class HandlerCall {
    public:
        explicit HandlerCall(ProgressDisplay &display)
            : m_display(display)
        {
            ++m_display.m_handler_depth;
        }
        HandlerCall(HandlerCall const &) = delete;
        HandlerCall &operator=(HandlerCall const &) = delete;
        ~HandlerCall() { --m_display.m_handler_depth; }

    private:
        ProgressDisplay &m_display;
    };

    explicit ProgressDisplay(ProgressState &state)
        : m_state(state)
    {
    }

    // Shows everything that the state has, and starts the timer.
    void open(std::unique_ptr<ProgressWindow> window, long long now);
    bool can_open() const { return !is_open() && m_handler_depth == 0; }
    bool is_open() const { return m_state.has_window; }
    ProgressWindow *get_window() const { return is_open() ? m_window.get() : nullptr; }

    // Hides the window and deletes it, as soon as none of its handlers is being called.
    void close();

    // Serves the events that wait, but not from within itself: an event's handler that reports
    // progress would nest ever deeper.
    void pump();

    void tick(long long now);

    // What a flag stands for, if there is a window.
    void show_text(unsigned int flag, long long now);
    void set_marquee(int bar, bool on);
    bool is_marquee(int bar) const { return m_is_marquee.at(static_cast<std::size_t>(bar)); }

    // The bar's control, and its label from the control.
    void show_pos(int bar, long long now);
    void show_label(int bar, long long now);

private:
    void show_texts(long long now);
    void show_error(long long now);
    void show_status();
    void show_buttons();
    void show_bars(long long now);
    void end(long long now);
    void show_end_message(CXTString<wchar_t> const &message, long long now);

    static constexpr long long never = -1;

    ProgressState &m_state;
    std::unique_ptr<ProgressWindow> m_window; // closed, but not deleted yet, unless has_window
    int m_handler_depth = 0;
    bool m_is_pumping = false;
    std::array<bool, 2> m_is_marquee {};
    long long m_error_shown = never; // since when; never when no error is being shown
    long long m_end_shown = never;   // the last message
};

} // namespace kortools::ui
