// SPDX-License-Identifier: MIT
#include "kortools/app/custom_thread.h"
#include "kortools/app/thread.h"
#include "tests/app/kept_thread.h"
#include "tests/support/semaphore.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
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
    EXPECT_TRUE(counter->SuspendThread() && counter.stands(milliseconds(30)));
    EXPECT_TRUE(counter->SuspendThread() && counter->IsSuspended());
    EXPECT_TRUE(counter->ResumeThread() && counter.stands(milliseconds(30)));
    EXPECT_FALSE(counter->IsSuspended()) << "a bit, not the count";
    EXPECT_FALSE(counter->WaitForEnd(10));
    EXPECT_TRUE(counter->ResumeThread() && counter.moves());
}

TEST(ThreadControl, SeveralThreadsMaySuspendOneFasterThanItCanFollow)
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
    EXPECT_TRUE(!counter->IsSuspended() && counter.moves());
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

TEST(ThreadControl, AThreadMaySuspendItself)
{
    std::atomic<int> step { 0 };
    CXThread *self = nullptr;
    Work work = [&] {
        step = 1;
        EXPECT_TRUE(self->SuspendThread());
        step = 2;
        return true;
    };
    CXThread thread(call_work, &work);
    self = &thread;
    CXThread::BeginThread(self, {}, CXThread::keepAutoDelete);
    while (!thread.IsSuspended())
        std::this_thread::yield();
    EXPECT_FALSE(thread.WaitForEnd(30));
    EXPECT_EQ(step, 1);
    while (!thread.WaitForEnd(50))
        thread.ResumeThread(); // it may not have stopped yet, on a busy machine
    EXPECT_EQ(step, 2);
    EXPECT_FALSE(thread.SuspendThread() || thread.ResumeThread()) << "it has ended";
}

TEST(ThreadControl, ASuspendedThreadMayBeBlockedInASystemCall)
{
    Semaphore go;
    KeptThread const thread([&] {
        CXThread::SleepCurrentThread(60);
        go.acquire();
        return true;
    });
    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(thread->SuspendThread() && thread->ResumeThread());
        std::this_thread::sleep_for(milliseconds(5));
    }
    EXPECT_FALSE(thread->WaitForEnd(0));
    go.release();
    EXPECT_TRUE(thread->WaitForEnd() && thread->GetThreadResult());
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
        bool value = true;
    };
    Work work = [] {
        static thread_local Slow s_slow;
        return s_slow.value;
    };
    CXThread thread(call_work, &work);
    for (int i = 0; i < 4; ++i) { // an object begins again
        ASSERT_EQ(CXThread::BeginThread(&thread, {}, CXThread::keepAutoDelete), &thread);
        while (i % 2 == 0 && !thread.IsTerminated())
            std::this_thread::yield();
        EXPECT_TRUE(thread.WaitForEnd());
        EXPECT_TRUE(s_destroyed.exchange(false) && thread.GetThreadResult());
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
    for (int i = 0; i < 2; ++i) {
        ASSERT_NE(CXThread::BeginThread(&thread, {}, CXThread::keepAutoDelete), nullptr);
        EXPECT_FALSE(thread.ShouldCancel() || thread.IsTerminated());
        EXPECT_EQ(CXThread::BeginThread(&thread), nullptr) << "it runs, and is not deleted";
        thread.SetCancel();
        go.release();
        while (!thread.IsTerminated())
            std::this_thread::yield();
    }
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

TEST(ThreadControl, PrioritiesAreTheSystemsAlsoBeforeTheFirstStep)
{
    Counter const normal;
    std::atomic<bool> has_run { false };
    Work work = [&] { return has_run = true; };
    CXThread low(call_work, &work);
    ASSERT_TRUE(CXThread::BeginThread(
        &low, xThreadPriorityBelowNormal, CXThread::keepAutoDelete | CXThread::beginSuspended));
    EXPECT_TRUE(low.IsSuspended() && low.IsValidThread() && low.GetThreadID() != 0);
    EXPECT_EQ(low.GetThreadPriority(), xThreadPriorityBelowNormal);
    int const below = get_system_priority(low);
    EXPECT_LT(below, get_system_priority(*normal.operator->()));
    EXPECT_TRUE(low.SetThreadPriority(xThreadPriorityLowest));
    EXPECT_LT(get_system_priority(low), below);
    EXPECT_FALSE(low.SetThreadPriority(static_cast<xThreadPriority>(7)));
    EXPECT_EQ(low.GetThreadPriority(), xThreadPriorityLowest);
    bool const raised = normal->SetThreadPriority(xThreadPriorityHighest); // may be refused
    EXPECT_EQ(normal->GetThreadPriority(), raised ? xThreadPriorityHighest : xThreadPriorityNormal);
    EXPECT_FALSE(low.WaitForEnd(20) || has_run);
    EXPECT_TRUE(low.ResumeThread() && low.WaitForEnd() && has_run);
    EXPECT_FALSE(low.SetThreadPriority(xThreadPriorityNormal)) << "it has ended";
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
    for (auto [size, kilobytes] :
        { std::pair(64U << 20, 50 << 10), std::pair(1U, 0), std::pair(300001U, 64) }) {
        int result = 0;
        Work work = [&result, used = kilobytes] {
            result = used == 0 ? 1 : use_stack(used);
            return true;
        };
        CXThread thread(call_work, &work);
        ASSERT_TRUE(CXThread::BeginThread(&thread, {}, CXThread::keepAutoDelete, size)) << size;
        EXPECT_TRUE(thread.WaitForEnd());
        EXPECT_EQ(result, kilobytes == 0 ? 1 : kilobytes / 32);
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
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "signals are kept back until the child has ended";
#endif
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::atomic<int> steps { 0 };
    KeptThread const thread([&] {
        ++steps;
        pid_t const child = vfork();
        if (child == 0) {
            char byte;
            _exit(read(ends[0], &byte, 1) == 1 ? 0 : 1);
        }
        ++steps;
        return waitpid(child, nullptr, 0) == child;
    });
    while (steps == 0)
        std::this_thread::yield();
    std::this_thread::sleep_for(milliseconds(50));
    EXPECT_TRUE(thread->SuspendThread());
    EXPECT_EQ(write(ends[1], "x", 1), 1); // the child ends only now
    EXPECT_FALSE(thread->WaitForEnd(100));
    EXPECT_EQ(steps, 1);
    EXPECT_TRUE(thread->ResumeThread() && thread->WaitForEnd() && thread->GetThreadResult());
    close(ends[0]);
    close(ends[1]);
}
#endif
