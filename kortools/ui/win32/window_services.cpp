// SPDX-License-Identifier: MIT
#include "kortools/ui/win32/window_services.h"

#include <algorithm>
#include <utility>

namespace kortools::ui::win32 {
namespace {

int native_bar(ScrollBar bar)
{
    return bar == ScrollBar::Horizontal ? SB_HORZ : SB_VERT;
}

std::optional<InputEvent::Kind> kind_of(UINT message)
{
    switch (message) {
    case WM_MOUSEMOVE:
        return InputEvent::Kind::MouseMove;
    case WM_LBUTTONUP:
        return InputEvent::Kind::LeftButtonUp;
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
        return InputEvent::Kind::RightButtonDown;
    case WM_KEYDOWN:
        return InputEvent::Kind::KeyDown;
    case WM_CAPTURECHANGED:
        return InputEvent::Kind::CaptureLost;
    default:
        return std::nullopt;
    }
}

class Menu {
public:
    Menu()
        : m_handle(check(CreatePopupMenu()))
    {
    }
    Menu(Menu const &) = delete;
    Menu &operator=(Menu const &) = delete;
    ~Menu() { DestroyMenu(m_handle); }

    void Add(UINT_PTR id, wchar_t const *text)
    {
        check(AppendMenuW(m_handle, *text != 0 ? MF_STRING : MF_SEPARATOR, id, text));
    }
    HMENU get() const { return m_handle; }

private:
    HMENU m_handle;
};

} // namespace

// --- Timers. The system's numbers begin at 1.

void Timers::Set(unsigned int id, unsigned int milliseconds)
{
    check(::SetTimer(m_window, UINT_PTR(id) + 1, milliseconds, nullptr));
    m_ids.insert(id);
}

void Timers::Kill(unsigned int id)
{
    if (m_ids.erase(id) == 1)
        ::KillTimer(m_window, UINT_PTR(id) + 1);
}

std::optional<unsigned int> Timers::Find(WPARAM native_id) const
{
    auto const id = static_cast<unsigned int>(native_id - 1);
    return m_ids.contains(id) ? std::optional(id) : std::nullopt;
}

// --- WindowServices

WindowServices::WindowServices(HWND window)
    : m_window(window)
{
    check(SetWindowSubclass(
        window, OnMessage, reinterpret_cast<UINT_PTR>(this), reinterpret_cast<DWORD_PTR>(this)));
}

WindowServices::~WindowServices()
{
    RemoveWindowSubclass(m_window, OnMessage, reinterpret_cast<UINT_PTR>(this));
    EndTracking();
}

// Wakes who waits.
void WindowServices::EndTracking()
{
    m_tracking->is_window_gone = true;
    m_tracking->is_captured = false;
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
    m_tracking = std::make_shared<Tracking>();
}

LRESULT CALLBACK WindowServices::OnMessage(
    HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR, DWORD_PTR object)
{
    auto &services = *reinterpret_cast<WindowServices *>(object);
    bool const is_taken = services.TakeInput(message, wparam, lparam);
    if (message == WM_NCDESTROY || (message == WM_SHOWWINDOW && !wparam))
        services.EndTracking();
    return is_taken ? 0 : DefSubclassProc(window, message, wparam, lparam);
}

// True when a message is for who follows the mouse.
bool WindowServices::TakeInput(UINT message, WPARAM wparam, LPARAM lparam)
{
    auto const kind = kind_of(message);
    if (!kind || !m_tracking->is_captured)
        return false;
    if (*kind == InputEvent::Kind::CaptureLost) {
        m_tracking->is_captured = false;
        PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0); // it was sent, which wakes nobody
    }
    if (!m_tracking->is_followed)
        return false;
    bool const is_key = *kind == InputEvent::Kind::KeyDown;
    bool const has_place = !is_key && *kind != InputEvent::Kind::CaptureLost;
    InputEvent const event { *kind, has_place ? get_point(lparam) : GetCursorPos(),
        is_key ? static_cast<unsigned int>(wparam) : 0 };
    bool const is_new
        = !has_place || std::exchange(m_tracking->last_position, event.position) != event.position;
    if (is_new || *kind != InputEvent::Kind::MouseMove)
        get_event_loop().calls.call([&] { m_tracking->events.push_back(event); });
    return true;
}

CXSize WindowServices::GetClientSize() const
{
    RECT client {};
    GetClientRect(m_window, &client);
    return { int(client.right), int(client.bottom) };
}

int WindowServices::GetTextWidth(wchar_t const *text, int length) const
{
    WindowDC const dc(m_window);
    auto const own = reinterpret_cast<HFONT>(SendMessageW(m_window, WM_GETFONT, 0, 0));
    HGDIOBJ const before = SelectObject(dc.get(), own ? own : get_font());
    SIZE size {};
    GetTextExtentPoint32W(dc.get(), text, length, &size);
    SelectObject(dc.get(), before);
    return size.cx;
}

bool WindowServices::HasScrollBar(ScrollBar bar) const
{
    LONG_PTR const style = bar == ScrollBar::Horizontal ? WS_HSCROLL : WS_VSCROLL;
    return (GetWindowLongPtrW(m_window, GWL_STYLE) & style) != 0;
}

// The system takes the last position, and hides the bar by itself.
void WindowServices::SetScrollInfo(ScrollBar bar, ScrollRange const &range)
{
    SCROLLINFO info {};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = std::max(range.size - 1, 0);
    info.nPage = static_cast<UINT>(std::max(range.page, 1));
    info.nPos = range.position;
    ::SetScrollInfo(m_window, native_bar(bar), &info, TRUE);
}

void WindowServices::UpdateWindow()
{
    ::UpdateWindow(m_window);
    get_event_loop().rethrow();
}

CXPoint WindowServices::GetCursorPos() const
{
    POINT point {};
    ::GetCursorPos(&point);
    ScreenToClient(m_window, &point);
    return point;
}

void WindowServices::SetCapture()
{
    ::SetCapture(m_window);
    *m_tracking = {};
    m_tracking->is_captured = true;
}

void WindowServices::ReleaseCapture()
{
    *m_tracking = {};
    if (GetCapture() == m_window)
        ::ReleaseCapture();
}

bool WindowServices::WaitForInput(InputEvent &event)
{
    std::shared_ptr<Tracking> const tracking = m_tracking; // from here on without this object
    tracking->is_followed = tracking->is_captured;
    EventLoop &loop = get_event_loop();
    while (tracking->events.empty() && tracking->is_captured && loop.serve_next()) { }
    if (tracking->is_window_gone || tracking->events.empty() || loop.is_quitting())
        return false;
    event = tracking->events.front();
    tracking->events.pop_front();
    return true;
}

int WindowServices::TrackPopupMenu(
    CXPoint const &position, CXArray<CXTString<wchar_t>> const &entries)
{
    Menu menu;
    for (int i = 0; i < entries.GetSize(); ++i)
        menu.Add(UINT_PTR(i) + 1, entries[i]);
    POINT point = position;
    ClientToScreen(m_window, &point);
    int const choice = TrackPopupMenuEx(menu.get(),
        TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RIGHTBUTTON | TPM_RETURNCMD | TPM_NONOTIFY, point.x,
        point.y, m_window, nullptr);
    get_event_loop().rethrow();
    return choice - 1;
}

CXPoint get_point(LPARAM lparam)
{
    return { static_cast<short>(LOWORD(lparam)), static_cast<short>(HIWORD(lparam)) };
}

void set_cursor(CursorShape shape)
{
    static wchar_t const *const natives[] // in the order of the shapes
        = { IDC_ARROW, IDC_SIZENWSE, IDC_SIZENESW, IDC_SIZEWE, IDC_SIZENS, IDC_SIZEALL };
    ::SetCursor(check(LoadCursorW(nullptr, natives[static_cast<int>(shape)])));
}

CXSize get_scroll_bar_size()
{
    return { GetSystemMetrics(SM_CXVSCROLL), GetSystemMetrics(SM_CYHSCROLL) };
}

HWND get_handle(CWnd *window)
{
    auto const *const ours = dynamic_cast<HasHandle const *>(window);
    return ours ? ours->GetHandle() : nullptr;
}

} // namespace kortools::ui::win32
