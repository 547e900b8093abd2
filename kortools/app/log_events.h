// SPDX-License-Identifier: MIT
// A trace of what window procedures are sent, for finding out why a window does what it does.
//
//   Msg 0x0000000f lParam 0x00000000 wParam 0x00000000 Window Scene Class KorView
#pragma once

#include "kortools/export.h"

// From now on every message sent to a window of the calling thread has a line in a new file, which
// lies in GetUserApplicationDataPath() and is called "eventsLog1.txt", with the next number that is
// free there. It is UTF-8; of parameters the lower 32 bits are shown. Nothing while such a trace is
// written. On Linux the messages are those that a window back end reports, so there are none
// without one.
KORTOOLS_API void LogEvents();

// Ends the trace, from any thread. Is called by itself when the process ends.
KORTOOLS_API void UnlogEvents();
