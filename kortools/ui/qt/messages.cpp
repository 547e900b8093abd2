// SPDX-License-Identifier: MIT
#include "kortools/ui/qt/messages.h"

#include "kortools/platform/message_hook.h"
#include "kortools/ui/qt/keys.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QResizeEvent>
#include <QWheelEvent>
#include <QWidget>

namespace kortools::ui::qt {
namespace {

struct Message {
    unsigned int number = 0; // 0: none
    unsigned long long wparam = 0;
    unsigned long long lparam = 0;
};

constexpr unsigned int timer_message = 0x113;
constexpr unsigned int mouse_move = 0x200;
constexpr unsigned int mouse_wheel = 0x20A;

unsigned long long pack(int low, int high)
{
    return (static_cast<unsigned int>(high) & 0xFFFFU) << 16
        | (static_cast<unsigned int>(low) & 0xFFFFU);
}

unsigned int get_button_flags(QSinglePointEvent const &event)
{
    return (event.buttons().testFlag(Qt::LeftButton) ? 0x01U : 0U)
        | (event.buttons().testFlag(Qt::RightButton) ? 0x02U : 0U)
        | (event.modifiers().testFlag(Qt::ShiftModifier) ? 0x04U : 0U)
        | (event.modifiers().testFlag(Qt::ControlModifier) ? 0x08U : 0U)
        | (event.buttons().testFlag(Qt::MiddleButton) ? 0x10U : 0U);
}

// Each button has three messages in a row: down, up, double click.
unsigned int get_button_message(QMouseEvent const &event)
{
    unsigned int const first = event.button() == Qt::LeftButton ? 0x201U
        : event.button() == Qt::RightButton                     ? 0x204U
        : event.button() == Qt::MiddleButton                    ? 0x207U
                                                                : 0x20BU;
    return first
        + (event.type() == QEvent::MouseButtonPress          ? 0U
                : event.type() == QEvent::MouseButtonRelease ? 1U
                                                             : 2U);
}

Message of_mouse(QMouseEvent const &event)
{
    QPoint const position = event.position().toPoint();
    return { event.type() == QEvent::MouseMove ? mouse_move : get_button_message(event),
        get_button_flags(event), pack(position.x(), position.y()) };
}

Message of_wheel(QWheelEvent const &event)
{
    QPoint const position = event.globalPosition().toPoint();
    return { mouse_wheel, pack(static_cast<int>(get_button_flags(event)), event.angleDelta().y()),
        pack(position.x(), position.y()) };
}

Message of_key(QKeyEvent const &event)
{
    bool const is_down = event.type() == QEvent::KeyPress;
    unsigned int const scan_code = event.nativeScanCode() & 0xFFU;
    return { is_down ? 0x100U : 0x101U, get_key_number(event),
        1U | scan_code << 16 | (is_down ? 0U : 0xC0000000U) };
}

Message to_message(QEvent const &event)
{
    switch (event.type()) {
    case QEvent::Move:
        return { 0x03 };
    case QEvent::Resize: {
        QSize const size = static_cast<QResizeEvent const &>(event).size();
        return { 0x05, 0, pack(size.width(), size.height()) };
    }
    case QEvent::WindowActivate:
        return { 0x06, 1 };
    case QEvent::WindowDeactivate:
        return { 0x06 };
    case QEvent::FocusIn:
        return { 0x07 };
    case QEvent::FocusOut:
        return { 0x08 };
    case QEvent::EnabledChange:
        return { 0x0A };
    case QEvent::WindowTitleChange:
        return { 0x0C };
    case QEvent::Paint:
        return { 0x0F };
    case QEvent::Close:
        return { 0x10 };
    case QEvent::Show:
        return { 0x18, 1 };
    case QEvent::Hide:
        return { 0x18 };
    case QEvent::ContextMenu:
        return { 0x7B };
    case QEvent::UngrabMouse:
        return { 0x215 };
    case QEvent::Leave:
        return { 0x2A3 };
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return of_key(static_cast<QKeyEvent const &>(event));
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        return of_mouse(static_cast<QMouseEvent const &>(event));
    case QEvent::Wheel:
        return of_wheel(static_cast<QWheelEvent const &>(event));
    default:
        return {};
    }
}

void report(QWidget const &widget, Message const &message)
{
    std::wstring const text = widget.window()->windowTitle().toStdWString();
    std::wstring const kind = QString::fromLatin1(widget.metaObject()->className()).toStdWString();
    platform::report_window_message(
        { message.number, message.wparam, message.lparam, text.c_str(), kind.c_str() });
}

} // namespace

void report_event(QWidget const &widget, QEvent const &event)
{
    Message const message = to_message(event);
    if (message.number != 0)
        report(widget, message);
}

void report_timer(QWidget const &widget, unsigned int id)
{
    report(widget, { timer_message, id });
}

} // namespace kortools::ui::qt
