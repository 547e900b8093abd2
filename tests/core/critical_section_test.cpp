// SPDX-License-Identifier: MIT
#include "kortools/core/critical_section.h"

#include <atomic>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <vector>

// The first time, the process has one thread when the section is locked, and several when it is
// unlocked.
TEST(CriticalSection, IsRecursiveAndExcludesOtherThreads)
{
    CXCriticalSection section;
    for (int round = 0; round < 20; ++round) {
        int counter = 0; // not atomic: lost updates show
        std::atomic<bool> passed = false;
        section.Lock();
        section.Lock();
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (int turn = 0; turn < 1000; ++turn) {
                    CXSingleLock const outer(&section, true);
                    passed = true;
                    std::lock_guard const inner(section);
                    ++counter;
                }
            });
        }
        std::this_thread::yield();
        section.Unlock();
        ASSERT_FALSE(passed) << "locked twice";
        section.Unlock();
        for (std::thread &thread : threads)
            thread.join();
        ASSERT_EQ(counter, 4000);
        ASSERT_FALSE(section.IsLocked());
    }
}
