// SPDX-License-Identifier: MIT
// TimerSource: the numbered timers of a window. Qt sends one event for all times that were missed.
#pragma once

#include <QObject>

#include <functional>
#include <map>
#include <memory>

class QWidget;

namespace kortools::ui::qt {

class Surface;

class TimerSource : public QObject { // a child of the widget
public:
    TimerSource(QWidget &widget, std::weak_ptr<Surface> surface);

    void start(unsigned int id, unsigned int milliseconds);
    void stop(unsigned int id);

    // Tells nothing more and goes, later, as it may be telling something now.
    void retire();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    std::weak_ptr<Surface> m_surface;
    std::map<unsigned int, int> m_timers; // our numbers and Qt's
};

} // namespace kortools::ui::qt
