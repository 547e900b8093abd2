// SPDX-License-Identifier: MIT
#include "kortools/ui/win32/text_dialog.h"

#include "kortools/ui/win32/event_loop.h"

#include <algorithm>

namespace kortools::ui::win32 {
namespace {

// In the font's own units: of a quarter of a character's width, an eighth of its height.
constexpr int dialog_width = 320;
constexpr int dialog_height = 220;
constexpr int button_width = 50;
constexpr int button_height = 14;
constexpr int margin = 7;

class TextDialog {
public:
    TextDialog(HWND owner, wchar_t const *title)
        : m_units(get_font_units())
    {
        create_window(*this, L"KorTools.Text",
            { .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                .extended_style = WS_EX_DLGMODALFRAME,
                .title = title,
                .size = { scale_x(dialog_width), scale_y(dialog_height) },
                .parent = owner,
                .background = GetSysColorBrush(COLOR_BTNFACE) });
        SetPropW(m_handle, EventLoop::dialog_property, m_handle);
    }
    TextDialog(TextDialog const &) = delete;
    TextDialog &operator=(TextDialog const &) = delete;
    ~TextDialog()
    {
        RemovePropW(m_handle, EventLoop::dialog_property);
        DestroyWindow(m_handle);
    }

    void Show(wchar_t const *text)
    {
        m_text = create_control(m_handle, WC_EDITW,
            WS_VISIBLE | WS_TABSTOP | WS_BORDER | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE
                | ES_READONLY | ES_AUTOVSCROLL | ES_AUTOHSCROLL | ES_NOHIDESEL);
        m_button = create_control(
            m_handle, WC_BUTTONW, WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON, IDOK);
        SetWindowTextW(m_button, L"OK");
        SendMessageW(m_text, EM_SETLIMITTEXT, 0, 0); // as much as there is memory for
        SetWindowTextW(m_text, to_native_lines(text).c_str());
        LayOut();
        center_window(m_handle, GetWindow(m_handle, GW_OWNER));
        ShowWindow(m_handle, SW_SHOW);
        SetFocus(m_text);
    }
    bool IsClosed() const { return m_is_closed; }

    LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam)
    {
        bool const is_command
            = message == WM_COMMAND && (LOWORD(wparam) == IDOK || LOWORD(wparam) == IDCANCEL);
        m_is_closed = m_is_closed || is_command || message == WM_CLOSE;
        if (message == WM_SIZE && m_button)
            LayOut();
        if (message == DM_GETDEFID)
            return MAKELRESULT(IDOK, DC_HASDEFID);
        if (message == WM_CTLCOLORSTATIC) // of the field, which would be as grey as the dialog
            return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
        return is_command || message == WM_CLOSE
            ? 0
            : DefWindowProcW(m_handle, message, wparam, lparam);
    }
    HWND m_handle = nullptr;

private:
    int scale_x(int units) const { return MulDiv(units, m_units.cx, 4); }
    int scale_y(int units) const { return MulDiv(units, m_units.cy, 8); }

    void LayOut() const
    {
        RECT client {};
        GetClientRect(m_handle, &client);
        int const x = scale_x(margin);
        int const y = scale_y(margin);
        int const button_top = int(client.bottom) - y - scale_y(button_height);
        MoveWindow(m_text, x, y, std::max(int(client.right) - 2 * x, 0),
            std::max(button_top - 2 * y, 0), TRUE);
        MoveWindow(m_button, (int(client.right) - scale_x(button_width)) / 2, button_top,
            scale_x(button_width), scale_y(button_height), TRUE);
    }

    CXSize m_units;
    HWND m_text = nullptr;
    HWND m_button = nullptr;
    bool m_is_closed = false;
};

} // namespace

void show_text(HWND owner, wchar_t const *title, wchar_t const *text)
{
    struct Disabling {
        explicit Disabling(HWND window)
            : m_window(window)
            , m_was_enabled(window && !EnableWindow(window, FALSE))
        {
        }
        Disabling(Disabling const &) = delete;
        Disabling &operator=(Disabling const &) = delete;
        ~Disabling()
        {
            if (m_was_enabled)
                EnableWindow(m_window, TRUE);
        }
        HWND m_window;
        bool m_was_enabled;
    };
    TextDialog dialog(owner, title);
    Disabling const disabling(owner); // ends first, or another program would come to the front
    dialog.Show(text);
    while (!dialog.IsClosed() && get_event_loop().serve_next()) { }
}

} // namespace kortools::ui::win32
