// SPDX-License-Identifier: MIT
#include "kortools/core/critical_section.h"

#include <gtest/gtest.h>
#include <mutex>
#include <thread>

TEST(CriticalSection, CountsItsDepth)
{
    CXCriticalSection section;
    EXPECT_FALSE(section.IsLocked());
    section.Lock();
    section.Lock();
    section.Unlock();
    EXPECT_TRUE(section.IsLocked());
    section.Unlock();
    EXPECT_FALSE(section.IsLocked());
}

TEST(CriticalSection, ExcludesOtherThreads)
{
    CXCriticalSection section;
    int counter = 0; // not atomic: lost updates show
    auto const work = [&] {
        for (int i = 0; i < 20000; ++i) {
            CXSingleLock const outer(&section, true);
            std::lock_guard const inner(section);
            ++counter;
        }
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    EXPECT_EQ(counter, 40000);
    EXPECT_FALSE(section.IsLocked());
}

TEST(SingleLock, HoldsItsSectionOnceAndLetsGoOfIt)
{
    CXCriticalSection first;
    CXCriticalSection second;
    {
        CXSingleLock lock(&first, false);
        EXPECT_FALSE(first.IsLocked());
        lock.Unlock(); // not held: must not unbalance the section
        lock.Lock();
        lock.Lock();
        EXPECT_TRUE(lock.IsLocked());
        lock.Unlock();
        EXPECT_FALSE(first.IsLocked());
        lock.Lock();
        lock.Attach(&second);
        EXPECT_FALSE(first.IsLocked());
        EXPECT_FALSE(second.IsLocked());
        lock.Lock();
        EXPECT_TRUE(second.IsLocked());
    }
    EXPECT_FALSE(second.IsLocked());

    CXSingleLock none;
    none.Lock();
    EXPECT_FALSE(none.IsLocked());
}
