// SPDX-License-Identifier: MIT
// Surface: the services of a window on any widget. WindowOn (window_on.h) gives it the face of the
// library's interfaces, for views, host's widgets and edit fields alike.
#pragma once

#include "kortools/ui/qt/rubber_band.h"
#include "kortools/ui/qt/window_thread.h"
#include "kortools/ui/window_handler.h"

#include <QPointer>

#include <functional>
#include <memory>
#include <utility>

class QAbstractScrollArea;
class QScrollBar;

namespace kortools::ui::qt {

class TimerSource;

class Surface : public std::enable_shared_from_this<Surface> {
public:
    // A widget that is a scroll area, or its viewport, has that one's bars. Handler may be null.
    Surface(QWidget &widget, WindowHandler *handler);
    Surface(Surface const &) = delete;
    Surface &operator=(Surface const &) = delete;
    ~Surface();

    QWidget *get_widget() const { return m_widget; } // the viewport of a scroll area

    // --- The handler

    template <class Call> void tell(Call &&call)
    {
        ask([&](WindowHandler &handler) { return call(handler), true; }, true);
    }

    // What the handler answers, or `otherwise` without one or when it throws. The surface must be
    // held by the caller.
    template <class Call, class Result> Result ask(Call &&call, Result otherwise)
    {
        WindowHandler *const handler = m_handler;
        if (!handler)
            return otherwise;
        ++m_depth;
        Result const result
            = WindowThread::get().calls.ask([&] { return call(*handler); }, otherwise);
        --m_depth;
        return result;
    }
    void set_handler(WindowHandler *handler) { m_handler = handler; }
    bool is_in_handler() const { return m_depth != 0; } // so that its widget must not go now

    // --- Scroll bars

    QScrollBar *get_bar(ScrollBar bar) const; // null without a scroll area
    bool is_setting_bars() const { return m_is_setting_bars; }
    // Instead of the one that suits every widget. It lives as long as the surface.
    void set_rubber_band(std::unique_ptr<RubberBand> band) { m_band = std::move(band); }

    void set_layout_observer(std::function<void()> observer)
    {
        m_after_layout = std::move(observer);
    }

    // --- CWnd

    CXSize get_client_size() const;
    int get_text_width(wchar_t const *text, int length) const;
    bool has_scroll_bar(ScrollBar bar) const;
    CXSize get_scroll_bar_size() const;
    void set_scroll_info(ScrollBar bar, ScrollRange const &range);
    void set_redraw(bool redraw);
    void invalidate();
    void invalidate(CXRect const &rect);
    void update();
    void show_rubber_band(CXRect const &rect);
    void hide_rubber_band();
    CXPoint get_cursor_pos() const;
    void set_cursor(CursorShape shape);
    void set_capture();
    void release_capture();
    bool wait_for_input(InputEvent &event);
    void set_timer(unsigned int id, unsigned int milliseconds);
    void kill_timer(unsigned int id);
    int track_popup_menu(CXPoint const &position, CXArray<CXTString<wchar_t>> const &entries);

private:
    void note_invalid(QRect const &rect);

    QPointer<QWidget> m_widget;
    QPointer<QAbstractScrollArea> m_area;
    WindowHandler *m_handler;
    int m_depth = 0; // calls of the handler that have not returned
    bool m_is_setting_bars = false;
    std::function<void()> m_after_layout;
    std::unique_ptr<RubberBand> m_band;
    QPointer<TimerSource> m_timers; // the widget's child
};

// Served by what paints: shows at once what is invalid in a window that is on the screen, or would
// be if the window system had been asked.
void update_now(QWidget &widget);

} // namespace kortools::ui::qt
