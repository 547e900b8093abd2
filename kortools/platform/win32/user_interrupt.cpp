// SPDX-License-Identifier: MIT
#include "kortools/platform/user_interrupt.h"

#include <atomic>
#include <windows.h>

namespace kortools::platform {
namespace {

std::atomic<bool> s_noted { false };

// The system calls it on a thread of its own. False leaves the event to the handler before, in the
// end to the one that ends the program.
BOOL WINAPI note(DWORD event)
{
    bool const mine = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    return mine && !s_noted.exchange(true);
}

} // namespace

void begin_interrupt_watch()
{
    end_interrupt_watch();
    s_noted = false;
    SetConsoleCtrlHandler(note, TRUE);
}

void end_interrupt_watch()
{
    SetConsoleCtrlHandler(note, FALSE);
}

bool was_user_interrupted()
{
    return s_noted;
}

} // namespace kortools::platform
