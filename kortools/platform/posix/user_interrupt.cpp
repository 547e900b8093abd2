// SPDX-License-Identifier: MIT
#include "kortools/platform/user_interrupt.h"

#include <atomic>
#include <csignal>

namespace kortools::platform {
namespace {

constexpr int watched[] = { SIGINT, SIGTERM };

std::atomic<bool> s_noted { false };
static_assert(std::atomic<bool>::is_always_lock_free, "signal handlers may use no other");

struct sigaction s_former[2];
bool s_watching = false;

void note(int)
{
    s_noted = true;
}

} // namespace

void begin_interrupt_watch()
{
    end_interrupt_watch();
    s_noted = false;
    struct sigaction action = {};
    action.sa_handler = note;
    // Reads and writes go on; the next signal finds the default action.
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (int i = 0; i < 2; ++i) {
        sigaction(watched[i], nullptr, &s_former[i]);
        if (s_former[i].sa_handler != SIG_IGN)
            sigaction(watched[i], &action, nullptr);
    }
    s_watching = true;
}

void end_interrupt_watch()
{
    if (!s_watching)
        return;
    for (int i = 0; i < 2; ++i)
        sigaction(watched[i], &s_former[i], nullptr);
    s_watching = false;
}

bool was_user_interrupted()
{
    return s_noted;
}

} // namespace kortools::platform
