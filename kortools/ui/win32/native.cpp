// SPDX-License-Identifier: MIT
#include "kortools/ui/win32/native.h"

#include "kortools/graphics/rect.h"

#include <algorithm>

namespace kortools::ui::win32 {

void throw_refused()
{
    archive::throw_exception(new CXResourceException);
}

HINSTANCE get_module()
{
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<wchar_t const *>(&get_module), &module);
    return module;
}

HFONT get_font()
{
    static HFONT const s_font = [] {
        NONCLIENTMETRICSW metrics {};
        metrics.cbSize = sizeof metrics;
        SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
        HFONT const font = CreateFontIndirectW(&metrics.lfMessageFont);
        return font ? font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    }();
    return s_font;
}

CXSize get_font_units()
{
    static constexpr wchar_t letters[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    WindowDC const dc(nullptr);
    HGDIOBJ const before = SelectObject(dc.get(), get_font());
    SIZE size {};
    GetTextExtentPoint32W(dc.get(), letters, 52, &size);
    SelectObject(dc.get(), before);
    return { int(size.cx + 26) / 52, int(size.cy) };
}

HWND make_window(
    wchar_t const *class_name, WNDPROC procedure, WindowMaker const &maker, void *object)
{
    WNDCLASSEXW window_class {};
    window_class.cbSize = sizeof window_class;
    window_class.lpfnWndProc = procedure;
    window_class.hInstance = get_module();
    window_class.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    window_class.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    window_class.hbrBackground = maker.background;
    window_class.lpszClassName = class_name;
    if (!RegisterClassExW(&window_class) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS)
        throw_refused();
    bool const is_child = (maker.style & WS_CHILD) != 0;
    int const place = is_child ? 0 : CW_USEDEFAULT;
    return check(CreateWindowExW(maker.extended_style, class_name, maker.title, maker.style, place,
        place, maker.size.cx, maker.size.cy, maker.parent, nullptr, get_module(), object));
}

HWND create_control(HWND parent, wchar_t const *class_name, DWORD style, int id)
{
    HWND const control = check(CreateWindowExW(0, class_name, L"", WS_CHILD | style, 0, 0, 0, 0,
        parent, reinterpret_cast<HMENU>(INT_PTR(id)), get_module(), nullptr));
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(get_font()), 0);
    return control;
}

std::wstring get_window_text(HWND window)
{
    std::wstring text(std::size_t(GetWindowTextLengthW(window)) + 1, L'\0');
    int const length = GetWindowTextW(window, text.data(), int(text.size()));
    text.resize(std::size_t(length));
    return text;
}

std::wstring to_native_lines(std::wstring_view text)
{
    std::wstring native;
    for (wchar_t const ch : text) {
        if (ch == L'\n' && !native.ends_with(L'\r'))
            native += L'\r';
        native += ch;
    }
    return native;
}

void center_window(HWND window, HWND around)
{
    RECT outer {};
    if (!around || !IsWindowVisible(around) || IsIconic(around) || !GetWindowRect(around, &outer))
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &outer, 0);
    RECT inner {};
    GetWindowRect(window, &inner);
    CXPoint const corner = CXRect(outer).CenterPoint()
        - CXSize(CXRect(inner).Width() / 2, CXRect(inner).Height() / 2);
    SetWindowPos(window, nullptr, std::max(corner.x, 0), std::max(corner.y, 0), 0, 0,
        SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

HWND get_top_level(HWND window)
{
    return window ? GetAncestor(window, GA_ROOT) : nullptr;
}

} // namespace kortools::ui::win32
