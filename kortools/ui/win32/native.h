// SPDX-License-Identifier: MIT
// The system's headers, and what every file of this back end needs beside them.
#pragma once

#include "kortools/archive/exception.h"
#include "kortools/graphics/point.h"
#include "kortools/ui/handler_calls.h"

// The names of the system's own cursors and icons depend on it.
#ifndef UNICODE
#define UNICODE
#endif
#include <windows.h>

#include <commctrl.h>

#include <string>
#include <string_view>

namespace kortools::ui::win32 {

// What a window, a drawing surface or a timer that the system refuses costs.
[[noreturn]] void throw_refused();

template <class Handle> Handle check(Handle handle)
{
    if (!handle)
        throw_refused();
    return handle;
}

// An object of the drawing system, deleted at the end.
template <class Handle> class DrawingObject {
public:
    explicit DrawingObject(Handle handle = nullptr)
        : m_handle(handle)
    {
    }
    DrawingObject(DrawingObject const &) = delete;
    DrawingObject &operator=(DrawingObject const &) = delete;
    ~DrawingObject() { reset(nullptr); }

    void reset(Handle handle)
    {
        if (m_handle)
            DeleteObject(m_handle);
        m_handle = handle;
    }
    Handle get() const { return m_handle; }

private:
    Handle m_handle;
};

// The drawing context of a window's client area.
class WindowDC {
public:
    explicit WindowDC(HWND window)
        : m_window(window)
        , m_dc(GetDC(window))
    {
    }
    WindowDC(WindowDC const &) = delete;
    WindowDC &operator=(WindowDC const &) = delete;
    ~WindowDC() { ReleaseDC(m_window, m_dc); }

    HDC get() const { return m_dc; }

private:
    HWND m_window;
    HDC m_dc;
};

// The module that this code is in: window classes are private to it.
HINSTANCE get_module();

// The font of the system's message boxes, in the size that belongs to the screen.
HFONT get_font();

// The average character of that font, by which dialogs are measured.
CXSize get_font_units();

// Makes windows of a class of the library, whose procedure is told the object by its first message.
//
//   LRESULT Window::OnMessage(UINT message, WPARAM wparam, LPARAM lparam);
//   create_window<Window>(*this, L"KorTools.Window", { .style = WS_CHILD, ... });
struct WindowMaker {
    DWORD style;
    DWORD extended_style = 0;
    wchar_t const *title = L"";
    CXSize size {};
    HWND parent = nullptr;
    HBRUSH background = nullptr; // of the class; null: nothing is erased
};

HWND make_window(
    wchar_t const *class_name, WNDPROC procedure, WindowMaker const &maker, void *object);

template <class Window>
LRESULT CALLBACK window_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_NCCREATE) {
        auto *const created = reinterpret_cast<CREATESTRUCTW *>(lparam);
        auto *const object = static_cast<Window *>(created->lpCreateParams);
        object->m_handle = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
    }
    auto *const object = reinterpret_cast<Window *>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!object)
        return DefWindowProcW(window, message, wparam, lparam);
    LRESULT const result = object->OnMessage(message, wparam, lparam);
    if (message == WM_NCDESTROY)
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    return result;
}

template <class Window>
HWND create_window(Window &object, wchar_t const *class_name, WindowMaker const &maker)
{
    return make_window(class_name, window_procedure<Window>, maker, &object);
}

// A control of the system in `parent`, in its font, hidden and without a place yet unless `style`
// says more.
HWND create_control(HWND parent, wchar_t const *class_name, DWORD style, int id = 0);

std::wstring get_window_text(HWND window);

// The system's fields end a line with two characters, the library with "\n".
std::wstring to_native_lines(std::wstring_view text);

// Moves a window to the middle of another one, or of the screen when that is null or not seen.
void center_window(HWND window, HWND around);

// The window at the top of those that contain `window`; null for null.
HWND get_top_level(HWND window);

} // namespace kortools::ui::win32
