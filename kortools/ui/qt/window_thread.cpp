// SPDX-License-Identifier: MIT
#include "kortools/ui/qt/window_thread.h"

#include "kortools/ui/qt/messages.h"

#include <QApplication>
#include <QThread>

#include <utility>

namespace kortools::ui::qt {

WindowThread &WindowThread::get()
{
    static auto *const s_thread = new WindowThread;
    return *s_thread;
}

WindowThread::WindowThread()
{
    qApp->installEventFilter(this);
}

void WindowThread::serve(Wait wait)
{
    QCoreApplication::processEvents(wait == Wait::ForEvents
            ? QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents
            : QEventLoop::ProcessEventsFlags(QEventLoop::AllEvents));
}

// A loop of the host's own ends, too. Without one, telling Qt would keep later loops from starting.
void WindowThread::quit(int result)
{
    m_is_ending = true;
    m_result = result;
    if (QThread::currentThread()->loopLevel() > 0)
        QCoreApplication::exit(result);
}

int WindowThread::take_result()
{
    m_is_ending = false;
    return std::exchange(m_result, 0);
}

bool WindowThread::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Quit && object == qApp)
        m_is_ending = true;
    if (!object->isWidgetType())
        return false;
    auto &widget = *static_cast<QWidget *>(object);
    keys.note(*event);
    report_event(widget, *event);
    return capture.filter(widget, *event);
}

} // namespace kortools::ui::qt
