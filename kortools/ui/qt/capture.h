// SPDX-License-Identifier: MIT
// Capture: the widget that gets the mouse wherever it is, and the input that waits for it.
#pragma once

#include "kortools/ui/window.h"

#include <QEvent>
#include <QPointer>
#include <QWidget>

#include <deque>
#include <memory>

namespace kortools::ui::qt {

class Capture {
public:
    void begin(QWidget &widget); // another widget's capture is lost

    // What was held back for the widget goes its usual way. Nothing when another one has captured
    // the mouse.
    void end(QWidget const &widget);

    // CWnd::WaitForInput(). While it waits, input is held back instead of being delivered.
    bool wait(QWidget &widget, InputEvent &event);

    bool is_held_by(QWidget const &widget) const { return m_widget == &widget; }

    // Every event that a widget is about to get; true when it must not.
    bool filter(QWidget &target, QEvent &event);

private:
    struct Held {
        QPointer<QWidget> target;
        std::unique_ptr<QEvent> event; // null: the capture is lost
    };

    bool filter_mouse(QWidget &target, QEvent &event);
    bool ends_capture(QWidget const &target, QEvent const &event) const;
    bool take(InputEvent &event);
    void lose();

    QPointer<QWidget> m_widget;
    bool m_is_waiting = false;
    std::deque<Held> m_held; // while captured
};

} // namespace kortools::ui::qt
