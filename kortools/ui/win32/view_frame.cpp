// SPDX-License-Identifier: MIT
#include "kortools/ui/win32/view_frame.h"

#include <algorithm>

namespace kortools::ui::win32 {
namespace {

constexpr CXSize first_size { 640, 480 }; // in pixels of a screen of 96 per inch
constexpr int most_pixels = 32000;        // a window's side; the screen is not the limit

CXSize scale_to_screen(CXSize const &size)
{
    WindowDC const screen(nullptr);
    int const dpi = GetDeviceCaps(screen.get(), LOGPIXELSX);
    return { MulDiv(size.cx, dpi, 96), MulDiv(size.cy, dpi, 96) };
}

} // namespace

FrameWindow::FrameWindow(WindowHandler &handler, ViewKind kind, wchar_t const *title)
    : m_handler(handler)
{
    create_window(*this, L"KorTools.Frame",
        { .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
            .title = title,
            .size = scale_to_screen(first_size) });
    try {
        m_status_line = create_control(m_handle, STATUSCLASSNAMEW, WS_VISIBLE | SBARS_SIZEGRIP);
        m_view = std::make_unique<ViewWindow>(m_handle, handler, kind);
    } catch (...) {
        DestroyWindow(m_handle);
        throw;
    }
    LayOut();
}

FrameWindow::~FrameWindow()
{
    SetWindowLongPtrW(m_handle, GWLP_USERDATA, 0);
    m_view.reset();
    DestroyWindow(m_handle);
}

void FrameWindow::Show(bool show)
{
    if (!show)
        m_view->EndTracking();
    ShowWindow(m_handle, show ? SW_SHOW : SW_HIDE);
}

void FrameWindow::SetStatus(wchar_t const *text)
{
    SendMessageW(m_status_line, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(text));
}

void FrameWindow::SetViewSize(CXSize const &size)
{
    RECT window {};
    GetWindowRect(m_handle, &window);
    CXSize const frame = CXRect(window).Size() + size - m_view->GetOuterSize();
    SetWindowPos(
        m_handle, nullptr, 0, 0, frame.cx, frame.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// The status line finds its place by itself.
void FrameWindow::LayOut()
{
    SendMessageW(m_status_line, WM_SIZE, 0, 0);
    RECT client {};
    RECT status {};
    GetClientRect(m_handle, &client);
    GetWindowRect(m_status_line, &status);
    int const height = client.bottom - (status.bottom - status.top);
    SetWindowPos(m_view->GetHandle(), nullptr, 0, 0, client.right, std::max(height, 0),
        SWP_NOZORDER | SWP_NOACTIVATE);
}

// What the screen shows of the window, so nothing must lie above it.
Picture FrameWindow::CaptureFrame()
{
    RECT window {};
    GetWindowRect(m_handle, &window);
    Surface copy;
    copy.Resize(CXRect(window).Size());
    HDC const dc = GetWindowDC(m_handle);
    copy.CopyFrom(dc);
    ReleaseDC(m_handle, dc);
    return copy.Read();
}

void FrameWindow::OnClose()
{
    HWND const window = m_handle; // the handler may delete this
    bool const is_closed = get_event_loop().calls.ask([&] { return m_handler.OnClose(); }, false);
    if (is_closed && GetWindowLongPtrW(window, GWLP_USERDATA) != 0)
        Show(false);
}

LRESULT FrameWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam)
{
    if (!m_view)
        return DefWindowProcW(m_handle, message, wparam, lparam);
    switch (message) {
    case WM_SIZE:
        if (wparam != SIZE_MINIMIZED)
            LayOut();
        return 0;
    case WM_SETFOCUS:
        SetFocus(m_view->GetHandle());
        return 0;
    case WM_CLOSE:
        OnClose();
        return 0;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO *>(lparam)->ptMaxTrackSize = { most_pixels, most_pixels };
        return 0;
    case WM_DPICHANGED: {
        CXRect const wanted = *reinterpret_cast<RECT const *>(lparam);
        SetWindowPos(m_handle, nullptr, wanted.left, wanted.top, wanted.Width(), wanted.Height(),
            SWP_NOZORDER | SWP_NOACTIVATE);
        return 0;
    }
    default:
        return DefWindowProcW(m_handle, message, wparam, lparam);
    }
}

} // namespace kortools::ui::win32
