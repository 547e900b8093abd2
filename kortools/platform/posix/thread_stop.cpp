// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/thread_stop.h"

#include "kortools/platform/clock.h"
#include "kortools/platform/posix/futex.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace kortools::platform::posix {
namespace {

// In the thread's static block, because a handler must not have it allocated.
[[gnu::tls_model("initial-exec")]] constinit thread_local StopGate *s_gate = nullptr;

void handle_stop(int)
{
    int const error = errno;
    if (s_gate)
        s_gate->wait_while_closed();
    errno = error;
}

// While a thread stands in the handler, no other handler runs on it.
bool install_handler(int signal)
{
    struct sigaction action = {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL)
        return false;
    action.sa_handler = handle_stop;
    action.sa_flags = SA_RESTART;
    sigfillset(&action.sa_mask);
    return sigaction(signal, &action, nullptr) == 0;
}

// The first free signal from the middle of the range on: libraries like to take the ends.
int choose_signal()
{
    int const count = SIGRTMAX - SIGRTMIN + 1;
    for (int i = 0; i < count; ++i) {
        int const signal = SIGRTMIN + (count / 2 + i) % count;
        if (install_handler(signal))
            return signal;
    }
    return 0;
}

int get_stop_signal()
{
    static int const s_signal = choose_signal();
    return s_signal;
}

// Waits the thread for something that is not to be interrupted, a dead disk or share for instance?
// The line reads: id (name) state ..., where the name may have parentheses, too.
bool is_uninterruptible(unsigned long long thread_id)
{
    char text[256];
    std::snprintf(text, sizeof text, "/proc/self/task/%llu/stat", thread_id);
    int const file = open(text, O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    ssize_t const size = read(file, text, sizeof text - 1);
    close(file);
    text[size > 0 ? size : 0] = 0;
    char const *const name_end = std::strrchr(text, ')');
    return name_end && std::strncmp(name_end, ") D", 3) == 0;
}

bool is_closed(unsigned request)
{
    return request % 2 != 0;
}

} // namespace

void StopGate::attach_current(StopGate *gate)
{
    s_gate = gate;
}

bool StopGate::is_current(StopGate const *gate)
{
    return s_gate == gate;
}

void StopGate::close()
{
    m_request.fetch_add(1);
}

bool StopGate::send_signal(pthread_t thread)
{
    int const signal = get_stop_signal();
    return signal != 0 && pthread_kill(thread, signal) == 0;
}

bool StopGate::wait_until_stopped(unsigned long long thread_id, int timeout_ms)
{
    constexpr timespec slice { 0, 20'000'000 };
    long long const end = get_tick() + timeout_ms;
    unsigned const request = m_request.load();
    for (;;) {
        unsigned const reached = m_reached.load();
        if (reached == request)
            return true;
        futex_wait(m_reached, reached, &slice);
        if (m_reached.load() == request || is_uninterruptible(thread_id))
            return true;
        if (timeout_ms >= 0 && get_tick() >= end)
            return false;
    }
}

void StopGate::open()
{
    m_request.fetch_add(1);
    futex_wake(m_request);
}

// A gate that opens and closes again before the thread has noticed is the next odd number, which
// the thread reports as well; the signal that came with it then finds an open gate.
void StopGate::wait_while_closed()
{
    for (;;) {
        unsigned const request = m_request.load();
        if (!is_closed(request))
            return;
        m_reached.store(request);
        futex_wake(m_reached);
        futex_wait(m_request, request);
    }
}

void unblock_stop_signal()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, get_stop_signal());
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

} // namespace kortools::platform::posix
