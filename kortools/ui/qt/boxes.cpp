// SPDX-License-Identifier: MIT
#include "kortools/ui/qt/boxes.h"

#include "kortools/ui/qt/menu.h"
#include "kortools/ui/qt/window_thread.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace kortools::ui::qt {
namespace {

constexpr QSize text_size(640, 400);

struct BoxButton {
    int answer;
    QDialogButtonBox::StandardButton button; // has a text of Qt's; NoButton: ours
    char const *text;
};

constexpr BoxButton known_buttons[] = {
    { 1, QDialogButtonBox::Ok, nullptr },
    { 2, QDialogButtonBox::Cancel, nullptr },
    { 3, QDialogButtonBox::Abort, nullptr },
    { 4, QDialogButtonBox::Retry, nullptr },
    { 5, QDialogButtonBox::Ignore, nullptr },
    { 6, QDialogButtonBox::Yes, nullptr },
    { 7, QDialogButtonBox::No, nullptr },
    { 10, QDialogButtonBox::NoButton, "&Try Again" },
    { 11, QDialogButtonBox::NoButton, "&Continue" },
};

QString get_button_text(BoxButton const &known)
{
    return known.text ? QString::fromLatin1(known.text)
                      : QDialogButtonBox(known.button).button(known.button)->text();
}

// The answers of each set of buttons, by the low four bits of the flags.
constexpr std::array<std::array<int, 3>, 7> button_sets { { { 1 }, { 1, 2 }, { 3, 4, 5 },
    { 6, 7, 2 }, { 6, 7 }, { 4, 2 }, { 2, 10, 11 } } };

QMessageBox::Icon get_icon(unsigned int flags)
{
    switch (flags & 0xF0U) {
    case 0x10:
        return QMessageBox::Critical;
    case 0x20:
        return QMessageBox::Question;
    case 0x30:
        return QMessageBox::Warning;
    case 0x40:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

// Closed by no key and no close box where the buttons have no answer for that.
class Box : public QMessageBox {
public:
    Box(QString const &text, QString const &title, unsigned int flags)
    {
        setTextFormat(Qt::PlainText);
        setText(text);
        setWindowTitle(title);
        setIcon(get_icon(flags));
        setWindowModality(Qt::ApplicationModal);
        std::size_t const set = flags & 0xFU;
        unsigned int const preferred = flags >> 8 & 0xFU;
        unsigned int count = 0;
        for (int const answer : button_sets[set < button_sets.size() ? set : 0]) {
            if (answer == 0)
                continue;
            QPushButton *const button = add(answer);
            if (count == 0 || count == preferred)
                setDefaultButton(button);
            if (answer == 2 || set == 0)
                m_escape = answer;
            ++count;
        }
    }

    int get_answer() const { return m_answer; }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() != Qt::Key_Escape)
            QMessageBox::keyPressEvent(event);
        else if (m_escape != 0)
            finish(m_escape);
    }
    void closeEvent(QCloseEvent *event) override
    {
        event->ignore();
        if (m_escape != 0)
            finish(m_escape);
    }

private:
    // All have one role, as each desktop orders others in its own way.
    QPushButton *add(int answer)
    {
        auto const *const known = std::ranges::find(known_buttons, answer, &BoxButton::answer);
        QPushButton *const button = addButton(get_button_text(*known), ActionRole);
        button->setProperty("answer", answer); // for those who look at the box
        QObject::connect(button, &QPushButton::clicked, [this, answer] { finish(answer); });
        return button;
    }

    void finish(int answer)
    {
        m_answer = answer;
        hide();
    }

    int m_escape = 0; // the answer to Escape; 0: none
    int m_answer = 0;
};

} // namespace

// Without an answer, as the program ends or a handler threw, it is that to Escape, or the default.
int show_box(QString const &text, QString const &title, unsigned int flags)
{
    Box box(text, title, flags);
    put_above(box, QApplication::activeWindow());
    box.show();
    box.raise();
    box.activateWindow();
    WindowThread::get().serve_while([&box] { return box.isVisible(); });
    if (box.get_answer() == 0)
        box.close();
    return box.get_answer() != 0 ? box.get_answer()
                                 : box.defaultButton()->property("answer").toInt();
}

void show_text(QWidget *parent, QString const &title, QString const &text)
{
    QDialog dialog;
    dialog.setWindowTitle(title);
    auto *const field = new QPlainTextEdit(text, &dialog);
    field->setReadOnly(true);
    field->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto *const close = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    QObject::connect(close, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto *const layout = new QVBoxLayout(&dialog);
    layout->addWidget(field);
    layout->addWidget(close);
    dialog.resize(text_size);
    QPointer<QWidget> const disabled(parent ? parent->window() : nullptr);
    bool const was_enabled = disabled && disabled->isEnabled();
    put_above(dialog, disabled);
    if (disabled)
        disabled->setEnabled(false);
    dialog.show();
    WindowThread::get().serve_while([&dialog] { return dialog.isVisible(); });
    if (disabled)
        disabled->setEnabled(was_enabled);
}

BoxQueue::BoxQueue()
{
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this,
        [this] { on_awake(); });
}

int BoxQueue::show(QString const &text, QString const &title, unsigned int flags)
{
    Request request { text, title, flags };
    std::unique_lock lock(m_lock);
    m_waiting.push_back(&request);
    QAbstractEventDispatcher::instance(thread())->wakeUp();
    m_answered.wait(lock, [&request] { return request.is_answered; });
    return request.answer;
}

// Not a place to run a loop: the boxes are shown by an event, which the main thread allocates.
void BoxQueue::on_awake()
{
    std::lock_guard const lock(m_lock);
    if (m_waiting.empty() || m_is_posted)
        return;
    m_is_posted = true;
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

BoxQueue::Request *BoxQueue::take()
{
    std::lock_guard const lock(m_lock);
    if (m_waiting.empty())
        return nullptr;
    Request *const request = m_waiting.front();
    m_waiting.pop_front();
    return request;
}

bool BoxQueue::event(QEvent *event)
{
    if (event->type() != QEvent::User)
        return QObject::event(event);
    m_is_posted = false; // those that come while a box is shown are shown, too
    while (Request *const request = take()) {
        int const answer = show_box(request->text, request->title, request->flags);
        std::lock_guard const lock(m_lock);
        request->answer = answer;
        request->is_answered = true;
        m_answered.notify_all();
    }
    return true;
}

} // namespace kortools::ui::qt
