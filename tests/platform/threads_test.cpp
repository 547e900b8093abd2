// SPDX-License-Identifier: MIT
#include "kortools/platform/threads.h"

#include "kortools/platform/recursive_lock.h"

#include <gtest/gtest.h>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#ifndef _WIN32
#include <unistd.h>
#endif

using kortools::platform::get_current_thread_id;
using kortools::platform::RecursiveLock;

TEST(Threads, EveryLiveThreadHasItsOwnIdentifier)
{
    RecursiveLock lock;
    std::set<unsigned long long> ids { 0, get_current_thread_id() };
    std::vector<std::thread> threads;
    lock.lock(); // keeps the threads alive together, so that no number is used again
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            auto const id = get_current_thread_id();
            std::lock_guard const guard(lock);
            ids.insert(id);
        });
    }
    lock.unlock();
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(ids.size(), 10U);
}

#ifndef _WIN32
TEST(Threads, AForkedChildHasItsOwnIdentifier)
{
    auto const parent = get_current_thread_id();
    EXPECT_EXIT(_exit(get_current_thread_id() != parent ? 0 : 1), testing::ExitedWithCode(0), "");
}
#endif
