// SPDX-License-Identifier: MIT
// EventLoop: the messages of the main thread, and the exceptions of the handlers that they reach.
// Every loop of the back end takes its messages from here; so do, without knowing it, the system's
// own loops (menus, message boxes), which leave the exceptions to whoever started them.
#pragma once

#include "kortools/ui/win32/native.h"

#include <optional>
#include <set>

namespace kortools::ui::win32 {

class EventLoop {
public:
    // Windows whose keys move among their controls, as in dialogs, have this property.
    static constexpr wchar_t const *dialog_property = L"KorTools.Dialog";

    // False when the program ends. An exception of a handler is thrown on by all three.
    bool serve_waiting();
    bool serve_next();            // waits for it
    bool wait_next(MSG &message); // the message is the caller's to dispatch()

    void dispatch(MSG const &message);

    int run();
    void quit(int result);
    bool is_quitting() const { return m_result.has_value(); }

    HandlerCalls calls;

    // Throws what a handler has thrown, outside the system's frames. Windows that could not be
    // painted meanwhile are invalid again.
    void rethrow();
    void paint_later(HWND window) { m_unpainted.insert(window); }

private:
    enum class Wait { No, Yes };

    bool take(MSG &message, Wait wait);
    void end_with(MSG const &message);

    std::optional<MSG> m_kept; // taken together with one that was sent and whose handler threw
    std::set<HWND> m_unpainted;
    std::optional<int> m_result; // of run(), once it is to end
};

EventLoop &get_event_loop(); // that of the main thread

} // namespace kortools::ui::win32
