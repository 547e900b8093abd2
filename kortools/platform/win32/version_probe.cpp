// SPDX-License-Identifier: MIT
//
// A library that is mapped without its imports can be called as long as the function needs none of
// them. One that does faults; the fault is caught where it happens, and the thread goes on behind
// the call as if that had returned.
#include "kortools/platform/version_probe.h"

#include "kortools/platform/win32/quiet_errors.h"

#include <windows.h>

namespace kortools::platform {
namespace {

using NumberFunction = unsigned int (*)();

thread_local CONTEXT *s_way_out = nullptr; // while a function is called
thread_local DWORD s_fault = 0;            // what it did instead of returning

LONG CALLBACK leave_function(EXCEPTION_POINTERS *exception)
{
    CONTEXT *const way_out = s_way_out;
    DWORD const code = exception->ExceptionRecord->ExceptionCode;
    if (!way_out || (code & 0xF0000000) != 0xC0000000) // not an error: a message to a debugger
        return EXCEPTION_CONTINUE_SEARCH;
    s_way_out = nullptr;
    s_fault = code;
    *exception->ContextRecord = *way_out;
    return EXCEPTION_CONTINUE_EXECUTION;
}

// False when the function did not return. Everything that is looked at after a fault is in memory,
// as the registers are those from before the call.
[[gnu::noinline]] bool call_guarded(NumberFunction function, unsigned int volatile *number)
{
    CONTEXT way_out;
    s_fault = 0;
    RtlCaptureContext(&way_out);
    if (s_fault != 0)
        return false;
    s_way_out = &way_out;
    *number = function();
    s_way_out = nullptr;
    return true;
}

ProbeAnswer call(NumberFunction function)
{
    void *const handler = AddVectoredExceptionHandler(1, leave_function);
    unsigned int volatile number = 0;
    bool const has_returned = call_guarded(function, &number);
    RemoveVectoredExceptionHandler(handler);
    if (has_returned)
        return { ProbeResult::Answered, number, {} };
    char text[16];
    wsprintfA(text, "0x%08X", s_fault);
    return { ProbeResult::Crashed, 0, text };
}

} // namespace

struct VersionProbe::State { };

VersionProbe::VersionProbe() = default;
VersionProbe::~VersionProbe() = default;

ProbeAnswer VersionProbe::ask(wchar_t const *path, char const *function, unsigned int)
{
    QuietErrors const quiet;
    HMODULE const module = LoadLibraryExW(path, nullptr, DONT_RESOLVE_DLL_REFERENCES);
    if (!module) {
        std::string const code = std::to_string(GetLastError());
        return { ProbeResult::NotLoaded, 0, "system error " + code };
    }
    auto const address = reinterpret_cast<NumberFunction>(
        reinterpret_cast<void *>(GetProcAddress(module, function)));
    ProbeAnswer const answer
        = address ? call(address) : ProbeAnswer { ProbeResult::NoFunction, 0, {} };
    FreeLibrary(module);
    return answer;
}

void set_probe_program(std::string const &) { }

} // namespace kortools::platform
