// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <utility>

using Work = std::function<bool()>;

inline bool call_work(void *work)
{
    return (*static_cast<Work *>(work))();
}

// A thread that the test deletes, after it has ended.
template <class Thread> struct Kept {
    Work m_work;
    std::unique_ptr<Thread> m_thread;

    explicit Kept(Work work, unsigned flags = 0)
        : m_work(std::move(work))
        , m_thread(std::make_unique<Thread>(call_work, &m_work))
    {
        Thread::BeginThread(m_thread.get(), {}, flags | Thread::keepAutoDelete);
    }
    ~Kept()
    {
        if (m_thread)
            m_thread->WaitForEnd();
    }
    Kept(Kept const &) = delete;
    Kept &operator=(Kept const &) = delete;
    Thread *operator->() const { return m_thread.get(); }
};
