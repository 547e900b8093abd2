// SPDX-License-Identifier: MIT
#include "kortools/archive/file.h"
#include "kortools/data/system_time.h"
#include "kortools/files/file_guard.h"
#include "kortools/files/file_status.h"
#include "tests/files/blocked_pipe.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <thread>

namespace {

constexpr unsigned int late = 0xFFFFFFFF;

} // namespace

TEST(FileGuard, TheWordSaysWhatIsGuarded)
{
    struct Case {
        wchar_t const *path;
        unsigned int before;
        unsigned int after;
        bool by_path; // is there a guard?
        bool always;
    };
    Case const cases[] = {
        { L"C:\\a", 500, 500, false, true },
        { L"\\\\no_server\\share\\a", 500, 500, true, true },
        { L"//no_server/share/a", 500, 500, true, true },
        { L"C:\\a", 0x800001F4, 500, true, true },
        { L"C:\\a", 0x7FFFFFFF, 0x7FFFFFFF, false, true },
        { L"\\\\no_server\\share\\a", 0, 0, false, false },
        { L"\\\\no_server\\share\\a", late, late, false, false },
        { L"\\\\no_server\\share\\a", 0x80000000, 0, false, false },
    };
    for (Case const &each : cases) {
        for (IoTimeOut const step : { ioTimeOutCreate, ioTimeOutCreateAlways }) {
            void *guard = &guard;
            unsigned int timeout = each.before;
            bool const expected = step == ioTimeOutCreate ? each.by_path : each.always;
            EXPECT_EQ(fileTimeOut(step, each.path, &timeout, guard), expected) << each.before;
            EXPECT_EQ(guard != nullptr, expected);
            EXPECT_EQ(timeout, each.after);
            EXPECT_EQ(fileTimeOut(ioTimeOutDestroy, each.path, &timeout, guard), expected);
            EXPECT_EQ(guard, nullptr);
        }
        unsigned int timeout = each.before;
        EXPECT_FALSE(fileExists(CXTString<wchar_t>(each.path) + L"\\none", &timeout));
        EXPECT_EQ(timeout, each.after) << each.before;
    }
    void *guard = nullptr;
    EXPECT_FALSE(fileTimeOut(ioTimeOutCreateAlways, L"C:\\a", nullptr, guard));
    for (IoTimeOut const step : { ioTimeOutStart, ioTimeOutEnd, ioTimeOutDestroy })
        EXPECT_FALSE(fileTimeOut(step, L"C:\\a", nullptr, guard));
}

TEST(FileGuard, WhatComesBackInTimeIsNotLate)
{
    TempFolder const folder;
    CXTString<wchar_t> const path = folder.GetPath().wstring().c_str();
    unsigned int timeout = 0x80000000 + 30000;
    EXPECT_TRUE(fileExists(path, &timeout));
    EXPECT_EQ(timeout, 30000U);
    void *guard = nullptr;
    ASSERT_TRUE(fileTimeOut(ioTimeOutCreateAlways, path, &timeout, guard));
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(fileTimeOut(ioTimeOutStart, path, &timeout, guard));
        EXPECT_FALSE(fileTimeOut(ioTimeOutStart, path, &timeout, guard)) << "started already";
        EXPECT_TRUE(fileExists(path));
        EXPECT_FALSE(fileTimeOut(ioTimeOutEnd, path, &timeout, guard));
    }
    EXPECT_TRUE(fileTimeOut(ioTimeOutStart, path, &timeout, guard));
    EXPECT_TRUE(fileTimeOut(ioTimeOutDestroy, path, &timeout, guard)) << "in the section";
    EXPECT_EQ(timeout, 30000U);
}

TEST(FileGuard, ABlockedReadIsCancelled)
{
    BlockedPipe const pipe;
    long long shortest = 1'000'000; // of a few, because the machine may be busy
    for (int i = 0; i < 3; ++i) {
        unsigned int timeout = 100;
        void *guard = nullptr;
        fileTimeOut(ioTimeOutCreateAlways, L"pipe", &timeout, guard);
        CXFile file(pipe.GetHandle(), false);
        char byte = 0;
        long long const start = timeGetTick();
        EXPECT_TRUE(fileTimeOut(ioTimeOutStart, L"pipe", &timeout, guard));
        EXPECT_EQ(file.Read(&byte, 1), 0U);
        EXPECT_TRUE(fileTimeOut(ioTimeOutEnd, L"pipe", &timeout, guard));
        shortest = std::min(shortest, timeGetTick() - start);
        EXPECT_EQ(timeout, late);
        EXPECT_FALSE(fileTimeOut(ioTimeOutEnd, L"pipe", &timeout, guard)) << "ended already";
        EXPECT_TRUE(fileTimeOut(ioTimeOutDestroy, L"pipe", &timeout, guard));
    }
    EXPECT_GE(shortest, 90);
    EXPECT_LE(shortest, 150);
}

TEST(FileGuard, ASectionThatDoesNotWaitIsOnlyMarked)
{
    unsigned int timeout = 20;
    void *guard = nullptr;
    fileTimeOut(ioTimeOutCreateAlways, L"x", &timeout, guard);
    fileTimeOut(ioTimeOutStart, L"x", &timeout, guard);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_TRUE(fileTimeOut(ioTimeOutEnd, L"x", &timeout, guard));
    EXPECT_EQ(timeout, late);
    fileTimeOut(ioTimeOutDestroy, L"x", &timeout, guard);
}
