// SPDX-License-Identifier: MIT
// WindowServices: what CWnd offers, for any window of the system, ours or the host's. And the
// template that makes a CWnd, CScrollView or CEdit of it.
//
// Handlers may delete their window, but not while it is painted: whoever calls one does not touch
// the object afterwards.
#pragma once

#include "kortools/ui/win32/event_loop.h"
#include "kortools/ui/window.h"

#include <deque>
#include <memory>
#include <optional>
#include <set>

namespace kortools::ui::win32 {

// The timers of a window, by the library's numbers.
class Timers {
public:
    explicit Timers(HWND window)
        : m_window(window)
    {
    }
    void Set(unsigned int id, unsigned int milliseconds);
    void Kill(unsigned int id);

    // The number of a WM_TIMER, or none when it was killed while the message was on its way.
    std::optional<unsigned int> Find(WPARAM native_id) const;

private:
    HWND m_window;
    std::set<unsigned int> m_ids;
};

// The captured mouse. Outlives the window where somebody waits for it.
struct Tracking {
    bool is_captured = false;
    bool is_followed = false; // somebody has waited: the mouse's events are for him
    bool is_window_gone = false;
    std::optional<CXPoint> last_position; // of the mouse; the system repeats moves
    std::deque<InputEvent> events;
};

class WindowServices {
public:
    explicit WindowServices(HWND window);
    WindowServices(WindowServices const &) = delete;
    WindowServices &operator=(WindowServices const &) = delete;
    ~WindowServices();

    HWND GetHandle() const { return m_window; }

    CXSize GetClientSize() const;
    int GetTextWidth(wchar_t const *text, int length) const;
    bool HasScrollBar(ScrollBar bar) const;
    void SetScrollInfo(ScrollBar bar, ScrollRange const &range);
    void UpdateWindow();
    CXPoint GetCursorPos() const;
    void SetCapture();
    void ReleaseCapture();
    bool WaitForInput(InputEvent &event);
    int TrackPopupMenu(CXPoint const &position, CXArray<CXTString<wchar_t>> const &entries);

    // The same for nobody who waits any more.
    void EndTracking();

private:
    static LRESULT CALLBACK OnMessage(
        HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR id, DWORD_PTR object);
    bool TakeInput(UINT message, WPARAM wparam, LPARAM lparam);

    HWND m_window;
    std::shared_ptr<Tracking> m_tracking = std::make_shared<Tracking>();
};

CXPoint get_point(LPARAM lparam); // that of a mouse message
void set_cursor(CursorShape shape);
CXSize get_scroll_bar_size();

// By which the windows of this back end are told from those of others.
class HasHandle {
public:
    virtual HWND GetHandle() const = 0;

protected:
    ~HasHandle() = default;
};

HWND get_handle(CWnd *window); // null when it is null or none of ours

// What is left out is for the kind of window: redraw switch, rubber band, timers.
template <class Interface> class NativeWindow : public Interface, public HasHandle {
public:
    explicit NativeWindow(HWND window)
        : m_services(window)
    {
    }
    HWND GetHandle() const override { return m_services.GetHandle(); }

    CXSize GetClientSize() const override { return m_services.GetClientSize(); }
    int GetTextWidth(wchar_t const *text, int length) const override
    {
        return m_services.GetTextWidth(text, length);
    }
    bool HasScrollBar(ScrollBar bar) const override { return m_services.HasScrollBar(bar); }
    CXSize GetScrollBarSize() const override { return get_scroll_bar_size(); }
    void SetScrollInfo(ScrollBar bar, ScrollRange const &range) override
    {
        m_services.SetScrollInfo(bar, range);
    }
    void Invalidate(bool erase) override { ::InvalidateRect(GetHandle(), nullptr, erase); }
    void InvalidateRect(CXRect const &rect, bool erase) override
    {
        RECT const native = rect;
        ::InvalidateRect(GetHandle(), &native, erase);
    }
    void UpdateWindow() override { m_services.UpdateWindow(); }
    CXPoint GetCursorPos() const override { return m_services.GetCursorPos(); }
    void SetCursor(CursorShape shape) override { set_cursor(shape); }
    bool IsKeyDown(unsigned int key) const override { return GetKeyState(int(key)) < 0; }
    void SetCapture() override { m_services.SetCapture(); }
    void ReleaseCapture() override { m_services.ReleaseCapture(); }
    bool WaitForInput(InputEvent &event) override { return m_services.WaitForInput(event); }
    int TrackPopupMenu(CXPoint const &position, CXArray<CXTString<wchar_t>> const &entries) override
    {
        return m_services.TrackPopupMenu(position, entries);
    }

protected:
    WindowServices m_services;
};

} // namespace kortools::ui::win32
