// SPDX-License-Identifier: MIT
// WindowThread: what the windows of the back end share on the thread that owns them all.
#pragma once

#include "kortools/ui/handler_calls.h"
#include "kortools/ui/qt/capture.h"
#include "kortools/ui/qt/keys.h"

#include <QObject>

namespace kortools::ui::qt {

class WindowThread : public QObject {
public:
    enum class Wait { No, ForEvents };

    // Made by the first call, which the main thread makes once there is a QApplication; never
    // destroyed.
    static WindowThread &get();

    // Serves the events that are there, after waiting for some or not. Exceptions of handlers stay
    // in `calls`.
    void serve(Wait wait);

    // Serves events as long as `is_needed` says so, and until a handler throws or the program ends.
    template <class Condition> void serve_while(Condition is_needed)
    {
        while (is_needed() && !calls.has_exception() && !is_ending())
            serve(Wait::ForEvents);
    }

    void quit(int result);
    bool is_ending() const { return m_is_ending; }
    int take_result(); // of quit(), after which the program could begin again

    HandlerCalls calls;
    KeyState keys;
    Capture capture;

protected:
    bool eventFilter(QObject *object, QEvent *event) override; // of all events of the program

private:
    WindowThread();

    bool m_is_ending = false;
    int m_result = 0;
};

} // namespace kortools::ui::qt
