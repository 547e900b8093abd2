// SPDX-License-Identifier: MIT
// The user of the Qt back end: sends events to its widgets, in one queue, and looks at what these
// show. What the window system says by itself about a mouse that is not there is left out.
#include "tests/ui/driver.h"

#include "kortools/ui/qt/back_end.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <deque>
#include <map>

using namespace kor_test;
using namespace kortools::ui;

#if defined(__SANITIZE_ADDRESS__)
// What it has read of the fonts that there are is the library's till the end.
extern "C" __attribute__((visibility("default"))) char const *__lsan_default_suppressions()
{
    return "leak:libfontconfig\n";
}
#endif

namespace {

class Call : public QEvent {
public:
    explicit Call(std::function<void()> called)
        : QEvent(User)
        , function(std::move(called))
    {
    }
    std::function<void()> function;
};

int to_qt_key(unsigned int key)
{
    static std::map<unsigned int, int> const keys { { KeyShift, Qt::Key_Shift },
        { KeyControl, Qt::Key_Control }, { KeyReturn, Qt::Key_Return },
        { KeyEscape, Qt::Key_Escape }, { KeyPageUp, Qt::Key_PageUp },
        { KeyPageDown, Qt::Key_PageDown }, { KeyEnd, Qt::Key_End }, { KeyHome, Qt::Key_Home },
        { KeyLeft, Qt::Key_Left }, { KeyUp, Qt::Key_Up }, { KeyRight, Qt::Key_Right },
        { KeyDown, Qt::Key_Down } };
    auto const found = keys.find(key);
    return found != keys.end() ? found->second : static_cast<int>(key);
}

CursorShape to_shape(Qt::CursorShape shape)
{
    static std::map<Qt::CursorShape, CursorShape> const shapes {
        { Qt::SizeFDiagCursor, CursorShape::SizeDiagonal },
        { Qt::SizeBDiagCursor, CursorShape::SizeAntidiagonal },
        { Qt::SizeHorCursor, CursorShape::SizeHorizontal },
        { Qt::SizeVerCursor, CursorShape::SizeVertical }, { Qt::SizeAllCursor, CursorShape::Move }
    };
    auto const found = shapes.find(shape);
    return found != shapes.end() ? found->second : CursorShape::Arrow;
}

QWidget *view_of(ViewFrame &frame)
{
    return qt::get_widget(frame.GetView());
}

class QtDriver : public Driver, public QObject {
public:
    BackEnd &install() override;
    bool has_task_bar() const override { return false; }
    bool has_fonts() const override { return true; }

    void input(ViewFrame &frame, UserInput const &input) override;
    void scroll(ViewFrame &frame, ScrollBar bar, int position) override;
    void close(ViewFrame &frame) override
    {
        post_to(view_of(frame), [](QWidget *view) { view->window()->close(); });
    }
    void resize(ViewFrame &frame, CXSize const &by) override
    {
        QSize const more(by.cx, by.cy);
        post_to(view_of(frame),
            [more](QWidget *view) { view->window()->resize(view->window()->size() + more); });
    }
    void lose_capture(ViewFrame &frame) override
    {
        post_to(view_of(frame), [](QWidget *view) {
            QEvent event(QEvent::WindowDeactivate);
            QCoreApplication::sendEvent(view->window(), &event);
        });
    }
    FrameContents read(ViewFrame &frame) override;

    void post(std::function<void()> function) override
    {
        QCoreApplication::postEvent(this, new Call(std::move(function)));
    }
    void answer_next(std::function<int(Modal const &)> answer) override
    {
        m_answers.push_back(std::move(answer));
        if (m_poll == 0)
            m_poll = startTimer(1);
    }
    std::unique_ptr<CEdit> make_edit(bool has_many_lines) override;
    ProgressContents read(ProgressWindow &window) override;
    void act(ProgressWindow &window, ProgressAction action) override;

protected:
    bool event(QEvent *event) override;
    void timerEvent(QTimerEvent *) override;
    bool eventFilter(QObject *, QEvent *event) override;

private:
    template <class Function> void post_to(QWidget *widget, Function function)
    {
        post([target = QPointer(widget), function] {
            if (target)
                function(target.data());
        });
    }
    void send_mouse(QWidget *view, UserInput const &input);
    void send_key(QWidget *view, UserInput const &input);
    int give_answer(Modal const &modal);
    void answer_box(QMessageBox *box);
    void answer_menu(QMenu *menu);
    void answer_text(QDialog *dialog, QPlainTextEdit const *field);

    Qt::MouseButtons m_buttons;
    Qt::KeyboardModifiers m_modifiers;
    std::deque<std::function<int(Modal const &)>> m_answers;
    int m_poll = 0; // the timer, while answers wait
    std::vector<std::unique_ptr<QWidget>> m_fields;
};

// What an earlier test left behind is no business of the next one.
BackEnd &QtDriver::install()
{
    BackEnd &back_end = qt::install_back_end();
    qApp->installEventFilter(this); // before that of the back end
    QCoreApplication::removePostedEvents(this);
    m_answers.clear();
    m_buttons = {};
    m_modifiers = {};
    return back_end;
}

bool QtDriver::eventFilter(QObject *, QEvent *event)
{
    bool const is_mouse = event->type() == QEvent::MouseMove || event->type() == QEvent::Enter
        || event->type() == QEvent::Leave;
    return is_mouse && event->spontaneous();
}

bool QtDriver::event(QEvent *event)
{
    if (event->type() != QEvent::User)
        return QObject::event(event);
    static_cast<Call *>(event)->function();
    return true;
}

// --- Input

void QtDriver::input(ViewFrame &frame, UserInput const &input)
{
    using Kind = UserInput::Kind;
    bool const is_key = input.kind == Kind::KeyDown || input.kind == Kind::KeyUp;
    post_to(view_of(frame), [this, input, is_key](QWidget *view) {
        is_key ? send_key(view, input) : send_mouse(view, input);
    });
}

void QtDriver::send_mouse(QWidget *view, UserInput const &input)
{
    using Kind = UserInput::Kind;
    QPointF const position(input.position.x, input.position.y);
    QPointF const global = view->mapToGlobal(position);
    QCursor::setPos(global.toPoint());
    if (input.kind == Kind::Wheel) {
        QWheelEvent event(position, global, QPoint(), QPoint(0, 120 * input.steps), m_buttons,
            m_modifiers, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view, &event);
        return;
    }
    bool const is_left = input.kind == Kind::LeftDown || input.kind == Kind::LeftUp;
    bool const is_down = input.kind == Kind::LeftDown || input.kind == Kind::RightDown;
    bool const is_move = input.kind == Kind::Move;
    Qt::MouseButton const button = is_move ? Qt::NoButton
        : is_left                          ? Qt::LeftButton
                                           : Qt::RightButton;
    if (!is_move)
        m_buttons.setFlag(button, is_down);
    QMouseEvent event(is_move ? QEvent::MouseMove
            : is_down         ? QEvent::MouseButtonPress
                              : QEvent::MouseButtonRelease,
        position, global, button, m_buttons, m_modifiers);
    QCoreApplication::sendEvent(view, &event);
}

void QtDriver::send_key(QWidget *view, UserInput const &input)
{
    bool const is_down = input.kind == UserInput::Kind::KeyDown;
    Qt::KeyboardModifiers const before = m_modifiers;
    if (input.key == KeyShift)
        m_modifiers.setFlag(Qt::ShiftModifier, is_down);
    if (input.key == KeyControl)
        m_modifiers.setFlag(Qt::ControlModifier, is_down);
    QKeyEvent event(is_down ? QEvent::KeyPress : QEvent::KeyRelease, to_qt_key(input.key), before);
    QCoreApplication::sendEvent(view->parentWidget(), &event);
}

void QtDriver::scroll(ViewFrame &frame, ScrollBar bar, int position)
{
    post_to(view_of(frame), [bar, position](QWidget *view) {
        auto *const area = qobject_cast<QAbstractScrollArea *>(view->parentWidget());
        QScrollBar *const dragged = bar == ScrollBar::Horizontal ? area->horizontalScrollBar()
                                                                 : area->verticalScrollBar();
        dragged->setSliderPosition(position);
    });
}

FrameContents QtDriver::read(ViewFrame &frame)
{
    QWidget *const view = view_of(frame);
    QWidget *const top = view->window();
    return { top->windowTitle().toStdWString(), top->findChild<QLabel *>()->text().toStdWString(),
        top->isEnabled(), to_shape(view->cursor().shape()) };
}

// --- Modal loops

void QtDriver::timerEvent(QTimerEvent *)
{
    if (m_answers.empty()) {
        killTimer(std::exchange(m_poll, 0));
    } else if (auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
        answer_menu(menu);
    } else {
        for (QWidget *const window : QApplication::topLevelWidgets()) {
            if (!window->isVisible())
                continue;
            if (auto *const box = qobject_cast<QMessageBox *>(window))
                return answer_box(box);
            if (auto const *const field = window->findChild<QPlainTextEdit *>())
                return answer_text(qobject_cast<QDialog *>(window), field);
        }
    }
}

int QtDriver::give_answer(Modal const &modal)
{
    auto const answer = std::move(m_answers.front());
    m_answers.pop_front();
    return answer(modal);
}

void press_escape(QWidget *widget)
{
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

void QtDriver::answer_box(QMessageBox *box)
{
    Modal modal { Modal::Kind::MessageBox, box->windowTitle().toStdWString(),
        box->text().toStdWString(), {}, 0, {} };
    QList<QAbstractButton *> buttons = box->buttons();
    std::ranges::sort(buttons, {}, [](QAbstractButton const *button) { return button->x(); });
    auto const number_of
        = [](QAbstractButton const *button) { return button->property("answer").toInt(); };
    std::ranges::transform(buttons, std::back_inserter(modal.buttons), number_of);
    for (QAbstractButton const *const button : buttons) {
        if (qobject_cast<QPushButton const *>(button)->isDefault())
            modal.default_button = number_of(button);
    }
    int const answer = give_answer(modal);
    auto const chosen = std::ranges::find(buttons, answer, number_of);
    if (chosen != buttons.end())
        (*chosen)->click();
    else
        press_escape(box);
}

void QtDriver::answer_menu(QMenu *menu)
{
    Modal modal { Modal::Kind::Menu, {}, {}, {}, 0, {} };
    for (QAction const *const action : menu->actions())
        modal.entries.push_back(action->text().toStdWString());
    int const answer = give_answer(modal);
    if (answer < 0)
        return press_escape(menu);
    menu->setActiveAction(menu->actions().at(answer));
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(menu, &event);
}

void QtDriver::answer_text(QDialog *dialog, QPlainTextEdit const *field)
{
    give_answer({ Modal::Kind::Text, dialog->windowTitle().toStdWString(),
        field->toPlainText().toStdWString(), {}, 0, {} });
    dialog->close();
}

// --- Fields and progress windows

std::unique_ptr<CEdit> QtDriver::make_edit(bool has_many_lines)
{
    if (has_many_lines)
        m_fields.push_back(std::make_unique<QPlainTextEdit>());
    else
        m_fields.push_back(std::make_unique<QLineEdit>());
    return qt::attach_edit(m_fields.back().get());
}

ProgressContents QtDriver::read(ProgressWindow &window)
{
    QWidget const *const dialog = qt::get_widget(window);
    auto const is_shown = [dialog](QWidget const *widget) { return widget->isVisibleTo(dialog); };
    auto const text_of = [dialog](char const *name) {
        return dialog->findChild<QLabel *>(QLatin1String(name))->text().toStdWString();
    };
    ProgressContents contents {};
    contents.is_shown = dialog->isVisible();
    contents.title = dialog->windowTitle().toStdWString();
    contents.line = text_of("line");
    contents.status = text_of("status");
    for (std::size_t i = 0; i < 2; ++i) {
        QString const number = QString::number(i);
        auto const *const bar = dialog->findChild<QProgressBar *>("bar" + number);
        auto const *const label = dialog->findChild<QLabel *>("label" + number);
        contents.bars.at(i) = { is_shown(bar), bar->maximum() == 0, bar->value(),
            label->text().toStdWString(), is_shown(label) };
    }
    auto const *const cancel = dialog->findChild<QPushButton *>("cancel");
    contents.is_cancel_shown = is_shown(cancel);
    contents.is_cancel_enabled = cancel->isEnabled();
    contents.cancel_text = cancel->text().toStdWString();
    auto const *const ok = dialog->findChild<QPushButton *>("ok");
    contents.is_ok_shown = is_shown(ok);
    contents.ok_text = ok->text().toStdWString();
    contents.ok_width = ok->width();
    contents.ok_offset = ok->geometry().center().x() - dialog->rect().center().x();
    contents.task_bar = -1;
    return contents;
}

void QtDriver::act(ProgressWindow &window, ProgressAction action)
{
    post_to(qt::get_widget(window), [action](QWidget *dialog) {
        if (action == ProgressAction::Escape)
            press_escape(dialog);
        else if (action == ProgressAction::CloseBox)
            dialog->close();
        else
            dialog->findChild<QPushButton *>(action == ProgressAction::Ok ? "ok" : "cancel")
                ->click();
    });
}

} // namespace

std::unique_ptr<Driver> kor_test::make_driver()
{
    return std::make_unique<QtDriver>();
}
