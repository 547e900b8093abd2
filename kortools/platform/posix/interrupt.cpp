// SPDX-License-Identifier: MIT
//
// A thread is interrupted by a signal whose handler does nothing but note it: system calls then
// fail with EINTR. It is a real-time signal that the program has not taken, and stays ours.
#include "kortools/platform/posix/interrupt.h"

#include "kortools/platform/call_guard.h"

#include <csignal>
#include <cstdint>
#include <sys/syscall.h>
#include <unistd.h>

namespace kortools::platform {
namespace {

thread_local std::sig_atomic_t volatile s_is_interrupted = 0;

void note_interruption(int)
{
    s_is_interrupted = 1;
}

// 0 when the program has taken all of them.
int take_signal()
{
    for (int number = SIGRTMAX - 1; number >= SIGRTMIN; --number) {
        struct sigaction action;
        if (sigaction(number, nullptr, &action) != 0 || action.sa_handler != SIG_DFL)
            continue;
        action = {};
        action.sa_handler = note_interruption; // without SA_RESTART
        if (sigaction(number, &action, nullptr) == 0)
            return number;
    }
    return 0;
}

int get_signal()
{
    static int const s_signal = take_signal();
    return s_signal;
}

} // namespace

bool is_interrupted()
{
    return s_is_interrupted != 0;
}

InterruptTarget::InterruptTarget()
    : m_thread(reinterpret_cast<void *>(static_cast<std::intptr_t>(syscall(SYS_gettid))))
{
    get_signal();
    s_is_interrupted = 0;
}

InterruptTarget::~InterruptTarget()
{
    s_is_interrupted = 0;
}

void InterruptTarget::interrupt() const
{
    // By its number: the system knows when the thread is no more, pthread_kill() does not.
    if (get_signal() != 0)
        syscall(SYS_tgkill, getpid(), reinterpret_cast<std::intptr_t>(m_thread), get_signal());
}

} // namespace kortools::platform
