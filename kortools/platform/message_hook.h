// SPDX-License-Identifier: MIT
// What window procedures are sent.
//
// On Windows a hook of the system sees it. Elsewhere a window back end reports each message before
// its window gets it:
//
//   report_window_message({ number, wparam, lparam, L"Scene", L"KorView" });
#pragma once

#include "kortools/export.h"

namespace kortools::platform {

struct WindowMessage {
    unsigned int number; // of Windows
    unsigned long long wparam;
    unsigned long long lparam;
    wchar_t const *window;       // its text
    wchar_t const *window_class; // its kind
};
using MessageObserver = void (*)(WindowMessage const &message);

// From now on `observer` is called for the messages to windows of the calling thread, on that
// thread, but not for those that are sent while it runs. False when the system refuses, or when
// there is an observer.
bool begin_message_hook(MessageObserver observer);

// By any thread. Nothing without an observer.
void end_message_hook();

// Ignored on other threads than the observed one.
KORTOOLS_API void report_window_message(WindowMessage const &message);

// The system's part of beginning and ending.
bool install_message_hook();
void remove_message_hook();

} // namespace kortools::platform
