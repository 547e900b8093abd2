// SPDX-License-Identifier: MIT
// Ctrl+C in the terminal, for programs that have something to finish first.
#pragma once

#include "kortools/export.h"

namespace kortools::platform {

// From now on the first Ctrl+C (on Windows also Ctrl+Break, on Linux also a request to terminate)
// is only noted. The next one ends the program as ever, should it not react. A program that was
// started to ignore Ctrl+C goes on ignoring it. Forgets what was noted before.
KORTOOLS_API void begin_interrupt_watch();

// Leaves Ctrl+C to the system again. Nothing without a watch.
KORTOOLS_API void end_interrupt_watch();

// Has one been noted since the watch began? For any thread; costs nothing.
KORTOOLS_API bool was_user_interrupted();

} // namespace kortools::platform
