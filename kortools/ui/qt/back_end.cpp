// SPDX-License-Identifier: MIT
// The back end for Qt 6 Widgets: what each service is made of.
//
//   events           QCoreApplication::processEvents() in loops of its own, so that an exception of
//                    a handler ends them; a loop of the host's (exec()) serves the windows, too
//   exceptions       HandlerCalls around every call of a handler; none passes Qt's frames
//   view frame       QWidget with a view and a QLabel; the view's client area is the viewport of a
//                    QAbstractScrollArea, painted opaque, scrolled by QWidget::scroll()
//   scroll bars      those of the area, shown where there is something to scroll
//   drawing          QPainter without anti-aliasing; pictures are written into the image behind it
//   invalid regions  QWidget::update(); UpdateWindow() sends the request to paint
//   rubber band      painted by the view, which keeps the pixels below it; on widgets of the host's
//                    four child widgets
//   cursors          QWidget::setCursor()
//   keys             tracked in the events of all widgets, by Windows' numbers
//   capture          mouse events of all widgets are led to one; on X11 the system's grab, too
//   timers           QObject::startTimer()
//   popup menus      QMenu
//   message boxes    QMessageBox; those of other threads are shown by the main one
//   texts            QDialog with a QPlainTextEdit
//   edit fields      QLineEdit, QPlainTextEdit, QTextEdit of the host's
//   progress window  QDialog with two QProgressBars
//   logged events    an event filter of the application, with the numbers of Windows' messages
//
// Open: the indicator in the task bar (each desktop has its own protocol); on screens whose pixels
// Qt scales up a pixel of the client area is several of the screen; where the system does not tell
// a program the mouse position outside its windows (Wayland) the last one that is known counts.
#include "kortools/ui/qt/back_end.h"

#include "kortools/ui/qt/boxes.h"
#include "kortools/ui/qt/progress_window.h"
#include "kortools/ui/qt/text.h"
#include "kortools/ui/qt/view_frame.h"
#include "kortools/ui/qt/window_on.h"

#include <QApplication>
#include <QThread>

namespace kortools::ui::qt {
namespace {

QWidget *find_widget(CWnd *window)
{
    auto *const own = dynamic_cast<HasSurface *>(window);
    return own ? own->get_surface()->get_widget() : nullptr;
}

class QtBackEnd : public BackEnd {
public:
    char const *GetName() const override { return "qt"; }

    int ShowMessageBox(wchar_t const *text, wchar_t const *title, unsigned int flags) override
    {
        if (QThread::currentThread() != qApp->thread())
            return m_boxes.show(to_qt(text), to_qt(title), flags);
        int const answer = show_box(to_qt(text), to_qt(title), flags);
        m_thread.calls.rethrow();
        return answer;
    }

    void ShowText(CWnd *parent, wchar_t const *title, wchar_t const *text) override
    {
        show_text(find_widget(parent), to_qt(title), to_qt(text));
        m_thread.calls.rethrow();
    }

    std::unique_ptr<ProgressWindow> CreateProgressWindow(
        CWnd *parent, ProgressWindowHandler &handler) override
    {
        QWidget *const widget = find_widget(parent);
        return make_progress_window(widget ? widget->window() : nullptr, handler);
    }

    std::unique_ptr<ViewFrame> CreateViewFrame(
        WindowHandler &handler, ViewKind kind, wchar_t const *title) override
    {
        return make_view_frame(handler, kind, title);
    }

    bool PumpMessages() override
    {
        m_thread.serve(WindowThread::Wait::No);
        m_thread.calls.rethrow();
        return !m_thread.is_ending();
    }

    int Run() override
    {
        m_thread.serve_while([] { return true; });
        m_thread.calls.rethrow();
        return m_thread.take_result();
    }

    void Quit(int result) override { m_thread.quit(result); }

private:
    WindowThread &m_thread = WindowThread::get();
    BoxQueue m_boxes;
};

// A window closes without the program, unless the program that made the application wants it so.
void need_application()
{
    static int s_count = 1;
    static char s_name[] = "kortools";
    static char *s_arguments[] = { s_name, nullptr };
    if (QCoreApplication::instance())
        return;
    // Stays: windows may outlive main().
    [[maybe_unused]] static auto *const s_application = new QApplication(s_count, s_arguments);
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

} // namespace

BackEnd &install_back_end()
{
    need_application();
    static auto *const s_back_end = new QtBackEnd;
    set_back_end(s_back_end);
    return *s_back_end;
}

std::unique_ptr<CWnd> attach_widget(QWidget *widget, WindowHandler *handler)
{
    return std::make_unique<WindowOn<CWnd>>(std::make_shared<Surface>(*widget, handler));
}

QWidget *get_widget(CWnd &window)
{
    return find_widget(&window);
}

QWidget *get_widget(ProgressWindow &window)
{
    return find_progress_widget(window);
}

} // namespace kortools::ui::qt
