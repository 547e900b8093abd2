// SPDX-License-Identifier: MIT
#include "kortools/archive/exception.h"

#include "kortools/core/throw.h"
#include "kortools/platform/message_box.h"
#include "tests/support/child_process.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

#ifdef __linux__
#include <cstdlib>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace {

// An exception of a client's own that tells how many of its kind are alive.
class CCountedException : public CXUserException {
public:
    CCountedException() { ++s_alive; }
    ~CCountedException() override { --s_alive; }
    static inline std::atomic<int> s_alive { 0 };
};

// The compiler must not see the null, nor its sanitizer object to it: that is the point.
__attribute__((noinline, no_sanitize("null", "vptr"))) void delete_exception(CXException *exception)
{
    exception->Delete();
}

} // namespace

TEST(PendingException, IsFreedOnce)
{
    try {
        kortools::archive::throw_exception(new CCountedException);
    } catch (CXException *exception) {
        EXPECT_EQ(XGetThreadException(), exception);
        XDeleteThreadException();
    }
    EXPECT_EQ(CCountedException::s_alive, 0);
    EXPECT_EQ(XGetThreadException(), nullptr);
    XDeleteThreadException(); // nothing is pending: does nothing
    // A second one destroys the first unless it is the same.
    auto *const first = new CCountedException;
    XSetThreadException(first);
    XSetThreadException(first);
    XSetThreadException(nullptr);
    EXPECT_EQ(XGetThreadException(), first);
    XSetThreadException(new CCountedException);
    EXPECT_EQ(CCountedException::s_alive, 1);
    XDeleteThreadException();
    EXPECT_EQ(CCountedException::s_alive, 0);
    {
        CCountedException local;
        XSetThreadException(&local);
    }
    EXPECT_EQ(XGetThreadException(), nullptr);
}

TEST(PendingException, AnotherThreadMayDestroyItOrTakeItOver)
{
    for (bool const take_over : { false, true }) {
        auto *const exception = new CCountedException;
        XSetThreadException(exception);
        std::thread([=] {
            XDeleteThreadException(); // must not touch the other thread's
            take_over ? XSetThreadException(exception) : exception->Delete();
        }).join();
        EXPECT_EQ(XGetThreadException(), nullptr);
        EXPECT_EQ(CCountedException::s_alive, take_over ? 1 : 0);
        kortools::archive::release_pending_exceptions(); // the ended thread's
        EXPECT_EQ(CCountedException::s_alive, 0);
    }
}

static int leave_pending(std::vector<std::string> const &arguments)
{
    class CFileRemovingException : public CXUserException {
    public:
        ~CFileRemovingException() override { std::remove(m_path.c_str()); }
        std::string m_path;
    };
    auto *const exception = new CFileRemovingException;
    exception->m_path = arguments.at(0);
    XSetThreadException(exception);
    return 0;
}
static kor_test::ChildPart const s_leave_pending("leave_pending", leave_pending);

TEST(PendingException, WhatIsPendingAtTheEndOfTheProcessIsDestroyed)
{
    TempFolder const folder;
    auto const file = folder.GetPath() / "witness";
    std::ofstream(file).put('x');
    ASSERT_EQ(kor_test::run_child("leave_pending", { file.string() }), 0);
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(PendingException, ThreadsDoNotDisturbEachOther)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 30; ++i) { // more threads than chains
        threads.emplace_back([i] {
            for (int round = 0; round < 100; ++round) {
                auto *const exception = new CCountedException;
                XSetThreadException(exception);
                ASSERT_EQ(XGetThreadException(), exception);
                if ((round + i) % 3 == 0)
                    exception->Delete();
                else if ((round + i) % 3 == 1)
                    XDeleteThreadException();
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    kortools::archive::release_pending_exceptions();
    EXPECT_EQ(CCountedException::s_alive, 0);
    CXException *volatile none = nullptr;
    delete_exception(none);
}

#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(Exception, ExhaustedMemoryIsReportedWithoutMemory)
{
    auto const throw_without_memory = [] {
        rlimit const none = { 0, 0 };
        setrlimit(RLIMIT_AS, &none);
        for (std::size_t size = 1 << 20; size >= 8; size /= 2) {
            while (void *volatile block = std::malloc(size))
                static_cast<void>(block);
        }
        try {
            kortools::core::throw_out_of_memory();
        } catch (CXMemoryException *exception) {
            _exit(XGetThreadException() == exception ? 0 : 1);
        }
    };
    EXPECT_EXIT(throw_without_memory(), testing::ExitedWithCode(0), "");
}
#endif

TEST(Exception, ReportsItsMessageInABoxUnlessItIsEmpty)
{
    static std::wstring s_shown;
    auto *const before
        = kortools::platform::set_message_box_handler([](wchar_t const *text, unsigned int flags) {
              s_shown += std::to_wstring(flags) + text;
              return 1;
          });
    EXPECT_TRUE(CXUserException(L"told").ReportError(0x10));
    EXPECT_FALSE(CXUserException().ReportError());
    EXPECT_EQ(s_shown, L"16told");
    kortools::platform::set_message_box_handler(before);
}

TEST(FileException, SystemErrorsGiveTheirCause)
{
    std::map<int, std::set<unsigned int>> const rows = { { 0, { 0 } }, { 2, { 2, 6, 18, 107 } },
        { 3,
            { 3, 15, 17, 34, 52, 53, 55, 67, 70, 85, 111, 123, 124, 125, 144, 154, 161, 206, 208,
                267 } },
        { 4, { 4, 36, 68, 113 } },
        { 5, { 5, 12, 19, 29, 54, 58, 64, 65, 71, 80, 82, 86, 170, 183, 999 } },
        { 6, { 11, 26, 60, 66, 114, 182, 191, 193 } }, { 7, { 16, 145 } }, { 8, { 62 } },
        { 9, { 24, 25, 27, 30, 131, 132 } },
        { 10, { 20, 21, 22, 23, 57, 59, 88, 117, 995, 996, 997 } }, { 11, { 32 } },
        { 12, { 33, 108, 167 } }, { 13, { 39, 112 } }, { 14, { 38 } } };
    for (unsigned int code = 0; code < 20000; ++code) {
        auto const row = std::ranges::find_if(
            rows, [&](auto const &each) { return each.second.contains(code); });
        ASSERT_EQ(CXFileException::OsErrorToException(code), row == rows.end() ? 1 : row->first)
            << "code " << code;
    }
    std::map<int, int> const causes = { { 1, 5 }, { 13, 5 }, { 2, 2 }, { 23, 2 }, { 5, 10 },
        { 22, 10 }, { 9, 6 }, { 24, 4 }, { 28, 13 } };
    for (int number = -2; number < 200; ++number) {
        int const expected = causes.contains(number) ? causes.at(number) : 1;
        EXPECT_EQ(CXFileException::ErrnoToException(number), expected) << "errno " << number;
    }
}
