// SPDX-License-Identifier: MIT
#include "kortools/ui/win32/progress_window.h"

#include <algorithm>
#include <utility>

namespace kortools::ui::win32 {
namespace {

constexpr DWORD window_style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD window_extended_style = WS_EX_DLGMODALFRAME;
constexpr DWORD text_style = SS_LEFT | SS_NOPREFIX;

// In the font's own units: of a quarter of a character's width, an eighth of its height.
constexpr int inner_width = 240;
constexpr int margin = 7;
constexpr int gap = 4;
constexpr int line_height = 9;
constexpr int bar_height = 10;
constexpr int status_height = 18; // two lines
constexpr int button_width = 50;
constexpr int button_height = 14;

constexpr UINT marquee_pace_ms = 30;

} // namespace

NativeProgressWindow::NativeProgressWindow(HWND owner, ProgressWindowHandler &handler)
    : m_handler(handler)
    , m_owner(owner)
    , m_units(get_font_units())
{
    create_window(*this, L"KorTools.Progress",
        { .style = window_style,
            .extended_style = window_extended_style,
            .parent = owner,
            .background = GetSysColorBrush(COLOR_BTNFACE) });
    try {
        CreateControls();
    } catch (...) {
        DestroyWindow(m_handle);
        throw;
    }
    m_timers.emplace(m_handle);
    SetPropW(m_handle, EventLoop::dialog_property, m_handle);
    ShowBar(1, false);
}

void NativeProgressWindow::CreateControls()
{
    m_line = create_control(m_handle, WC_STATICW, text_style | SS_ENDELLIPSIS | WS_VISIBLE);
    for (Bar &bar : m_bars) {
        bar.label = create_control(m_handle, WC_STATICW, text_style | SS_ENDELLIPSIS | WS_VISIBLE);
        bar.control = create_control(m_handle, PROGRESS_CLASSW, WS_VISIBLE);
        SendMessageW(bar.control, PBM_SETRANGE32, 0, 100);
    }
    m_status = create_control(m_handle, WC_STATICW, text_style | WS_VISIBLE);
    m_cancel
        = create_control(m_handle, WC_BUTTONW, WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, IDCANCEL);
    m_ok = create_control(m_handle, WC_BUTTONW, WS_TABSTOP | BS_DEFPUSHBUTTON, IDOK);
    SetCancelText(L"Cancel");
}

NativeProgressWindow::~NativeProgressWindow()
{
    SetTaskbarPos(-1);
    SetWindowLongPtrW(m_handle, GWLP_USERDATA, 0);
    RemovePropW(m_handle, EventLoop::dialog_property);
    DestroyWindow(m_handle);
}

// --- Layout

// Returns the place of what comes below.
int NativeProgressWindow::Place(HWND control, int y, int height) const
{
    SetWindowPos(control, nullptr, scale_x(margin), scale_y(y), scale_x(inner_width),
        scale_y(height), SWP_NOZORDER | SWP_NOACTIVATE);
    return y + height;
}

void NativeProgressWindow::LayOut()
{
    int y = Place(m_line, margin, line_height) + gap;
    for (Bar const &bar : m_bars) {
        if (!bar.is_shown)
            continue;
        y = Place(bar.label, y, line_height);
        y = Place(bar.control, y, bar_height) + gap;
    }
    y = Place(m_status, y, status_height) + gap;
    int const width = scale_x(inner_width + 2 * margin);
    for (HWND const button : { m_cancel, m_ok }) {
        int const pixels = button == m_ok ? m_ok_width : scale_x(button_width);
        SetWindowPos(button, nullptr, (width - pixels) / 2, scale_y(y), pixels,
            scale_y(button_height), SWP_NOZORDER | SWP_NOACTIVATE);
    }
    RECT window { 0, 0, width, scale_y(y + button_height + margin) };
    AdjustWindowRectEx(&window, window_style, FALSE, window_extended_style);
    CXSize const size = CXRect(window).Size();
    SetWindowPos(
        m_handle, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void NativeProgressWindow::Show(bool show)
{
    if (show && !std::exchange(m_was_shown, true))
        center_window(m_handle, m_owner);
    ShowWindow(m_handle, show ? SW_SHOW : SW_HIDE);
}

// --- Contents

void NativeProgressWindow::SetTitle(wchar_t const *text)
{
    SetWindowTextW(m_handle, text);
    SetWindowTextW(m_line, text);
}

void NativeProgressWindow::ShowBar(int bar, bool show)
{
    Bar &shown = GetBar(bar);
    shown.is_shown = show;
    ShowWindow(shown.label, show ? SW_SHOWNA : SW_HIDE);
    ShowWindow(shown.control, show ? SW_SHOWNA : SW_HIDE);
    LayOut();
}

void NativeProgressWindow::SetBarPos(int bar, int percent)
{
    Bar &moved = GetBar(bar);
    moved.position = std::clamp(percent, 0, 100);
    SendMessageW(moved.control, PBM_SETPOS, WPARAM(moved.position), 0);
}

void NativeProgressWindow::StepBar(int bar)
{
    int const position = GetBar(bar).position + GetBar(bar).step;
    SetBarPos(bar, position > 100 ? 0 : position);
}

void NativeProgressWindow::SetMarquee(int bar, bool on)
{
    Bar const &changed = GetBar(bar);
    LONG_PTR const style = GetWindowLongPtrW(changed.control, GWL_STYLE);
    SendMessageW(changed.control, PBM_SETMARQUEE, FALSE, 0);
    SetWindowLongPtrW(
        changed.control, GWL_STYLE, on ? style | PBS_MARQUEE : style & ~LONG_PTR(PBS_MARQUEE));
    if (on)
        SendMessageW(changed.control, PBM_SETMARQUEE, TRUE, marquee_pace_ms);
    else
        SendMessageW(changed.control, PBM_SETPOS, WPARAM(changed.position), 0);
}

void NativeProgressWindow::ShowCancel(bool show)
{
    m_shows_cancel = show && !HasOk();
    ShowWindow(m_cancel, m_shows_cancel ? SW_SHOWNA : SW_HIDE);
}

void NativeProgressWindow::ShowOkButton(wchar_t const *text, int width)
{
    m_ok_width = std::max(width, 1);
    ShowCancel(false);
    SetWindowTextW(m_ok, text);
    LayOut();
    ShowWindow(m_ok, SW_SHOWNA);
    if (GetActiveWindow() == m_handle)
        SetFocus(m_ok);
}

// An owned window has no sign of its own.
void NativeProgressWindow::SetTaskbarPos(int percent)
{
    m_task_bar.Show(m_owner ? m_owner : m_handle, percent);
}

void NativeProgressWindow::UpdateWindow()
{
    RedrawWindow(
        m_handle, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    get_event_loop().rethrow();
}

void NativeProgressWindow::SetTimer(unsigned int id, unsigned int milliseconds)
{
    m_timers->Set(id, milliseconds);
}

void NativeProgressWindow::KillTimer(unsigned int id)
{
    m_timers->Kill(id);
}

// --- Events

// Escape and the close box press the button that there is, if it can be pressed.
void NativeProgressWindow::OnButton()
{
    HandlerCalls &calls = get_event_loop().calls;
    if (HasOk())
        calls.call([this] { m_handler.OnOk(); });
    else if (m_shows_cancel && IsWindowEnabled(m_cancel))
        calls.call([this] { m_handler.OnCancel(); });
}

LRESULT NativeProgressWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam)
{
    switch (message) {
    case WM_COMMAND:
        if (LOWORD(wparam) == IDCANCEL || (LOWORD(wparam) == IDOK && HasOk()))
            OnButton();
        return 0;
    case WM_CLOSE:
        OnButton();
        return 0;
    case WM_SETFOCUS:
        SetFocus(HasOk() ? m_ok : m_cancel);
        return 0;
    case DM_GETDEFID:
        return HasOk() ? MAKELRESULT(IDOK, DC_HASDEFID) : 0;
    case WM_TIMER:
        if (auto const id = m_timers->Find(wparam))
            get_event_loop().calls.call([&] { m_handler.OnTimer(*id); });
        return 0;
    default:
        return DefWindowProcW(m_handle, message, wparam, lparam);
    }
}

} // namespace kortools::ui::win32
