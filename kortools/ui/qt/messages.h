// SPDX-License-Identifier: MIT
// Events as the messages that Windows would send, for those who log them.
#pragma once

class QEvent;
class QWidget;

namespace kortools::ui::qt {

// Nothing for events that have no counterpart. To be called before the widget gets the event.
void report_event(QWidget const &widget, QEvent const &event);
void report_timer(QWidget const &widget, unsigned int id);

} // namespace kortools::ui::qt
