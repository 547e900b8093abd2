// SPDX-License-Identifier: MIT
// The user of the windows of Windows: posts the messages that mouse and keyboard would cause, and
// answers modal windows from a thread that looks for them.
#include "kortools/ui/win32/back_end.h"
#include "tests/ui/driver.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

#define UNICODE
#include <windows.h>

#include <commctrl.h>

#undef MessageBox // a name of the driver, too

using kortools::ui::CursorShape;
using kortools::ui::ViewFrame;

namespace kor_test {
namespace {

constexpr UINT get_menu_message = 0x1E1; // to a menu's window: its HMENU

std::wstring text_of(HWND window)
{
    std::wstring text(std::size_t(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    text.resize(std::size_t(
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    std::erase(text, L'\r');
    return text;
}

std::wstring class_of(HWND window)
{
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
}

bool is_shown(HWND window)
{
    return (GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0;
}

std::vector<HWND> children_of(HWND window)
{
    std::vector<HWND> children;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        children.push_back(child);
    return children;
}

// --- Modal windows

std::vector<HWND> find_modal_windows()
{
    std::vector<HWND> found;
    auto const look = [](HWND window, LPARAM list) -> BOOL {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        std::wstring const name = class_of(window);
        if (process == GetCurrentProcessId() && IsWindowVisible(window)
            && (name == L"#32770" || name == L"#32768" || name == L"KorTools.Text"))
            reinterpret_cast<std::vector<HWND> *>(list)->push_back(window);
        return TRUE;
    };
    EnumWindows(look, reinterpret_cast<LPARAM>(&found));
    return found;
}

HMENU menu_of(HWND window)
{
    return reinterpret_cast<HMENU>(SendMessageW(window, get_menu_message, 0, 0));
}

Modal describe_menu(HWND window)
{
    Modal modal { Modal::Kind::Menu, {}, {}, {}, 0, {} };
    HMENU const menu = menu_of(window);
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        wchar_t text[200] = {};
        GetMenuStringW(menu, UINT(i), text, 200, MF_BYPOSITION);
        modal.entries.emplace_back(text);
    }
    return modal;
}

Modal describe_dialog(HWND window)
{
    bool const is_box = class_of(window) == L"#32770";
    Modal modal { is_box ? Modal::Kind::MessageBox : Modal::Kind::Text, text_of(window), {}, {}, 0,
        {} };
    std::map<long, HWND> buttons; // by their place
    for (HWND const child : children_of(window)) {
        if (!IsWindowVisible(child))
            continue;
        RECT place {};
        GetWindowRect(child, &place);
        if (class_of(child) == L"Button")
            buttons[place.left] = child;
        else if (std::wstring const text = text_of(child); !text.empty())
            modal.text = text;
    }
    if (!is_box)
        return modal;
    for (auto const &[place, button] : buttons) {
        modal.buttons.push_back(GetDlgCtrlID(button));
        if ((GetWindowLongPtrW(button, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON)
            modal.default_button = modal.buttons.back();
    }
    return modal;
}

void choose(HWND window, int index)
{
    int downs = 0;
    HMENU const menu = menu_of(window);
    for (int i = 0; i <= index; ++i)
        downs += (GetMenuState(menu, UINT(i), MF_BYPOSITION) & MF_SEPARATOR) == 0;
    for (int i = 0; i < downs; ++i)
        PostMessageW(window, WM_KEYDOWN, VK_DOWN, 0);
    PostMessageW(window, WM_KEYDOWN, index < 0 ? VK_ESCAPE : VK_RETURN, 0);
}

// Looks for modal windows as long as answers are left.
class Answers {
public:
    Answers() = default;
    Answers(Answers const &) = delete;
    Answers &operator=(Answers const &) = delete;
    ~Answers()
    {
        m_is_ending = true;
        if (m_watcher.joinable())
            m_watcher.join();
    }
    void add(std::function<int(Modal const &)> answer)
    {
        std::lock_guard const lock(m_mutex);
        m_answers.push_back(std::move(answer));
        if (!m_watcher.joinable())
            m_watcher = std::thread([this] { watch(); });
    }

private:
    void watch()
    {
        HWND last = nullptr; // answered, but still to be seen
        while (!m_is_ending) {
            std::this_thread::sleep_for(std::chrono::milliseconds(3));
            std::vector<HWND> const windows = find_modal_windows();
            if (std::ranges::find(windows, last) != windows.end())
                continue;
            last = nullptr;
            if (auto const answer = windows.empty() ? nullptr : take())
                give(last = windows.front(), answer);
        }
    }
    std::function<int(Modal const &)> take()
    {
        std::lock_guard const lock(m_mutex);
        if (m_answers.empty())
            return {};
        auto answer = std::move(m_answers.front());
        m_answers.pop_front();
        return answer;
    }
    static void give(HWND window, std::function<int(Modal const &)> const &answer)
    {
        bool const is_menu = class_of(window) == L"#32768";
        Modal const modal = is_menu ? describe_menu(window) : describe_dialog(window);
        int const result = answer(modal);
        if (is_menu)
            choose(window, result);
        else if (result != 0 && modal.kind == Modal::Kind::MessageBox)
            PostMessageW(GetDlgItem(window, result), BM_CLICK, 0, 0);
        else
            PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    }

    std::mutex m_mutex;
    std::deque<std::function<int(Modal const &)>> m_answers;
    std::atomic<bool> m_is_ending { false };
    std::thread m_watcher;
};

// --- Mouse and keyboard

// A window whose only message is a function to be called.
HWND make_caller()
{
    WNDCLASSW caller {};
    caller.lpszClassName = L"KorTest.Caller";
    caller.hInstance = GetModuleHandleW(nullptr);
    caller.lpfnWndProc = [](HWND window, UINT message, WPARAM wparam, LPARAM lparam) -> LRESULT {
        if (message != WM_APP)
            return DefWindowProcW(window, message, wparam, lparam);
        std::unique_ptr<std::function<void()>> const function(
            reinterpret_cast<std::function<void()> *>(lparam));
        (*function)();
        return 0;
    };
    RegisterClassW(&caller);
    return CreateWindowExW(0, caller.lpszClassName, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
        caller.hInstance, nullptr);
}

// Setting the pointer makes the mouse move once more, at some time. Messages that were posted do
// not come here.
LRESULT CALLBACK drop_echo(int code, WPARAM message, LPARAM lparam)
{
    return code >= 0 && message == WM_MOUSEMOVE ? 1
                                                : CallNextHookEx(nullptr, code, message, lparam);
}

void point_at(HWND view, CXPoint const &position)
{
    POINT screen = position;
    ClientToScreen(view, &screen);
    RECT const all { 0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN) };
    bool const is_on_screen = PtInRect(&all, screen) != 0; // else the pointer stays where it is
    POINT now {};
    for (int i = 0; i < 200; ++i) { // an echo of an earlier place may come in between
        if (is_on_screen)
            SetCursorPos(screen.x, screen.y);
        if (!GetCapture())
            SendMessageW(view, WM_SETCURSOR, reinterpret_cast<WPARAM>(view),
                MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        GetCursorPos(&now);
        if (!is_on_screen || (now.x == screen.x && now.y == screen.y))
            break;
        Sleep(2);
    }
}

void hold(unsigned int key, bool is_down)
{
    BYTE states[256] = {};
    GetKeyboardState(states);
    states[key & 0xFF] = is_down ? 0x80 : 0;
    SetKeyboardState(states);
}

CursorShape get_cursor_shape()
{
    wchar_t const *const natives[]
        = { IDC_ARROW, IDC_SIZENWSE, IDC_SIZENESW, IDC_SIZEWE, IDC_SIZENS, IDC_SIZEALL };
    int shape = 0;
    while (shape < 5 && LoadCursorW(nullptr, natives[shape]) != GetCursor())
        ++shape;
    return CursorShape(shape);
}

class NativeDriver final : public Driver {
public:
    NativeDriver() { SetWindowsHookExW(WH_MOUSE, drop_echo, nullptr, GetCurrentThreadId()); }
    kortools::ui::BackEnd &install() override { return kortools::ui::win32::install_back_end(); }
    bool has_task_bar() const override { return false; }
    bool has_fonts() const override { return true; }

    void input(ViewFrame &frame, UserInput const &input) override;
    void scroll(ViewFrame &frame, kortools::ui::ScrollBar bar, int position) override
    {
        bool const is_across = bar == kortools::ui::ScrollBar::Horizontal;
        post_to(view_of(frame), [=](HWND view) {
            SCROLLINFO info {};
            info.cbSize = sizeof info;
            info.fMask = SIF_POS;
            info.nPos = position;
            SetScrollInfo(view, is_across ? SB_HORZ : SB_VERT, &info, TRUE);
            SendMessageW(view, is_across ? WM_HSCROLL : WM_VSCROLL, SB_THUMBTRACK, 0);
        });
    }
    void close(ViewFrame &frame) override
    {
        PostMessageW(window_of(frame), WM_SYSCOMMAND, SC_CLOSE, 0);
    }
    void resize(ViewFrame &frame, CXSize const &by) override
    {
        post_to(window_of(frame), [by](HWND window) {
            RECT now {};
            GetWindowRect(window, &now);
            SetWindowPos(window, nullptr, 0, 0, int(now.right - now.left) + by.cx,
                int(now.bottom - now.top) + by.cy, SWP_NOMOVE | SWP_NOZORDER);
        });
    }
    void lose_capture(ViewFrame &frame) override
    {
        post_to(view_of(frame), [this](HWND view) {
            if (GetCapture() != view)
                return;
            SetCapture(m_caller);
            ReleaseCapture();
        });
    }
    FrameContents read(ViewFrame &frame) override
    {
        HWND const window = window_of(frame);
        wchar_t status[200] = {};
        SendMessageW(FindWindowExW(window, nullptr, STATUSCLASSNAMEW, nullptr), SB_GETTEXTW, 0,
            reinterpret_cast<LPARAM>(status));
        return { text_of(window), status, IsWindowEnabled(window) != 0, get_cursor_shape() };
    }
    void post(std::function<void()> function) override
    {
        PostMessageW(m_caller, WM_APP, 0,
            reinterpret_cast<LPARAM>(new std::function<void()>(std::move(function))));
    }
    void answer_next(std::function<int(Modal const &)> answer) override
    {
        m_answers.add(std::move(answer));
    }
    std::unique_ptr<CEdit> make_edit(bool has_many_lines) override
    {
        DWORD const style = has_many_lines ? ES_MULTILINE : ES_AUTOHSCROLL;
        return kortools::ui::win32::attach_edit(CreateWindowExW(
            0, WC_EDITW, L"", WS_POPUP | style, 0, 0, 200, 60, nullptr, nullptr, nullptr, nullptr));
    }
    ProgressContents read(kortools::ui::ProgressWindow &window) override;
    void act(kortools::ui::ProgressWindow &window, ProgressAction action) override;

private:
    static HWND view_of(ViewFrame &frame)
    {
        return static_cast<HWND>(kortools::ui::win32::get_native_window(frame.GetView()));
    }
    static HWND window_of(ViewFrame &frame) { return GetAncestor(view_of(frame), GA_ROOT); }
    void post_to(HWND window, std::function<void(HWND)> const &function)
    {
        post([=] {
            if (IsWindow(window))
                function(window);
        });
    }

    HWND m_caller = make_caller();
    Answers m_answers;
};

// What the system does before it hands out a message comes before the message.
void NativeDriver::input(ViewFrame &frame, UserInput const &input)
{
    using Kind = UserInput::Kind;
    static std::map<Kind, UINT> const messages { { Kind::Move, WM_MOUSEMOVE },
        { Kind::LeftDown, WM_LBUTTONDOWN }, { Kind::LeftUp, WM_LBUTTONUP },
        { Kind::RightDown, WM_RBUTTONDOWN }, { Kind::RightUp, WM_RBUTTONUP },
        { Kind::Wheel, WM_MOUSEWHEEL }, { Kind::KeyDown, WM_KEYDOWN }, { Kind::KeyUp, WM_KEYUP } };
    HWND const view = view_of(frame);
    bool const is_key = input.kind == Kind::KeyDown || input.kind == Kind::KeyUp;
    post_to(view, [=](HWND window) {
        if (is_key)
            hold(input.key, input.kind == Kind::KeyDown);
        else
            point_at(window, input.position);
    });
    POINT position = input.position;
    if (input.kind == Kind::Wheel)
        ClientToScreen(view, &position);
    WPARAM const wparam = is_key ? input.key : WPARAM(MAKELONG(0, input.steps * WHEEL_DELTA));
    LPARAM const lparam = is_key ? 1 : MAKELPARAM(position.x, position.y);
    PostMessageW(view, messages.at(input.kind), wparam, lparam);
}

// There is one at a time.
HWND find_progress_window()
{
    HWND found = nullptr;
    auto const look = [](HWND window, LPARAM result) -> BOOL {
        if (class_of(window) != L"KorTools.Progress")
            return TRUE;
        *reinterpret_cast<HWND *>(result) = window;
        return FALSE;
    };
    EnumThreadWindows(GetCurrentThreadId(), look, reinterpret_cast<LPARAM>(&found));
    return found;
}

ProgressContents NativeDriver::read(kortools::ui::ProgressWindow &)
{
    HWND const window = find_progress_window();
    std::vector<HWND> const parts = children_of(window); // from above
    auto const read_bar = [&](std::size_t label) {
        HWND const bar = parts.at(label + 1);
        bool const is_marquee = (GetWindowLongPtrW(bar, GWL_STYLE) & PBS_MARQUEE) != 0;
        return ProgressContents::Bar { is_shown(bar), is_marquee,
            int(SendMessageW(bar, PBM_GETPOS, 0, 0)), text_of(parts.at(label)),
            is_shown(parts.at(label)) };
    };
    HWND const cancel = parts.at(6);
    HWND const ok = parts.at(7);
    RECT client {};
    GetClientRect(window, &client);
    RECT place {};
    GetWindowRect(ok, &place);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT *>(&place), 2);
    return { IsWindowVisible(window) != 0, text_of(window), text_of(parts.at(0)),
        text_of(parts.at(5)), { read_bar(1), read_bar(3) }, is_shown(cancel),
        IsWindowEnabled(cancel) != 0, text_of(cancel), is_shown(ok), text_of(ok),
        int(place.right - place.left), int((place.left + place.right - client.right) / 2), -1 };
}

void NativeDriver::act(kortools::ui::ProgressWindow &, ProgressAction action)
{
    HWND const window = find_progress_window();
    if (action == ProgressAction::CloseBox) {
        PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    } else if (action == ProgressAction::Escape) {
        PostMessageW(window, WM_KEYDOWN, VK_ESCAPE, 1);
    } else {
        HWND const button = GetDlgItem(window, action == ProgressAction::Ok ? IDOK : IDCANCEL);
        if (IsWindowVisible(button) && IsWindowEnabled(button))
            PostMessageW(button, BM_CLICK, 0, 0);
    }
}

} // namespace

std::unique_ptr<Driver> make_driver()
{
    return std::make_unique<NativeDriver>();
}

} // namespace kor_test
