// SPDX-License-Identifier: MIT
#include "kortools/archive/exception.h"

#include "kortools/core/throw.h"
#include "kortools/platform/os_error.h"

#include <atomic>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <set>
#include <thread>
#include <vector>

using kortools::platform::set_last_os_error;

namespace {

// An exception of a client's own that tells how many of its kind are alive.
class CCountedException : public CXUserException {
public:
    CCountedException() { ++s_alive; }
    ~CCountedException() override { --s_alive; }
    static inline std::atomic<int> s_alive { 0 };
};

// A null pointer that the compiler knows nothing about.
template <class T> T *hidden_null()
{
    T *volatile pointer = nullptr;
    return pointer;
}

} // namespace

TEST(PendingException, IsFreedOnceBySwallowingItOrByDeletingIt)
{
    for (bool const by_delete : { false, true }) {
        try {
            kortools::archive::throw_exception(new CCountedException);
        } catch (CXException *exception) {
            EXPECT_EQ(XGetThreadException(), exception);
            if (by_delete)
                exception->Delete();
            else
                XDeleteThreadException();
        }
        EXPECT_EQ(CCountedException::s_alive, 0);
        EXPECT_EQ(XGetThreadException(), nullptr);
        XDeleteThreadException(); // nothing is pending: does nothing
    }
}

TEST(PendingException, ASecondOneDestroysTheFirstUnlessItIsTheSame)
{
    auto *const first = new CCountedException;
    XSetThreadException(first);
    XSetThreadException(first);
    XSetThreadException(nullptr);
    EXPECT_EQ(CCountedException::s_alive, 1);
    auto *const second = new CCountedException;
    XSetThreadException(second);
    EXPECT_EQ(CCountedException::s_alive, 1);
    EXPECT_EQ(XGetThreadException(), second);
    XDeleteThreadException();
    EXPECT_EQ(CCountedException::s_alive, 0);
}

TEST(PendingException, AnExceptionOnTheStackLeavesNoEntry)
{
    {
        CXFileException local(CXFileException::diskFull);
        XSetThreadException(&local);
    }
    EXPECT_EQ(XGetThreadException(), nullptr);
}

TEST(PendingException, DestroyingItOnAnotherThreadUnregistersIt)
{
    auto *const exception = new CCountedException;
    XSetThreadException(exception);
    std::thread([=] {
        EXPECT_EQ(XGetThreadException(), nullptr);
        XDeleteThreadException(); // must not touch the other thread's
        EXPECT_EQ(CCountedException::s_alive, 1);
        exception->Delete();
    }).join();
    EXPECT_EQ(XGetThreadException(), nullptr);
    EXPECT_EQ(CCountedException::s_alive, 0);
}

TEST(PendingException, AnotherThreadMayTakeItOver)
{
    auto *const exception = new CCountedException;
    XSetThreadException(exception);
    std::thread([=] {
        XSetThreadException(exception);
        EXPECT_EQ(XGetThreadException(), exception);
    }).join();
    EXPECT_EQ(XGetThreadException(), nullptr);
    XDeleteThreadException();
    EXPECT_EQ(CCountedException::s_alive, 1); // the ended thread's, until all are released
    kortools::archive::release_pending_exceptions();
    EXPECT_EQ(CCountedException::s_alive, 0);
}

TEST(PendingException, ThreadsDoNotDisturbEachOther)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 30; ++i) { // more threads than chains
        threads.emplace_back([i] {
            for (int round = 0; round < 200; ++round) {
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
}

TEST(Exception, DeleteAcceptsANullPointer)
{
    hidden_null<CXException>()->Delete();
}

TEST(Exception, TemplatesThrowRegisteredExceptions)
{
    EXPECT_THROW(kortools::core::throw_invalid_argument(), CXInvalidArgException *);
    EXPECT_TRUE(
        XGetThreadException()->IsKindOf(CXInvalidArgException::GetThisRuntimeClassDescriptor()));
    EXPECT_THROW(kortools::core::throw_out_of_memory(), CXMemoryException *);
    EXPECT_TRUE(
        XGetThreadException()->IsKindOf(CXMemoryException::GetThisRuntimeClassDescriptor()));
    EXPECT_THROW(
        CXArchiveException::Throw(CXArchiveException::badIndex, L"a.kor"), CXArchiveException *);
    auto const *const pending = dynamic_cast<CXArchiveException *>(XGetThreadException());
    ASSERT_NE(pending, nullptr);
    EXPECT_EQ(pending->GetCause(), 5);
    EXPECT_EQ(pending->GetFileName(), L"a.kor");
    XDeleteThreadException();
}

TEST(FileException, OsErrorsGiveTheirCause)
{
    std::map<int, std::set<unsigned int>> const rows = {
        { 0, { 0 } },
        { 2, { 2, 6, 18, 107 } },
        { 3,
            { 3, 15, 17, 34, 52, 53, 55, 67, 70, 85, 111, 123, 124, 125, 144, 154, 161, 206, 208,
                267 } },
        { 4, { 4, 36, 68, 113 } },
        { 5, { 5, 12, 19, 29, 54, 58, 64, 65, 71, 80, 82, 86, 170, 183, 999 } },
        { 6, { 11, 26, 60, 66, 114, 182, 191, 193 } },
        { 7, { 16, 145 } },
        { 8, { 62 } },
        { 9, { 24, 25, 27, 30, 131, 132 } },
        { 10, { 20, 21, 22, 23, 57, 59, 88, 117, 995, 996, 997 } },
        { 11, { 32 } },
        { 12, { 33, 108, 167 } },
        { 13, { 39, 112 } },
        { 14, { 38 } },
    };
    for (unsigned int code = 0; code < 20000; ++code) {
        int expected = 1;
        for (auto const &[cause, codes] : rows) {
            if (codes.contains(code))
                expected = cause;
        }
        ASSERT_EQ(CXFileException::OsErrorToException(code), expected) << "code " << code;
    }
    EXPECT_EQ(CXFileException::OsErrorToException(0xFFFFFFFF), 1);
}

TEST(FileException, RuntimeErrorNumbersGiveTheirCause)
{
    std::map<int, int> const causes = { { 1, 5 }, { 13, 5 }, { 2, 2 }, { 23, 2 }, { 5, 10 },
        { 22, 10 }, { 9, 6 }, { 24, 4 }, { 28, 13 } };
    for (int number = -2; number < 200; ++number) {
        int const expected = causes.contains(number) ? causes.at(number) : 1;
        EXPECT_EQ(CXFileException::ErrnoToException(number), expected) << "errno " << number;
    }
}

TEST(FileException, ThrowsTheSystemsCauseBeforeTheGivenOne)
{
    struct Row {
        unsigned int system; // error code, which maps to its own number as a cause
        CXFileException::FileExceptionType given;
        int thrown; // -1: nothing
    };
    for (Row const row : { Row { 0, CXFileException::none, -1 }, { 0, CXFileException::badSeek, 9 },
             { 5, CXFileException::none, 5 }, { 2, CXFileException::badSeek, 2 } }) {
        for (bool const by_errno : { false, true }) {
            auto const call = [&](CXFileException *fill) {
                int const error_number = row.system == 5 ? 13 : static_cast<int>(row.system);
                set_last_os_error(by_errno ? 7777 : row.system);
                if (by_errno)
                    CXFileException::ThrowErrno(row.given, error_number, L"a.kor", fill);
                else
                    CXFileException::ThrowOsError(row.given, L"a.kor", fill);
            };
            int thrown = -1;
            try {
                call(nullptr);
            } catch (CXFileException *exception) {
                thrown = exception->GetCause();
                EXPECT_EQ(exception->GetFileName(), L"a.kor");
                EXPECT_EQ(XGetThreadException(), exception);
                exception->Delete();
            }
            EXPECT_EQ(thrown, row.thrown);

            CXFileException fill(CXFileException::diskFull, L"old.kor", L"kept");
            EXPECT_NO_THROW(call(&fill));
            EXPECT_EQ(fill.GetCause(), row.thrown == -1 ? 0 : row.thrown);
            EXPECT_EQ(fill.GetFileName(), L"a.kor");
            EXPECT_EQ(XGetThreadException(), nullptr);
        }
    }
}
