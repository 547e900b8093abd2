// SPDX-License-Identifier: MIT
// ViewWindow: the view of a frame, a child window that paints through a Surface.
#pragma once

#include "kortools/ui/back_end.h"
#include "kortools/ui/win32/surface.h"
#include "kortools/ui/win32/window_services.h"

namespace kortools::ui::win32 {

// The window itself; the view makes it before its services.
class ViewHandle {
public:
    // Until the view is there, and again at its end, the system's own answers.
    virtual LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam);

    HWND m_handle = nullptr;

protected:
    explicit ViewHandle(HWND parent);
    ~ViewHandle();
};

class ViewWindow final : private ViewHandle, public NativeWindow<CScrollView> {
public:
    ViewWindow(HWND parent, WindowHandler &handler, ViewKind kind);
    ~ViewWindow() override;

    CScrollView *GetScrollView() override { return m_is_scrolling ? this : nullptr; }
    void SetScrollInfo(ScrollBar bar, ScrollRange const &range) override;
    void SetScrollSizes(CXSize const &total, CXSize const &step) override;
    void ScrollToPosition(CXPoint const &position) override;
    void SetRedraw(bool redraw) override;
    void ShowRubberBand(CXRect const &rect) override;
    void HideRubberBand() override { ShowRubberBand({}); }
    void SetTimer(unsigned int id, unsigned int milliseconds) override
    {
        m_timers.Set(id, milliseconds);
    }
    void KillTimer(unsigned int id) override { m_timers.Kill(id); }

    void EndTracking() { m_services.EndTracking(); }
    Picture Capture();
    CXSize GetOuterSize() const; // with the scroll bars

private:
    LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
    bool OnMouse(UINT message, WPARAM wparam, LPARAM lparam);
    bool OnSetCursor();
    void OnWheel(WPARAM wparam, LPARAM lparam);
    void OnPaint();
    void OnSize();
    void OnScroll(ScrollBar bar, int request);
    int GetStep(ScrollBar bar, int page) const;
    void LayOutScrollBars();
    void ReadScrollPosition();
    void Present(HDC target, CXRect const &area);

    WindowHandler &m_handler;
    bool m_is_scrolling;
    Surface m_surface;
    Timers m_timers;
    CXRect m_band; // the rubber band; empty when there is none
    bool m_redraw = true;
    DrawingObject<HRGN> m_missed; // became invalid while nothing was to be redrawn
    CXSize m_total;               // of a scrolling view
    CXPoint m_position;           // of the scroll bars, as the program knows it
    CXSize m_step { 10, 10 };     // pixels
    bool m_is_laying_out = false;
    std::optional<CXPoint> m_last_move; // the system repeats moves when windows change
    int m_wheel = 0;                    // the part of a step that has not been told
};

} // namespace kortools::ui::win32
