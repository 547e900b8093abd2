// SPDX-License-Identifier: MIT
// Real faults, each twice: a signal that stays held back after the first one would end the test.
#include "kortools/app/start.h"
#include "kortools/archive/exception.h"

#include <csignal>
#include <gtest/gtest.h>
#include <thread>

// The sanitizers would find the faults first.
#define KOR_UNCHECKED __attribute__((no_sanitize("undefined", "address", "thread")))

namespace {

int *volatile s_null = nullptr;
void (*volatile s_null_function)() = nullptr;
int volatile s_zero = 0;

[[gnu::noinline]] KOR_UNCHECKED void execute_nothing_known()
{
    asm volatile("ud2");
}

// An object to unwind, and a call, around the fault.
[[gnu::noinline]] KOR_UNCHECKED void call_null(bool &destroyed)
{
    struct Guard {
        bool &destroyed;
        ~Guard() { destroyed = true; }
    } const guard { destroyed };
    s_null_function();
}

// Whether `exception` has this message and is the thread's pending one; deletes it.
bool is_fault(CXException *exception, wchar_t const *name)
{
    bool const expected
        = exception->GetErrorMessage() == name && XGetThreadException() == exception;
    exception->Delete();
    return expected && !XGetThreadException();
}

// Each statement alone in its try block.
KOR_UNCHECKED void expect_faults()
{
    for (int round = 0; round < 2; ++round) {
        int caught = 0;
        try {
            *s_null = 1;
        } catch (CXException *exception) {
            caught += is_fault(exception, L"SIGSEGV");
        }
        try {
            s_zero = 1 / s_zero;
        } catch (CXException *exception) {
            caught += is_fault(exception, L"SIGFPE");
        }
        try {
            execute_nothing_known();
        } catch (CXException *exception) {
            caught += is_fault(exception, L"SIGILL");
        }
        bool destroyed = false;
        try {
            call_null(destroyed);
        } catch (CXException *exception) {
            caught += is_fault(exception, L"SIGSEGV");
        }
        EXPECT_EQ(caught, 4) << "round " << round;
        EXPECT_TRUE(destroyed);
    }
}

TEST(FaultSignals, BecomeExceptionsOfTheFaultingStatementOnEveryThread)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer calls handlers itself and takes it that they return";
#endif
    InitKorTools(korFaultSignals);
    expect_faults();
    std::thread(expect_faults).join();
    expect_faults();
    CloseKorTools(korFaultSignals);
}

void ignore(int) { }

#ifdef _WIN32

// Of the C runtime library; there it calls the handler itself.
TEST(FaultSignals, RaisedByTheProgramAreThrownByTheCall)
{
    InitKorTools(korFaultSignals);
    for (int round = 0; round < 2; ++round) {
        bool caught = false;
        try {
            std::raise(SIGFPE);
        } catch (CXException *exception) {
            caught = is_fault(exception, L"SIGFPE");
        }
        EXPECT_TRUE(caught);
    }
    CloseKorTools(korFaultSignals);
}

// Whether the signal is ignore()'s, as it was given.
bool is_own()
{
    auto *const present = std::signal(SIGFPE, SIG_DFL);
    std::signal(SIGFPE, present);
    return present == ignore;
}
void give_to_own()
{
    std::signal(SIGFPE, ignore);
}

#else

bool is_own()
{
    struct sigaction present { };
    sigaction(SIGFPE, nullptr, &present);
    return present.sa_handler == ignore && (present.sa_flags & SA_NODEFER) != 0
        && sigismember(&present.sa_mask, SIGUSR1) == 1;
}
void give_to_own()
{
    struct sigaction action { };
    action.sa_handler = ignore;
    action.sa_flags = SA_NODEFER;
    sigaddset(&action.sa_mask, SIGUSR1);
    sigaction(SIGFPE, &action, nullptr);
}

#endif

TEST(FaultSignals, AreLeftAloneWithoutTheFlagAndGivenBackAsTheyWere)
{
    give_to_own();
    InitKorTools(korFileTypes);
    EXPECT_TRUE(is_own());
    CloseKorTools(korFaultSignals | korFileTypes); // were never taken
    EXPECT_TRUE(is_own());

    InitKorTools(korFaultSignals);
    EXPECT_FALSE(is_own());
    CloseKorTools(); // without the flag they stay
    EXPECT_FALSE(is_own());
    InitKorTools(korFaultSignals); // nothing is lost by taking them twice
    CloseKorTools(korFaultSignals);
    EXPECT_TRUE(is_own());
    std::signal(SIGFPE, SIG_DFL);
}

} // namespace
