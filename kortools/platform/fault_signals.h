// SPDX-License-Identifier: MIT
// Faults of the processor that reach the program as signals: a bad address (SIGSEGV), arithmetic
// without a result (SIGFPE), an instruction that does not exist (SIGILL).
#pragma once

#include <csignal>

namespace kortools::platform {

struct FaultSignal {
    int number;
    char const *name;
};
inline constexpr FaultSignal fault_signals[]
    = { { SIGSEGV, "SIGSEGV" }, { SIGFPE, "SIGFPE" }, { SIGILL, "SIGILL" } };

// Is called on the thread with the fault, with the signal's name. Throws.
using FaultHandler = void (*)(char const *name);

// Hands the signals to `handler`, of every thread and again and again, and keeps what had them
// before. What the handler throws is seen as thrown by the faulting statement: it can be caught
// around it where the compiler was told that any statement may throw (-fnon-call-exceptions), and
// around a call of the function with the statement. Nothing when the signals are handed over
// already.
void begin_fault_signals(FaultHandler handler);

// Gives the signals back to what had them before, with its flags. Nothing without a begin.
void end_fault_signals();

} // namespace kortools::platform
