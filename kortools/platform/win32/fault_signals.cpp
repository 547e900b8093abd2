// SPDX-License-Identifier: MIT
// A fault is an exception of the system. One that nobody takes ends up in the process's last
// filter, on whichever thread it happened. The filter lets the thread go on as if the faulting
// instruction had called throw_fault(): the stack is a plain one then, with the faulting
// instruction in place of a call, and what is thrown there is caught as from any call. (Thrown from
// the filter itself it would be missed by a try block that begins with the instruction, because the
// unwinder looks at the byte before.)
//
// The C runtime's signals are needed for raise(), which calls their handlers itself. They are also
// called by a frame that mingw-w64 puts around main(), before the filter has its turn, and after
// setting the signal back to its default. The handler returns then without doing anything: the
// instruction faults a second time, the frame finds the default and leaves it to the filter.
#include "kortools/platform/fault_signals.h"

#include <atomic>
#include <iterator>
#include <windows.h>

// Called with the signal's number in place of the faulting instruction; the stack may be aligned
// for a function as well as for a call. Keeps the frame so that the unwinder finds its way.
extern "C" void kortools_enter_fault();
asm(R"(
    .text
    .def kortools_enter_fault; .scl 2; .type 32; .endef
    .globl kortools_enter_fault
    .seh_proc kortools_enter_fault
kortools_enter_fault:
    pushq %rbp
    .seh_pushreg %rbp
    movq %rsp, %rbp
    .seh_setframe %rbp, 0
    .seh_endprologue
    subq $32, %rsp
    andq $-16, %rsp
    call kortools_throw_fault
    nop
    .seh_endproc
)");

namespace kortools::platform {
namespace {

using SignalHandler = void (*)(int);

std::atomic<FaultHandler> s_handler { nullptr }; // null: not begun
SignalHandler s_former[std::size(fault_signals)];
LPTOP_LEVEL_EXCEPTION_FILTER s_former_filter = nullptr;

int get_signal(DWORD code) // 0: none
{
    switch (code) {
    case EXCEPTION_ACCESS_VIOLATION:
        return SIGSEGV;
    case EXCEPTION_ILLEGAL_INSTRUCTION:
    case EXCEPTION_PRIV_INSTRUCTION:
        return SIGILL;
    case EXCEPTION_FLT_DENORMAL_OPERAND:
    case EXCEPTION_FLT_DIVIDE_BY_ZERO:
    case EXCEPTION_FLT_INEXACT_RESULT:
    case EXCEPTION_FLT_INVALID_OPERATION:
    case EXCEPTION_FLT_OVERFLOW:
    case EXCEPTION_FLT_STACK_CHECK:
    case EXCEPTION_FLT_UNDERFLOW:
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
    case EXCEPTION_INT_OVERFLOW:
        return SIGFPE;
    default:
        return 0;
    }
}

bool lies_in_runtime(void const *code)
{
    HMODULE module = nullptr;
    return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS
                   | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
               static_cast<wchar_t const *>(code), &module)
        && module == GetModuleHandleW(L"msvcrt.dll");
}

void on_signal(int number);

void throw_fault(int number)
{
    FaultHandler const handler = s_handler;
    std::signal(number, on_signal); // whoever called a handler has set the default
    for (FaultSignal const &fault : fault_signals) {
        if (handler && fault.number == number)
            handler(fault.name);
    }
    std::abort(); // ended by another thread while this one was on its way
}

void on_signal(int number)
{
    if (lies_in_runtime(__builtin_return_address(0)))
        throw_fault(number);
}

LONG WINAPI on_exception(EXCEPTION_POINTERS *exception)
{
    int const number = get_signal(exception->ExceptionRecord->ExceptionCode);
    if (number == 0)
        return s_former_filter ? s_former_filter(exception) : LONG { EXCEPTION_CONTINUE_SEARCH };
    CONTEXT &context = *exception->ContextRecord;
    context.Rsp -= sizeof(DWORD64);
    *reinterpret_cast<DWORD64 *>(context.Rsp) = context.Rip + 1;
    context.Rip = reinterpret_cast<DWORD64>(kortools_enter_fault);
    context.Rcx = static_cast<DWORD64>(number);
    context.MxCsr &= ~0x3FU;              // what has been reported is not pending any more
    context.FltSave.StatusWord &= 0x7F00; // likewise
    return EXCEPTION_CONTINUE_EXECUTION;
}

} // namespace

extern "C" [[noreturn]] __attribute__((used)) void kortools_throw_fault(int number)
{
    throw_fault(number);
    __builtin_unreachable();
}

void begin_fault_signals(FaultHandler handler)
{
    if (s_handler.exchange(handler))
        return;
    for (std::size_t i = 0; i < std::size(fault_signals); ++i)
        s_former[i] = std::signal(fault_signals[i].number, on_signal);
    s_former_filter = SetUnhandledExceptionFilter(on_exception);
}

void end_fault_signals()
{
    if (!s_handler)
        return;
    LPTOP_LEVEL_EXCEPTION_FILTER const present = SetUnhandledExceptionFilter(s_former_filter);
    if (present != on_exception)
        SetUnhandledExceptionFilter(present); // somebody's who came later
    for (std::size_t i = 0; i < std::size(fault_signals); ++i)
        std::signal(fault_signals[i].number, s_former[i]);
    s_handler = nullptr;
}

} // namespace kortools::platform
