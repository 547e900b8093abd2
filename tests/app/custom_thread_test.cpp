// SPDX-License-Identifier: MIT
#include "kortools/app/custom_thread.h"

#include "kortools/app/thread_registry.h"
#include "tests/app/kept_thread.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace {

using KeptThread = Kept<CCustomThread>;

// Works until it is asked to end.
class Worker : public CCustomThread {
public:
    using CCustomThread::CCustomThread;
    bool Run() override
    {
        while (!MustTerminate())
            SleepCurrentThread(1);
        return true;
    }
};

std::vector<std::unique_ptr<Worker>> begin_workers(int count, unsigned flags = 0)
{
    std::vector<std::unique_ptr<Worker>> workers;
    for (int i = 0; i < count; ++i) {
        workers.push_back(std::make_unique<Worker>(true));
        EXPECT_TRUE(
            CXThread::BeginThread(workers.back().get(), {}, flags | CXThread::keepAutoDelete));
    }
    return workers;
}

} // namespace

TEST(CustomThread, AllAreAskedToEndAndWaitedFor)
{
    EXPECT_TRUE(CCustomThread::WaitEndOfThreads(0));
    auto const workers = begin_workers(100);
    ASSERT_TRUE(CXThread::BeginThread(new Worker)); // and one that deletes itself
    EXPECT_EQ(CCustomThread::GetRunningThreadCount(), 101);
    EXPECT_FALSE(CCustomThread::WaitEndOfThreads(10));
    EXPECT_FALSE(CCustomThread::ThreadsMustTerminate());
    CCustomThread::AskForThreadsEnd();
    EXPECT_TRUE(CCustomThread::ThreadsMustTerminate());
    EXPECT_TRUE(CCustomThread::WaitEndOfThreads());
    EXPECT_EQ(CCustomThread::GetRunningThreadCount(), 0);
    for (auto const &worker : workers)
        EXPECT_TRUE(worker->IsTerminated() && worker->GetThreadResult());
    CCustomThread::AskForThreadsEnd(false);
}

TEST(CustomThread, OneIsStoppedInAnyState)
{
    auto const workers = begin_workers(3);
    EXPECT_TRUE(workers[1]->StopThread());
    EXPECT_TRUE(workers[1]->StopThread());
    EXPECT_EQ(CCustomThread::GetRunningThreadCount(), 2) << "the others go on";
    EXPECT_TRUE(workers[0]->SuspendThread() && workers[0]->SuspendThread());
    EXPECT_TRUE(workers[0]->StopThread());
    SetCancelThread(true, workers[2]->GetThreadID());
    EXPECT_TRUE(workers[2]->WaitForEnd());
    auto const unborn = begin_workers(1, CXThread::beginSuspended);
    EXPECT_TRUE(unborn[0]->StopThread());
}

TEST(CustomThread, HardTerminationEndsThoseThatDoNotListen)
{
    static std::atomic<long> s_steps { 0 };
    std::vector<std::unique_ptr<KeptThread>> threads;
    for (int i = 0; i < 4; ++i) {
        threads.push_back(std::make_unique<KeptThread>(
            [i]() -> bool {
                for (;;) {
                    ++s_steps;
                    SetSilentThread(true, 0); // takes the registry's lock, which must stay free
                    CXThread::SleepCurrentThread(i == 3 ? 1000000 : 0);
                }
            },
            i == 0 ? CXThread::beginSuspended : 0U));
    }
    while (s_steps < 1000)
        CXThread::SleepCurrentThread(1);
    CCustomThread::AskForThreadsEnd();
    EXPECT_FALSE(CCustomThread::WaitEndOfThreads(20));
    CCustomThread::AskForThreadsEnd(false);
    EXPECT_EQ(CCustomThread::HardThreadsTermination(), 4);
    long const steps = s_steps;
    EXPECT_EQ(CCustomThread::GetRunningThreadCount(), 0);
    EXPECT_TRUE(IsSilentThread((*threads[1])->GetThreadID())) << "the registry is not locked";
    for (auto const &thread : threads)
        EXPECT_TRUE((*thread)->WaitForEnd(0) && !(*thread)->ResumeThread());
    CXThread::SleepCurrentThread(20);
    EXPECT_EQ(s_steps, steps);
}
