// SPDX-License-Identifier: MIT
#include "kortools/platform/message_hook.h"

#include <windows.h>

#include <iterator>

namespace kortools::platform {
namespace {

HHOOK s_hook = nullptr;

LRESULT CALLBACK on_message(int code, WPARAM wparam, LPARAM lparam)
{
    if (code == HC_ACTION) {
        auto const &sent = *reinterpret_cast<CWPSTRUCT const *>(lparam);
        wchar_t text[256] = {};
        wchar_t window_class[256] = {};
        // Asking the window itself would send it a message.
        InternalGetWindowText(sent.hwnd, text, static_cast<int>(std::size(text)));
        GetClassNameW(sent.hwnd, window_class, static_cast<int>(std::size(window_class)));
        report_window_message({ sent.message, sent.wParam,
            static_cast<unsigned long long>(sent.lParam), text, window_class });
    }
    return CallNextHookEx(nullptr, code, wparam, lparam);
}

} // namespace

bool install_message_hook()
{
    s_hook = SetWindowsHookExW(WH_CALLWNDPROC, on_message, nullptr, GetCurrentThreadId());
    return s_hook != nullptr;
}

void remove_message_hook()
{
    UnhookWindowsHookEx(s_hook);
    s_hook = nullptr;
}

} // namespace kortools::platform
