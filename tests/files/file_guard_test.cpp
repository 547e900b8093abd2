// SPDX-License-Identifier: MIT
#include "kortools/archive/file.h"
#include "kortools/files/file_guard.h"
#include "kortools/files/file_status.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>
#include <thread>
#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif
namespace {

constexpr unsigned int late = 0xFFFFFFFF;

} // namespace

TEST(FileGuard, TheWordSaysWhatIsGuarded)
{
    struct {
        wchar_t const *path;
        unsigned int before, after;
        bool by_path, always; // is there a guard?
    } const cases[] = { { L"C:\\a", 500, 500, false, true },
        { L"//no_server/share/a", 500, 500, true, true }, { L"C:\\a", 0x800001F4, 500, true, true },
        { L"C:\\a", 0x7FFFFFFF, 0x7FFFFFFF, false, true },
        { L"\\\\no_server\\share\\a", 0, 0, false, false },
        { L"\\\\no_server\\share\\a", late, late, false, false },
        { L"\\\\no_server\\share\\a", 0x80000000, 0, false, false } };
    for (auto const &each : cases) {
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
    for (IoTimeOut const step :
        { ioTimeOutCreateAlways, ioTimeOutStart, ioTimeOutEnd, ioTimeOutDestroy })
        EXPECT_FALSE(fileTimeOut(step, L"C:\\a", nullptr, guard));
}

TEST(FileGuard, WhatComesBackInTimeIsNotLate)
{
    TempFolder const folder;
    CXTString<wchar_t> const path = folder.GetPath().wstring().c_str();
    unsigned int timeout = 0x80000000 + 30000;
    EXPECT_TRUE(fileExists(path, &timeout));
    void *guard = nullptr;
    ASSERT_TRUE(fileTimeOut(ioTimeOutCreateAlways, path, &timeout, guard));
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(fileTimeOut(ioTimeOutStart, path, &timeout, guard));
        EXPECT_FALSE(fileTimeOut(ioTimeOutStart, path, &timeout, guard)) << "started already";
        EXPECT_FALSE(fileTimeOut(ioTimeOutEnd, path, &timeout, guard));
    }
    EXPECT_TRUE(fileTimeOut(ioTimeOutStart, path, &timeout, guard));
    EXPECT_TRUE(fileTimeOut(ioTimeOutDestroy, path, &timeout, guard)) << "in the section";
    EXPECT_EQ(timeout, 30000U);
}

TEST(FileGuard, ABlockedReadIsCancelled)
{
    void *ends[2] = {}; // of a pipe that nobody writes to or closes, as CXFile takes them
#ifdef _WIN32
    ASSERT_TRUE(CreatePipe(&ends[0], &ends[1], nullptr, 0));
#else
    int numbers[2];
    ASSERT_EQ(pipe(numbers), 0);
    for (int i = 0; i < 2; ++i)
        ends[i] = reinterpret_cast<void *>(std::intptr_t(numbers[i]));
#endif
    CXFile file(ends[0], false);
    for (int i = 0; i < 2; ++i) {
        unsigned int timeout = 50;
        void *guard = nullptr;
        fileTimeOut(ioTimeOutCreateAlways, L"pipe", &timeout, guard);
        char read = 0;
        auto const start = std::chrono::steady_clock::now();
        EXPECT_TRUE(fileTimeOut(ioTimeOutStart, L"pipe", &timeout, guard));
        EXPECT_EQ(file.Read(&read, 1), 0U);
        EXPECT_TRUE(fileTimeOut(ioTimeOutEnd, L"pipe", &timeout, guard));
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(40));
        EXPECT_EQ(timeout, late);
        EXPECT_FALSE(fileTimeOut(ioTimeOutEnd, L"pipe", &timeout, guard)) << "ended already";
        EXPECT_TRUE(fileTimeOut(ioTimeOutDestroy, L"pipe", &timeout, guard));
    }
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
