// SPDX-License-Identifier: MIT
// The handler throws right away: the unwinder knows the frame of a signal, and looks the faulting
// instruction itself up, not the one before as it does for calls.
#include "kortools/platform/fault_signals.h"

#include <atomic>
#include <cstdint>
#include <iterator>
#include <signal.h>
#include <ucontext.h>

namespace kortools::platform {
namespace {

std::atomic<FaultHandler> s_handler { nullptr }; // null: not begun
struct sigaction s_former[std::size(fault_signals)];

// A call of a null function has left for address 0, of which the unwinder knows nothing. Back to
// the call, which pushed its return address.
void return_from_null_call([[maybe_unused]] void *context)
{
#ifdef __x86_64__
    greg_t *const registers = static_cast<ucontext_t *>(context)->uc_mcontext.gregs;
    if (registers[REG_RIP] != 0)
        return;
    auto *const stack = reinterpret_cast<std::uintptr_t *>(registers[REG_RSP]);
    registers[REG_RIP] = static_cast<greg_t>(*stack - 1);
    registers[REG_RSP] += 8;
#endif
}

void on_fault(int number, siginfo_t *, void *context)
{
    FaultHandler const handler = s_handler;
    if (!handler)
        return; // ended meanwhile: the instruction faults again, for the one before
    return_from_null_call(context);
    for (FaultSignal const &fault : fault_signals) {
        if (fault.number == number)
            handler(fault.name);
    }
}

} // namespace

void begin_fault_signals(FaultHandler handler)
{
    if (s_handler.exchange(handler))
        return;
    struct sigaction action = {};
    action.sa_sigaction = on_fault;
    // Nobody returns from the handler, so the signal must not be held back while it runs. The other
    // stack is used where a thread has one, and left by the throw.
    action.sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK;
    for (std::size_t i = 0; i < std::size(fault_signals); ++i)
        sigaction(fault_signals[i].number, &action, &s_former[i]);
}

void end_fault_signals()
{
    if (!s_handler)
        return;
    for (std::size_t i = 0; i < std::size(fault_signals); ++i)
        sigaction(fault_signals[i].number, &s_former[i], nullptr);
    s_handler = nullptr;
}

} // namespace kortools::platform
