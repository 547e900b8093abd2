// SPDX-License-Identifier: MIT
#include "kortools/app/custom_thread.h"
#include "kortools/app/thread.h"
#include "tests/app/kept_thread.h"
#include "tests/support/semaphore.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <pthread.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace {

using KeptThread = Kept<CXThread>;
using std::chrono::milliseconds;

// Counts as fast as it can until it is told to end.
struct Counter {
    std::atomic<long> m_count { 0 };
    std::atomic<bool> m_end { false };
    KeptThread m_thread;

    explicit Counter(unsigned flags = 0)
        : m_thread(
            [this] {
                while (!m_end) {
                    ++m_count;
                    if (m_count % 64 == 0)
                        CXThread::SleepCurrentThread(0);
                }
                return true;
            },
            flags)
    {
    }
    ~Counter()
    {
        m_end = true;
        while (m_thread->IsSuspended())
            m_thread->ResumeThread();
    }
    CXThread *operator->() const { return m_thread.m_thread.get(); }

    bool moves()
    {
        long const before = m_count;
        for (int i = 0; i < 2000 && m_count == before; ++i)
            std::this_thread::sleep_for(milliseconds(1));
        return m_count != before;
    }
    bool stands(milliseconds time)
    {
        long const before = m_count;
        std::this_thread::sleep_for(time);
        return m_count == before;
    }
};

} // namespace

TEST(ThreadControl, ASuspendedThreadStandsStillUntilItIsResumedAsOften)
{
    Counter counter;
    EXPECT_TRUE(counter->ResumeThread()) << "nothing to resume is no failure";
    EXPECT_TRUE(counter.moves());
    EXPECT_TRUE(counter->SuspendThread());
    EXPECT_TRUE(counter.stands(milliseconds(30)));
    EXPECT_TRUE(counter->SuspendThread());
    EXPECT_TRUE(counter->IsSuspended());
    EXPECT_TRUE(counter->ResumeThread());
    EXPECT_FALSE(counter->IsSuspended()) << "a bit, not the count";
    EXPECT_TRUE(counter.stands(milliseconds(30)));
    EXPECT_FALSE(counter->WaitForEnd(10));
    EXPECT_TRUE(counter->ResumeThread());
    EXPECT_FALSE(counter->IsSuspended());
    EXPECT_TRUE(counter.moves());

    // Faster than the thread can follow: it has stopped each time all the same.
    for (int i = 0; i < 300; ++i) {
        ASSERT_TRUE(counter->SuspendThread());
        ASSERT_TRUE(counter.stands(milliseconds(i % 100 == 0 ? 5 : 0))) << "round " << i;
        ASSERT_TRUE(counter->ResumeThread());
    }
    EXPECT_TRUE(counter.moves());
}

TEST(ThreadControl, SeveralThreadsMaySuspendOne)
{
    Counter counter;
    std::vector<std::thread> others;
    for (unsigned seed = 0; seed < 4; ++seed) {
        others.emplace_back([&counter, seed] {
            std::mt19937 random(seed);
            for (int i = 0; i < 100; ++i) {
                EXPECT_TRUE(counter->SuspendThread());
                EXPECT_TRUE(counter.stands(milliseconds(random() % 16 == 0 ? 1 : 0)));
                EXPECT_TRUE(counter->ResumeThread());
            }
        });
    }
    for (std::thread &other : others)
        other.join();
    EXPECT_FALSE(counter->IsSuspended());
    EXPECT_TRUE(counter.moves());
}

TEST(ThreadControl, AThreadMayEndWhileItIsSuspended)
{
    for (int round = 0; round < 300; ++round) {
        std::atomic<bool> goes { false };
        KeptThread const thread([&goes, round] {
            goes = true;
            for (std::atomic<int> i { 0 }; i < round % 100 * 20; ++i) { }
            return true;
        });
        while (!goes)
            std::this_thread::yield();
        while (thread->SuspendThread() && thread->ResumeThread()) { }
        EXPECT_TRUE(thread->WaitForEnd()) << "only an ended thread cannot be suspended";
    }
}

TEST(ThreadControl, AThreadMayBeginSuspendedAndSuspendItself)
{
    {
        Counter const never_run(CXThread::beginSuspended);
        EXPECT_TRUE(never_run->IsSuspended() && never_run->IsValidThread());
        EXPECT_NE(never_run->GetThreadID(), 0U);
        std::this_thread::sleep_for(milliseconds(20));
        EXPECT_EQ(never_run.m_count, 0);
    }
    std::atomic<int> step { 0 };
    CXThread *self = nullptr;
    Semaphore known;
    KeptThread const thread([&] {
        known.acquire();
        step = 1;
        EXPECT_TRUE(self->SuspendThread());
        step = 2;
        return true;
    });
    self = thread.m_thread.get();
    known.release();
    while (!thread->IsSuspended())
        std::this_thread::yield();
    EXPECT_FALSE(thread->WaitForEnd(30));
    EXPECT_EQ(step, 1);
    EXPECT_TRUE(thread->ResumeThread());
    while (!thread->WaitForEnd(50))
        thread->ResumeThread(); // it had not stopped yet, on a busy machine
    EXPECT_EQ(step, 2);
    EXPECT_FALSE(thread->SuspendThread() || thread->ResumeThread()) << "it has ended";
}

TEST(ThreadControl, ASuspendedThreadMayBeBlockedInASystemCall)
{
    std::mutex mutex;
    std::condition_variable changed;
    bool goes = false;
    KeptThread const thread([&] {
        CXThread::SleepCurrentThread(60);
        std::unique_lock lock(mutex);
        changed.wait(lock, [&goes] { return goes; });
        return true;
    });
    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(thread->SuspendThread() && thread->ResumeThread());
        std::this_thread::sleep_for(milliseconds(5));
    }
    EXPECT_FALSE(thread->WaitForEnd(0));
    {
        std::lock_guard const lock(mutex);
        goes = true;
    }
    changed.notify_one();
    EXPECT_TRUE(thread->WaitForEnd());
    EXPECT_TRUE(thread->GetThreadResult());
}

TEST(ThreadControl, WaitsForTheEndOfThreadLocalObjectsToo)
{
    static std::atomic<bool> s_destroyed;
    struct Slow {
        ~Slow()
        {
            std::this_thread::sleep_for(milliseconds(30));
            s_destroyed = true;
        }
        int value = 1;
    };
    for (bool const keeps : { true, false }) { // an object begins again
        s_destroyed = false;
        Work work = [] {
            static thread_local Slow s_slow;
            return s_slow.value == 1;
        };
        CXThread thread(call_work, &work);
        for (int i = 0; i < 2; ++i) {
            ASSERT_EQ(CXThread::BeginThread(&thread, {}, CXThread::keepAutoDelete), &thread);
            while (!keeps && !thread.IsTerminated())
                std::this_thread::yield();
            EXPECT_TRUE(thread.WaitForEnd());
            EXPECT_TRUE(s_destroyed.exchange(false) && thread.GetThreadResult());
        }
    }
}

TEST(ThreadControl, BeginsAgainOnlyWhenItHasEnded)
{
    Semaphore go;
    Work work = [&] {
        go.acquire();
        return true;
    };
    CXThread thread(call_work, &work);
    ASSERT_NE(CXThread::BeginThread(&thread, {}, CXThread::keepAutoDelete), nullptr);
    EXPECT_EQ(CXThread::BeginThread(&thread), nullptr) << "it runs, and is not deleted";
    thread.SetCancel();
    go.release();
    while (!thread.IsTerminated())
        std::this_thread::yield();
    ASSERT_NE(CXThread::BeginThread(&thread, {}, CXThread::keepAutoDelete), nullptr);
    EXPECT_FALSE(thread.ShouldCancel() || thread.IsTerminated());
    go.release();
    EXPECT_TRUE(thread.WaitForEnd());
}

// As the system has it.
static int get_system_priority(CXThread const &thread)
{
#ifdef _WIN32
    return GetThreadPriority(thread.GetThreadHandle());
#else
    return -getpriority(PRIO_PROCESS, static_cast<id_t>(thread.GetThreadID()));
#endif
}

TEST(ThreadControl, PrioritiesAreTheSystems)
{
    Counter const normal;
    Counter const low(CXThread::beginSuspended);
    EXPECT_EQ(normal->GetThreadPriority(), xThreadPriorityNormal);
    EXPECT_TRUE(low->SetThreadPriority(xThreadPriorityBelowNormal));
    int const below = get_system_priority(*low.operator->());
    EXPECT_LT(below, get_system_priority(*normal.operator->()));
    EXPECT_TRUE(low->SetThreadPriority(xThreadPriorityLowest));
    EXPECT_LT(get_system_priority(*low.operator->()), below);
    EXPECT_EQ(low->GetThreadPriority(), xThreadPriorityLowest);

    bool const raised = normal->SetThreadPriority(xThreadPriorityHighest); // may be refused
    EXPECT_EQ(normal->GetThreadPriority(), raised ? xThreadPriorityHighest : xThreadPriorityNormal);
    EXPECT_TRUE(normal->SetThreadPriority(xThreadPriorityIdle));
    EXPECT_EQ(normal->GetThreadPriority(), xThreadPriorityIdle);
    EXPECT_FALSE(normal->SetThreadPriority(static_cast<xThreadPriority>(7)));
    EXPECT_EQ(normal->GetThreadPriority(), xThreadPriorityIdle);

    Work work = [] { return true; };
    CXThread begun(call_work, &work);
    ASSERT_TRUE(CXThread::BeginThread(
        &begun, xThreadPriorityBelowNormal, CXThread::keepAutoDelete | CXThread::beginSuspended));
    EXPECT_EQ(begun.GetThreadPriority(), xThreadPriorityBelowNormal);
    EXPECT_EQ(get_system_priority(begun), below);
    EXPECT_TRUE(begun.ResumeThread() && begun.WaitForEnd());
    EXPECT_FALSE(begun.SetThreadPriority(xThreadPriorityNormal)) << "it has ended";
}

// Uses `kilobytes` of stack in frames of 32.
static int use_stack(int kilobytes)
{
    char volatile frame[32 * 1024];
    frame[0] = 1;
    frame[sizeof frame - 1] = 1;
    return kilobytes <= 32 ? frame[0] : use_stack(kilobytes - 32) + frame[sizeof frame - 1];
}

TEST(ThreadControl, TheStackIsAsLargeAsAskedFor)
{
    for (auto [size, used] : std::vector<std::pair<unsigned, int>> {
             { 64U << 20, 50 << 10 }, { 1, 0 }, { 300001, 64 } }) {
        int result = 0;
        Work work = [&result, kilobytes = used] {
            result = kilobytes == 0 ? 1 : use_stack(kilobytes);
            return true;
        };
        CXThread thread(call_work, &work);
        ASSERT_TRUE(CXThread::BeginThread(&thread, {}, CXThread::keepAutoDelete, size)) << size;
        EXPECT_TRUE(thread.WaitForEnd());
        EXPECT_EQ(result, std::max(used / 32, 1));
    }
}

TEST(ThreadControl, TheHandleIsTheSystems)
{
    Semaphore go;
    Kept<CCustomThread> const thread([&] {
        go.acquire();
        CCustomThread::SetCurrentThreadName(L"");
        return true;
    });
    thread->SetThreadName(L"t\u00E9st with many letters");
    EXPECT_EQ(thread->GetThreadName(), L"t\u00E9st with many letters");
#ifdef _WIN32
    EXPECT_EQ(WaitForSingleObject(thread->GetThreadHandle(), 0), WAIT_TIMEOUT);
    EXPECT_EQ(GetThreadId(thread->GetThreadHandle()), thread->GetThreadID());
#else
    char name[16] = {};
    pthread_getname_np(reinterpret_cast<pthread_t>(thread->GetThreadHandle()), name, sizeof name);
    EXPECT_STREQ(name, "t\u00E9st with many");
#endif
    go.release();
}

#ifndef _WIN32
TEST(ThreadControl, ABodyMayLeaveItsThread)
{
    KeptThread const thread([]() -> bool { pthread_exit(nullptr); });
    EXPECT_TRUE(thread->WaitForEnd());
    EXPECT_TRUE(thread->IsTerminated());
    EXPECT_FALSE(thread->GetThreadResult());
}

// A thread that waits for its vforked child cannot be interrupted, like one that waits for a disk.
TEST(ThreadControl, AThreadThatTheKernelHoldsCountsAsStopped)
{
#ifdef __SANITIZE_THREAD__ // it keeps signals back until the child has ended
    constexpr milliseconds limit(60'000);
#else
    constexpr milliseconds limit(800);
#endif
    std::atomic<int> steps { 0 };
    KeptThread const thread([&] {
        ++steps;
        pid_t const child = vfork();
        if (child == 0) {
            usleep(1'000'000);
            _exit(0);
        }
        ++steps;
        return waitpid(child, nullptr, 0) == child;
    });
    while (steps == 0)
        std::this_thread::yield();
    auto const start = std::chrono::steady_clock::now();
    EXPECT_TRUE(thread->SuspendThread());
    EXPECT_LT(std::chrono::steady_clock::now() - start, limit);
    int const before = steps;
    EXPECT_FALSE(thread->WaitForEnd(1400));
    EXPECT_EQ(steps, before);
    EXPECT_TRUE(thread->ResumeThread() && thread->WaitForEnd());
    EXPECT_TRUE(thread->GetThreadResult());
}
#endif
