// SPDX-License-Identifier: MIT
#include "kortools/ui/win32/event_loop.h"

#include <utility>

namespace kortools::ui::win32 {

EventLoop &get_event_loop()
{
    static EventLoop s_loop;
    return s_loop;
}

void EventLoop::rethrow()
{
    if (!calls.has_exception())
        return;
    for (HWND const window : std::exchange(m_unpainted, {}))
        InvalidateRect(window, nullptr, FALSE);
    calls.rethrow();
}

bool EventLoop::take(MSG &message, Wait wait)
{
    rethrow();
    if (is_quitting())
        return false;
    if (m_kept) {
        message = *std::exchange(m_kept, std::nullopt);
        return true;
    }
    // Both hand messages that were sent to their windows before they return.
    bool const has_message = wait == Wait::Yes ? GetMessageW(&message, nullptr, 0, 0) != -1
                                               : PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);
    bool const is_end = has_message && message.message == WM_QUIT;
    if (is_end)
        end_with(message);
    else if (has_message && calls.has_exception())
        m_kept = message;
    rethrow();
    return has_message && !is_end;
}

bool EventLoop::serve_waiting()
{
    MSG message {};
    while (take(message, Wait::No))
        dispatch(message);
    return !is_quitting();
}

bool EventLoop::wait_next(MSG &message)
{
    return take(message, Wait::Yes);
}

bool EventLoop::serve_next()
{
    MSG message {};
    if (!wait_next(message))
        return false;
    dispatch(message);
    rethrow();
    return !is_quitting();
}

void EventLoop::dispatch(MSG const &message)
{
    MSG copy = message;
    HWND const top_level = get_top_level(message.hwnd);
    if (top_level && GetPropW(top_level, dialog_property) && IsDialogMessageW(top_level, &copy))
        return;
    TranslateMessage(&copy);
    DispatchMessageW(&copy);
}

// Loops further out, of the system or the host, have to end, too.
void EventLoop::end_with(MSG const &message)
{
    m_result = int(message.wParam);
    PostQuitMessage(*m_result);
}

int EventLoop::run()
{
    while (serve_next()) { }
    MSG message {};
    PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    return std::exchange(m_result, std::nullopt).value_or(0);
}

void EventLoop::quit(int result)
{
    m_result = result;
    PostQuitMessage(result);
}

} // namespace kortools::ui::win32
