// SPDX-License-Identifier: MIT
// One call of Qt serves all events that are there, while a caller of wait() wants one after the
// other and may end the capture at any of them. So input is held back in its order as soon as
// somebody waits; what is no kind of InputEvent is delivered when its turn comes.
#include "kortools/ui/qt/capture.h"

#include "kortools/ui/qt/keys.h"
#include "kortools/ui/qt/text.h"
#include "kortools/ui/qt/window_thread.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <cmath>
#include <utility>

namespace kortools::ui::qt {
namespace {

bool is_mouse_event(QEvent::Type type)
{
    return type == QEvent::MouseMove || type == QEvent::MouseButtonPress
        || type == QEvent::MouseButtonRelease || type == QEvent::MouseButtonDblClick;
}

// Elsewhere it is not supported or, as long as a button is down, not needed.
bool has_native_grab()
{
    return QGuiApplication::platformName() == QLatin1String("xcb")
        || QGuiApplication::platformName() == QLatin1String("windows");
}

// False when it is none that a caller of WaitForInput() is told.
bool to_input(QEvent const &event, InputEvent &input)
{
    using Kind = InputEvent::Kind;
    if (event.type() == QEvent::KeyPress) {
        input.kind = Kind::KeyDown;
        input.key = get_key_number(static_cast<QKeyEvent const &>(event));
        return input.key != 0;
    }
    auto const &mouse = static_cast<QMouseEvent const &>(event);
    bool const is_down
        = event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick;
    if (event.type() == QEvent::MouseMove)
        input.kind = Kind::MouseMove;
    else if (event.type() == QEvent::MouseButtonRelease && mouse.button() == Qt::LeftButton)
        input.kind = Kind::LeftButtonUp;
    else if (is_down && mouse.button() == Qt::RightButton)
        input.kind = Kind::RightButtonDown;
    else
        return false;
    input.position = get_pixel(mouse.position());
    return true;
}

} // namespace

void Capture::begin(QWidget &widget)
{
    if (m_widget == &widget)
        return;
    lose();
    m_widget = &widget;
    if (has_native_grab())
        widget.grabMouse();
}

void Capture::end(QWidget const &widget)
{
    if (m_widget == &widget)
        lose();
}

void Capture::lose()
{
    if (m_widget && QWidget::mouseGrabber() == m_widget)
        m_widget->releaseMouse();
    m_widget = nullptr;
    for (Held &held : std::exchange(m_held, {})) {
        if (held.target && held.event)
            QCoreApplication::postEvent(held.target, held.event.release());
    }
}

bool Capture::wait(QWidget &widget, InputEvent &event)
{
    QPointer<QWidget> const waiting(&widget);
    WindowThread &thread = WindowThread::get();
    for (;;) {
        thread.calls.rethrow();
        if (!waiting || !waiting->isVisible())
            return false;
        event = {};
        if (m_widget == waiting && !m_held.empty()) { // before the program's end, too
            if (take(event))
                return true;
            continue;
        }
        if (thread.is_ending())
            return false;
        if (m_widget != waiting) {
            event.kind = InputEvent::Kind::CaptureLost;
            return true;
        }
        bool const was_waiting = std::exchange(m_is_waiting, true);
        thread.serve(WindowThread::Wait::ForEvents);
        m_is_waiting = was_waiting;
    }
}

// The first that was held back; delivers it and returns false when it is no input.
bool Capture::take(InputEvent &event)
{
    Held const held = std::move(m_held.front());
    m_held.pop_front();
    if (!held.event) { // wait() sees it
        lose();
        return false;
    }
    if (to_input(*held.event, event))
        return true;
    bool const was_waiting = std::exchange(m_is_waiting, false);
    if (held.target)
        QCoreApplication::sendEvent(held.target, held.event.get());
    m_is_waiting = was_waiting;
    return false;
}

bool Capture::filter(QWidget &target, QEvent &event)
{
    if (!m_widget)
        return false;
    if (ends_capture(target, event)) {
        if (m_is_waiting && event.type() != QEvent::Hide) // in its turn
            m_held.push_back({ m_widget, nullptr });
        else
            lose();
        return false;
    }
    if (is_mouse_event(event.type()))
        return filter_mouse(target, event);
    if (event.type() != QEvent::KeyPress || !m_is_waiting)
        return false;
    m_held.push_back({ &target, std::unique_ptr<QEvent>(event.clone()) });
    return true;
}

bool Capture::ends_capture(QWidget const &target, QEvent const &event) const
{
    switch (event.type()) {
    case QEvent::Hide:
    case QEvent::WindowDeactivate:
    case QEvent::WindowBlocked:
        return &target == m_widget || &target == m_widget->window();
    case QEvent::UngrabMouse:
        return &target == m_widget;
    default:
        return false;
    }
}

bool Capture::filter_mouse(QWidget &target, QEvent &event)
{
    if (&target == m_widget && !m_is_waiting)
        return false;
    auto const &mouse = static_cast<QMouseEvent const &>(event);
    QPointF const position
        = &target == m_widget ? mouse.position() : m_widget->mapFromGlobal(mouse.globalPosition());
    auto moved = std::make_unique<QMouseEvent>(event.type(), position, mouse.globalPosition(),
        mouse.button(), mouse.buttons(), mouse.modifiers());
    if (m_is_waiting)
        m_held.push_back({ m_widget, std::move(moved) });
    else
        QCoreApplication::sendEvent(m_widget, moved.get());
    return true;
}

} // namespace kortools::ui::qt
