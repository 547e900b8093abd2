// SPDX-License-Identifier: MIT
#include "kortools/app/thread.h"

#include "kortools/app/thread_registry.h"
#include "kortools/archive/exception.h"
#include "tests/app/kept_thread.h"
#include "tests/support/semaphore.h"

#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr unsigned int kept = CXThread::keepAutoDelete;

using KeptThread = Kept<CXThread>;

std::string s_trace; // of one Phases thread at a time
std::atomic<int> s_alive { 0 };

// Notes its phases; those in `throwing` throw, `refuse` makes Start() or Run() false.
class Phases : public CXThread {
public:
    explicit Phases(std::string throwing = "", char refuse = 0, bool keep = true)
        : CXThread(keep)
        , m_throwing(std::move(throwing))
        , m_refuse(refuse)
    {
        ++s_alive;
    }
    ~Phases() override { --s_alive; }
    bool Start() override { return note('S'); }
    void Finish() override { note('F'); }
    bool Run() override { return note('R'); }

private:
    bool note(char phase)
    {
        s_trace += phase;
        if (m_throwing.find(phase) != std::string::npos)
            kortools::archive::throw_exception(new CXUserException);
        return phase != m_refuse;
    }

    std::string m_throwing;
    char m_refuse;
};

} // namespace

TEST(Thread, RunsItsPhasesAndCatchesWhatEscapesThem)
{
    struct {
        char const *throwing;
        char refuse;
        char const *trace;
        bool result;
    } const cases[] = { { "", 0, "SRF", true }, { "", 'S', "SF", false }, { "", 'R', "SRF", false },
        { "S", 0, "S", false }, { "R", 0, "SR", false }, { "F", 0, "SRF", false } };
    for (auto const &each : cases) {
        s_trace.clear();
        auto *const thread = CXThread::BeginThread(
            new Phases(each.throwing, each.refuse), xThreadPriorityNormal, kept);
        ASSERT_NE(thread, nullptr);
        EXPECT_TRUE(thread->WaitForEnd());
        EXPECT_EQ(s_trace, each.trace) << each.throwing << each.refuse;
        EXPECT_EQ(thread->GetThreadResult(), each.result) << each.throwing << each.refuse;
        EXPECT_TRUE(thread->IsTerminated() && thread->IsValidThread());
        delete thread;
    }
    EXPECT_EQ(s_alive, 0);
}

TEST(Thread, AStartedObjectDeletesItselfUnlessItIsKept)
{
    ASSERT_NE(CXThread::BeginThread(new Phases), nullptr);
    ASSERT_NE(
        CXThread::BeginThread(new Phases("", 0, false), xThreadPriorityNormal, kept), nullptr);
    while (s_alive != 0)
        CXThread::SleepCurrentThread(1);
}

TEST(Thread, IsAChildOfTheThreadThatBeganIt)
{
    Semaphore go;
    bool seen = false;
    CXArray<unsigned long long> children;
    {
        KeptThread const thread([&] {
            go.acquire();
            KeptThread const grandchild([&] { return seen = ShouldCancelThread(0); });
            return true;
        });
        EXPECT_EQ(GetChildThreads(0, children), 1);
        EXPECT_EQ(children[0], thread->GetThreadID());
        SetCancelThread(true, thread->GetThreadID());
        go.release();
        EXPECT_TRUE(thread->WaitForEnd() && seen);
        EXPECT_FALSE(thread->ShouldCancel()) << "a flag of the object, which the mark does not set";
        EXPECT_TRUE(ShouldCancelThread(thread->GetThreadID())) << "until the object is destroyed";
    }
    EXPECT_EQ(GetChildThreads(0, children), 0);
}

TEST(Thread, HundredsStartMarkAndEndTogether)
{
    constexpr int branches = 16;
    constexpr int leaves = 20; // of each
    std::atomic<int> ended { 0 };
    std::atomic<int> wrong { 0 };
    Work leaf = [&] {
        SetCancelThread(true, 0);
        SetSilentThread(true, CXThread::GetCurrentThreadID());
        wrong += ShouldCancelThread(0) && IsSilentThread(0) ? 0 : 1;
        XSetThreadException(new CXUserException); // must not stay behind
        ++ended;
        return true;
    };
    Work branch = [&] {
        for (int i = 0; i < leaves; ++i)
            wrong += CXThread::BeginThread(call_work, &leaf) ? 0 : 1;
        ++ended;
        return true;
    };
    for (int i = 0; i < branches; ++i)
        wrong += CXThread::BeginThread(call_work, &branch) ? 0 : 1;
    CXArray<unsigned long long> children;
    while (ended != branches * (leaves + 1) || GetChildThreads(0, children) != 0)
        CXThread::SleepCurrentThread(1); // the last ones are still deleting themselves
    EXPECT_EQ(wrong, 0);
}
