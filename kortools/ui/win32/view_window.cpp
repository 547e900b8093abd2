// SPDX-License-Identifier: MIT
#include "kortools/ui/win32/view_window.h"

#include <algorithm>
#include <utility>
#include <windowsx.h>

namespace kortools::ui::win32 {
namespace {

// Our own work within the system's frames, done whether or not a handler has thrown. False when it
// throws.
template <class Work> bool keep_exception(Work const &work)
{
    try {
        work();
        return true;
    } catch (...) {
        get_event_loop().calls.call([] { throw; });
        return false;
    }
}

} // namespace

ViewHandle::ViewHandle(HWND parent)
{
    // The style has no scroll bars: they are there when they are needed.
    create_window(*this, L"KorTools.View",
        { .style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, .parent = parent });
}

ViewHandle::~ViewHandle()
{
    DestroyWindow(m_handle);
}

LRESULT ViewHandle::OnMessage(UINT message, WPARAM wparam, LPARAM lparam)
{
    return DefWindowProcW(m_handle, message, wparam, lparam);
}

ViewWindow::ViewWindow(HWND parent, WindowHandler &handler, ViewKind kind)
    : ViewHandle(parent)
    , NativeWindow(m_handle)
    , m_handler(handler)
    , m_is_scrolling(kind == ViewKind::Scrolling)
    , m_timers(m_handle)
    , m_missed(check(CreateRectRgn(0, 0, 0, 0)))
{
    m_surface.Resize(GetClientSize());
}

// Messages of its end find nobody.
ViewWindow::~ViewWindow()
{
    SetWindowLongPtrW(m_handle, GWLP_USERDATA, 0);
}

// --- Scroll bars

void ViewWindow::SetScrollInfo(ScrollBar bar, ScrollRange const &range)
{
    m_services.SetScrollInfo(bar, range);
    ReadScrollPosition();
}

void ViewWindow::ReadScrollPosition()
{
    m_position = { GetScrollPos(m_handle, SB_HORZ), GetScrollPos(m_handle, SB_VERT) };
}

void ViewWindow::SetScrollSizes(CXSize const &total, CXSize const &step)
{
    m_total = total;
    m_step = step;
    LayOutScrollBars();
}

// Each bar takes room from the other's page. The system sends the new size from within.
void ViewWindow::LayOutScrollBars()
{
    if (!m_is_scrolling || std::exchange(m_is_laying_out, true))
        return;
    CXSize const outer = GetOuterSize();
    CXSize const bars = GetScrollBarSize();
    bool const is_high = m_total.cy > outer.cy;
    bool const is_wide = m_total.cx > outer.cx - (is_high ? bars.cx : 0);
    CXSize const page(
        outer.cx - (is_high || (is_wide && m_total.cy > outer.cy - bars.cy) ? bars.cx : 0),
        outer.cy - (is_wide ? bars.cy : 0));
    m_services.SetScrollInfo(ScrollBar::Horizontal, { m_total.cx, page.cx, m_position.x });
    m_services.SetScrollInfo(ScrollBar::Vertical, { m_total.cy, page.cy, m_position.y });
    ReadScrollPosition();
    m_is_laying_out = false;
    OnSize();
}

void ViewWindow::ScrollToPosition(CXPoint const &position)
{
    SetScrollPos(m_handle, SB_HORZ, position.x, TRUE);
    SetScrollPos(m_handle, SB_VERT, position.y, TRUE);
    ReadScrollPosition();
    Invalidate(true);
}

int ViewWindow::GetStep(ScrollBar bar, int page) const
{
    int const step = bar == ScrollBar::Horizontal ? m_step.cx : m_step.cy;
    return m_is_scrolling && step > 0 ? step : std::max(page / 10, 1);
}

void ViewWindow::OnScroll(ScrollBar bar, int request)
{
    int const native = bar == ScrollBar::Horizontal ? SB_HORZ : SB_VERT;
    SCROLLINFO info {};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(m_handle, native, &info);
    int &known = bar == ScrollBar::Horizontal ? m_position.x : m_position.y;
    int const page = int(info.nPage);
    switch (request) {
    case SB_LINEUP:
        info.nPos -= GetStep(bar, page);
        break;
    case SB_LINEDOWN:
        info.nPos += GetStep(bar, page);
        break;
    case SB_PAGEUP:
        info.nPos -= page;
        break;
    case SB_PAGEDOWN:
        info.nPos += page;
        break;
    case SB_TOP:
        info.nPos = info.nMin;
        break;
    case SB_BOTTOM:
        info.nPos = info.nMax;
        break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        info.nPos = info.nTrackPos; // the message holds 16 bits of it
        break;
    default:
        return;
    }
    info.fMask = SIF_POS;
    int const position = ::SetScrollInfo(m_handle, native, &info, TRUE);
    if (std::exchange(known, position) == position)
        return;
    if (m_is_scrolling)
        Invalidate(true);
    get_event_loop().calls.call([&] { m_handler.OnScroll(bar, position); });
}

// --- Painting

void ViewWindow::SetRedraw(bool redraw)
{
    if (std::exchange(m_redraw, redraw) || !redraw)
        return;
    InvalidateRgn(m_handle, m_missed.get(), FALSE);
    SetRectRgn(m_missed.get(), 0, 0, 0, 0);
}

void ViewWindow::OnPaint()
{
    EventLoop &loop = get_event_loop();
    if (loop.calls.has_exception()) {
        loop.paint_later(m_handle);
        ValidateRect(m_handle, nullptr);
        return;
    }
    if (!m_redraw) {
        DrawingObject<HRGN> const region(CreateRectRgn(0, 0, 0, 0));
        GetUpdateRgn(m_handle, region.get(), FALSE);
        CombineRgn(m_missed.get(), m_missed.get(), region.get(), RGN_OR);
        ValidateRect(m_handle, nullptr);
        return;
    }
    PAINTSTRUCT paint {};
    HDC const dc = BeginPaint(m_handle, &paint);
    CXRect const invalid = paint.rcPaint;
    if (!invalid.IsRectEmpty()) {
        m_surface.SetClip(invalid);
        loop.calls.call([&] { m_handler.OnPaint(m_surface, invalid); });
        keep_exception([&] { Present(dc, invalid); }); // also of what the handler has left
    }
    EndPaint(m_handle, &paint);
}

void ViewWindow::Present(HDC target, CXRect const &area)
{
    Surface::Overlay const overlay(m_surface, m_band);
    m_surface.CopyTo(target, area);
}

// Nothing but the sides of the two frames is copied to the window.
void ViewWindow::ShowRubberBand(CXRect const &rect)
{
    CXRect const before = std::exchange(m_band, rect);
    if (before == rect)
        return;
    if (!m_redraw) {
        InvalidateRect(before, false);
        InvalidateRect(m_band, false);
        return;
    }
    WindowDC const dc(m_handle);
    Surface::Overlay const overlay(m_surface, m_band);
    for (CXRect const &frame : { before, m_band }) {
        for (CXRect const &side : get_sides(frame))
            m_surface.CopyTo(dc.get(), side & CXRect(CXPoint(), m_surface.GetSize()));
    }
}

Picture ViewWindow::Capture()
{
    Surface::Overlay const overlay(m_surface, m_band);
    return m_surface.Read();
}

// --- Size

CXSize ViewWindow::GetOuterSize() const
{
    RECT window {};
    GetWindowRect(m_handle, &window);
    return CXRect(window).Size();
}

void ViewWindow::OnSize()
{
    CXSize const client = GetClientSize();
    if (m_is_laying_out || client == m_surface.GetSize())
        return;
    if (!keep_exception([&] { m_surface.Resize(client); }))
        return;
    Invalidate(false);
    get_event_loop().calls.call([&] { m_handler.OnSize(client); });
}

// --- Input

bool ViewWindow::OnSetCursor()
{
    CXPoint const position = GetCursorPos();
    return get_event_loop().calls.ask([&] { return m_handler.OnSetCursor(position); }, false);
}

void ViewWindow::OnWheel(WPARAM wparam, LPARAM lparam)
{
    POINT position = get_point(lparam); // on the screen
    ScreenToClient(m_handle, &position);
    m_wheel += GET_WHEEL_DELTA_WPARAM(wparam);
    int const steps = m_wheel / WHEEL_DELTA;
    m_wheel %= WHEEL_DELTA;
    if (steps != 0)
        get_event_loop().calls.call([&] { m_handler.OnMouseWheel(CXPoint(position), steps); });
}

// False when a message is for the system.
bool ViewWindow::OnMouse(UINT message, WPARAM wparam, LPARAM lparam)
{
    HandlerCalls &calls = get_event_loop().calls;
    CXPoint const position = get_point(lparam);
    switch (message) {
    case WM_MOUSEMOVE:
        if (std::exchange(m_last_move, position) != position)
            calls.call([&] { m_handler.OnMouseMove(position); });
        return true;
    case WM_LBUTTONDOWN:
        m_last_move.reset();
        SetFocus(m_handle);
        calls.call([&] { m_handler.OnLeftButtonDown(position); });
        return true;
    case WM_LBUTTONUP:
        calls.call([&] { m_handler.OnLeftButtonUp(position); });
        return true;
    case WM_RBUTTONDOWN:
        SetFocus(m_handle);
        calls.call([&] { m_handler.OnRightButtonDown(position); });
        return true;
    case WM_MOUSEWHEEL:
        OnWheel(wparam, lparam);
        return true;
    default:
        return false;
    }
}

LRESULT ViewWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam)
{
    HWND const window = m_handle;
    HandlerCalls &calls = get_event_loop().calls;
    switch (message) {
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        OnPaint();
        return 0;
    case WM_SIZE:
        if (m_is_scrolling)
            LayOutScrollBars();
        else
            OnSize();
        return 0;
    case WM_HSCROLL:
    case WM_VSCROLL:
        OnScroll(
            message == WM_HSCROLL ? ScrollBar::Horizontal : ScrollBar::Vertical, LOWORD(wparam));
        return 0;
    case WM_SETCURSOR:
        if (LOWORD(lparam) != HTCLIENT)
            break;
        if (!OnSetCursor())
            ::SetCursor(LoadCursorW(nullptr, IDC_ARROW));
        return 1;
    case WM_KEYDOWN: {
        auto const key = static_cast<unsigned int>(wparam);
        if (calls.ask([&] { return m_handler.OnKeyDown(key); }, false))
            return 0;
        break;
    }
    case WM_TIMER:
        if (auto const id = m_timers.Find(wparam))
            calls.call([&] { m_handler.OnTimer(*id); });
        return 0;
    default:
        if (OnMouse(message, wparam, lparam))
            return 0;
    }
    return DefWindowProcW(window, message, wparam, lparam);
}

} // namespace kortools::ui::win32
