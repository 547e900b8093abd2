// SPDX-License-Identifier: MIT
// Message boxes and texts that wait for the user.
#pragma once

#include <QWidget>

#include <condition_variable>
#include <deque>
#include <mutex>

namespace kortools::ui::qt {

// On the main thread. Exceptions of handlers stay in WindowThread::calls.
int show_box(QString const &text, QString const &title, unsigned int flags);

void show_text(QWidget *parent, QString const &title, QString const &text);

// The boxes of other threads, which wait until the main one serves its events. What both threads
// touch is under the lock; Qt is only told to wake up.
class BoxQueue : public QObject {
public:
    BoxQueue(); // on the main thread

    int show(QString const &text, QString const &title, unsigned int flags); // on any other

protected:
    bool event(QEvent *event) override;

private:
    struct Request {
        QString text;
        QString title;
        unsigned int flags = 0;
        bool is_answered = false;
        int answer = 0;
    };

    Request *take();
    void on_awake();

    std::mutex m_lock;
    std::condition_variable m_answered;
    std::deque<Request *> m_waiting; // they lie in the frames of the threads
    bool m_is_posted = false;        // main thread only
};

} // namespace kortools::ui::qt
