// SPDX-License-Identifier: MIT
// The library's start and end. docs/start.md tells how they go together with the rest.
//
// Called by the main thread, the start before everything else. What belongs to no start (strings,
// files, threads) also works without one.
//
//   InitBrantisApplication("Scoutrix", nullptr, korFileTypes | korFaultSignals, L"scoutrix.log");
//   ...
//   CloseBrantisApplication(korFileTypes | korFaultSignals | korAllState);
#pragma once

#include "kortools/export.h"

enum KorToolsFlags : unsigned int {
    // Start: make the registry of file types, with the library's own. End: forget all types.
    korFileTypes = 1,

    // Start: SIGSEGV, SIGFPE and SIGILL become exceptions, CXException * with the signal's name as
    // message, pending and thrown by the faulting statement. They can be caught where the code is
    // compiled with -fnon-call-exceptions. End: the signals go to whoever had them before.
    korFaultSignals = 2,

    // Start: where the C runtime library would end the process because of an argument that it does
    // not accept (on Windows), the log gets a line, and the function fails with EINVAL. The end
    // leaves it so.
    korInvalidParameters = 4,

    // End: free what the process knows of the application (its path, product, directories, exit
    // callbacks) and the pending exceptions of all threads.
    korAllState = 16
};

// For an application. Only the first call counts, until CloseBrantisApplication(). In this order:
// the calling thread becomes the main thread, and parallel loops get as many threads as the OpenMP
// runtime allows; `logFile`, unless null, becomes the log, from scratch and for every line; how
// many threads there are is written to the log; SetApplicationPath(), unless the path is null; the
// flags; plug-ins are looked for in "Plugins\" beside the application. The application's name,
// which callers pass first, is not used: it follows from the path, or from
// SetInternalProductName().
KORTOOLS_API void InitBrantisApplication(char const *name = nullptr,
    wchar_t const *applicationPath = nullptr, unsigned int flags = 0,
    wchar_t const *logFile = nullptr);

// Nothing without a start. In this order: the flags korFaultSignals and korFileTypes; the log is
// closed; the exit callbacks are called; the flag korAllState. A new start may follow.
KORTOOLS_API void CloseBrantisApplication(unsigned int flags = 0);

// The same for a process that is no application of its own. There is one start: of these and those
// above whichever comes first counts.
KORTOOLS_API void InitKorTools(unsigned int flags = 0);
KORTOOLS_API void CloseKorTools(unsigned int flags = 0);

// A loaded library, as the system's own headers for Windows declare it.
struct HINSTANCE__;
using HINSTANCE = HINSTANCE__ *; // a loaded library

// The library as a loaded module: what GetProcAddress() takes on Windows, dlsym() on Linux.
KORTOOLS_API HINSTANCE KorToolsResourceHandle();
