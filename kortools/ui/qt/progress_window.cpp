// SPDX-License-Identifier: MIT
#include "kortools/ui/qt/progress_window.h"

#include "kortools/ui/qt/messages.h"
#include "kortools/ui/qt/surface.h"
#include "kortools/ui/qt/text.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <climits>
#include <map>
#include <utility>

namespace kortools::ui::qt {
namespace {

constexpr int full = 100;        // percent
constexpr int first_step = 10;   // percent
constexpr int least_width = 400; // pixels

struct Bar {
    QLabel *label;
    QProgressBar *bar;
    int position = 0;
    int step = first_step;
    bool is_marquee = false;
};

class ProgressDialog : public QDialog {
public:
    ProgressDialog(QWidget *parent, ProgressWindowHandler &handler);

    void forget_handler() { m_handler = nullptr; }
    bool is_in_handler() const { return m_depth != 0; }
    void show_bar(Bar &bar, bool show) { bar.label->setVisible(show), bar.bar->setVisible(show); }
    void update_bar(Bar const &bar);
    void start_timer(unsigned int id, unsigned int milliseconds);
    void stop_timer(unsigned int id);

    QLabel *const line = make_label("line");
    std::array<Bar, 2> bars;
    QLabel *const status = make_label("status");
    QPushButton *const cancel = make_button("cancel");
    QPushButton *const ok = make_button("ok");

protected:
    // Escape and the close box press the button that is there, and do nothing where it could not be
    // pressed.
    void reject() override;
    void closeEvent(QCloseEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    template <class Call> void tell(Call call)
    {
        if (!m_handler)
            return;
        ++m_depth;
        WindowThread::get().calls.call([&] { call(*m_handler); });
        --m_depth;
    }
    QLabel *make_label(char const *name);
    QPushButton *make_button(char const *name);

    ProgressWindowHandler *m_handler;
    int m_depth = 0;                      // calls of the handler that have not returned
    std::map<unsigned int, int> m_timers; // our numbers and Qt's
};

QLabel *ProgressDialog::make_label(char const *name)
{
    auto *const label = new QLabel(this);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    return label;
}

QPushButton *ProgressDialog::make_button(char const *name)
{
    auto *const button = new QPushButton(this);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}

ProgressDialog::ProgressDialog(QWidget *parent, ProgressWindowHandler &handler)
    : QDialog(parent)
    , m_handler(&handler)
{
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(line);
    for (std::size_t i = 0; i < bars.size(); ++i) {
        bars[i].label = make_label(i == 0 ? "label0" : "label1");
        bars[i].bar = new QProgressBar(this);
        bars[i].bar->setObjectName(QLatin1String(i == 0 ? "bar0" : "bar1"));
        bars[i].bar->setTextVisible(false); // the label tells
        layout->addWidget(bars[i].label);
        layout->addWidget(bars[i].bar);
        update_bar(bars[i]);
    }
    show_bar(bars[1], false);
    layout->addWidget(status);
    layout->addWidget(ok, 0, Qt::AlignHCenter);
    layout->addWidget(cancel, 0, Qt::AlignRight);
    ok->hide();
    setMinimumWidth(least_width);
    setWindowModality(Qt::NonModal);
    QObject::connect(cancel, &QPushButton::clicked, this,
        [this] { tell([](ProgressWindowHandler &told) { told.OnCancel(); }); });
    QObject::connect(ok, &QPushButton::clicked, this,
        [this] { tell([](ProgressWindowHandler &told) { told.OnOk(); }); });
}

void ProgressDialog::update_bar(Bar const &bar)
{
    bar.bar->setRange(0, bar.is_marquee ? 0 : full);
    if (!bar.is_marquee)
        bar.bar->setValue(bar.position);
}

void ProgressDialog::reject()
{
    QPushButton *const button = ok->isVisibleTo(this) ? ok : cancel;
    if (button->isVisibleTo(this))
        button->click();
}

void ProgressDialog::closeEvent(QCloseEvent *event)
{
    event->ignore();
    reject();
}

void ProgressDialog::start_timer(unsigned int id, unsigned int milliseconds)
{
    stop_timer(id);
    m_timers[id] = startTimer(static_cast<int>(std::clamp(milliseconds, 1U, unsigned(INT_MAX))));
}

void ProgressDialog::stop_timer(unsigned int id)
{
    auto const found = m_timers.find(id);
    if (found == m_timers.end())
        return;
    killTimer(found->second);
    m_timers.erase(found);
}

void ProgressDialog::timerEvent(QTimerEvent *event)
{
    auto const found = std::ranges::find(
        m_timers, event->timerId(), [](auto const &timer) { return timer.second; });
    if (found == m_timers.end())
        return QDialog::timerEvent(event);
    unsigned int const id = found->first;
    report_timer(*this, id);
    tell([id](ProgressWindowHandler &handler) { handler.OnTimer(id); });
}

class QtProgressWindow : public ProgressWindow {
public:
    QtProgressWindow(QWidget *parent, ProgressWindowHandler &handler)
        : m_dialog(new ProgressDialog(parent, handler))
    {
    }

    // A handler that runs now has Qt's frames below it, which use the dialog.
    ~QtProgressWindow() override
    {
        if (!m_dialog)
            return;
        m_dialog->forget_handler();
        m_dialog->hide();
        if (m_dialog->is_in_handler())
            m_dialog->deleteLater();
        else
            delete m_dialog.data();
    }

    QWidget *get_widget() const { return m_dialog; }

    void Show(bool show) override { m_dialog->setVisible(show); }
    bool IsVisible() const override { return m_dialog->isVisible(); }
    void SetTitle(wchar_t const *text) override
    {
        m_dialog->setWindowTitle(to_qt(text));
        m_dialog->line->setText(to_qt(text));
    }
    void SetStatus(wchar_t const *text) override { m_dialog->status->setText(to_qt(text)); }

    void ShowBar(int bar, bool show) override { m_dialog->show_bar(get(bar), show); }
    void SetBarPos(int bar, int percent) override
    {
        set_position(bar, std::clamp(percent, 0, full));
    }
    int GetBarPos(int bar) const override { return get(bar).position; }
    void SetBarStep(int bar, int percent) override { get(bar).step = percent; }
    void StepBar(int bar) override
    {
        int const next = get(bar).position + get(bar).step % full;
        set_position(bar, next > full ? next - full : std::max(next, 0));
    }
    void SetBarText(int bar, wchar_t const *text) override { get(bar).label->setText(to_qt(text)); }
    void SetMarquee(int bar, bool on) override
    {
        get(bar).is_marquee = on;
        m_dialog->update_bar(get(bar));
    }

    void SetCancelText(wchar_t const *text) override { m_dialog->cancel->setText(to_qt(text)); }
    void EnableCancel(bool enable) override { m_dialog->cancel->setEnabled(enable); }
    void ShowCancel(bool show) override
    {
        m_dialog->cancel->setVisible(show && !m_dialog->ok->isVisibleTo(m_dialog));
    }
    void ShowOkButton(wchar_t const *text, int width) override
    {
        m_dialog->ok->setText(to_qt(text));
        m_dialog->ok->setFixedWidth(width);
        m_dialog->ok->show();
        m_dialog->ok->setDefault(true);
        m_dialog->cancel->hide();
    }
    void SetTaskbarPos(int) override { } // see the list at the head of back_end.cpp

    void UpdateWindow() override
    {
        m_dialog->update();
        update_now(*m_dialog);
    }

    void SetTimer(unsigned int id, unsigned int milliseconds) override
    {
        m_dialog->start_timer(id, milliseconds);
    }
    void KillTimer(unsigned int id) override { m_dialog->stop_timer(id); }

private:
    Bar &get(int bar) const { return m_dialog->bars[bar == 0 ? 0 : 1]; }
    void set_position(int bar, int position)
    {
        get(bar).position = position;
        m_dialog->update_bar(get(bar));
    }

    QPointer<ProgressDialog> m_dialog; // null once the parent's window was destroyed
};

} // namespace

std::unique_ptr<ProgressWindow> make_progress_window(
    QWidget *parent, ProgressWindowHandler &handler)
{
    return std::make_unique<QtProgressWindow>(parent, handler);
}

QWidget *find_progress_widget(ProgressWindow &window)
{
    auto *const own = dynamic_cast<QtProgressWindow *>(&window);
    return own ? own->get_widget() : nullptr;
}

} // namespace kortools::ui::qt
