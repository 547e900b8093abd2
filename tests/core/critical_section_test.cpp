// SPDX-License-Identifier: MIT
#include "kortools/core/critical_section.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <vector>

TEST(CriticalSection, IsRecursiveAndExcludesOtherThreads)
{
    CXCriticalSection section;
    int counter = 0; // not atomic: lost updates show
    auto const work = [&] {
        for (int i = 0; i < 20000; ++i) {
            CXSingleLock const outer(&section, true);
            {
                std::lock_guard const inner(section);
                ++counter;
            }
            ASSERT_TRUE(section.IsLocked());
        }
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    EXPECT_EQ(counter, 40000);
    EXPECT_FALSE(section.IsLocked());
}

// The first time, the process has one thread when the section is locked, and several when it is
// unlocked.
TEST(CriticalSection, WakesEveryThreadThatSleepsInLock)
{
    CXCriticalSection section;
    for (int round = 0; round < 20; ++round) {
        section.Lock();
        section.Lock();
        std::atomic<int> passed { 0 };
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                std::lock_guard const lock(section);
                ++passed;
            });
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(round % 3));
        section.Unlock();
        ASSERT_EQ(passed, 0) << "locked twice";
        section.Unlock();
        for (std::thread &thread : threads)
            thread.join();
        ASSERT_EQ(passed, 4);
    }
}

TEST(SingleLock, HoldsItsSectionOnceAndLetsGoOfIt)
{
    CXCriticalSection first;
    CXCriticalSection second;
    {
        CXSingleLock lock(&first, false);
        lock.Unlock(); // not held: must not unbalance the section
        lock.Lock();
        lock.Lock();
        EXPECT_TRUE(first.IsLocked());
        lock.Attach(&second);
        EXPECT_FALSE(first.IsLocked() || second.IsLocked());
        lock.Lock();
        EXPECT_TRUE(second.IsLocked() && lock.IsLocked());
    }
    EXPECT_FALSE(second.IsLocked());
    CXSingleLock none;
    none.Lock();
    EXPECT_FALSE(none.IsLocked());
}
