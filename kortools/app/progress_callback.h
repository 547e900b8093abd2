// SPDX-License-Identifier: MIT
// The progress stack: how long operations report to whoever started them, and learn that the user
// has cancelled, without knowing of any window.
//
// One stack for the process. Whoever starts an operation pushes a callback and pops it afterwards;
// the operation calls the topmost one. Not locked: pushes, pops and calls come from one thread at a
// time, usually the one that runs the operation. A callback may itself push, pop and call.
//
//   progressPushCallback(ShowProgress, &dialog);
//   Import(file); // calls progressCallCallback(progressQueryCancel, info) now and then
//   bool const cancelled = progressPopCallback();
#pragma once

#include "kortools/export.h"

// What is reported. The library only passes it on: the program defines it.
struct ProcessProgressInfo;

// `flags` and `info` are those of the call, `user` is what was pushed with the callback.
using ProcessProgressCallback
    = bool (*)(unsigned int flags, ProcessProgressInfo const &info, void *user);

// The flag that the library knows; the other bits are between callers and callbacks.
enum ProcessProgressFlags : unsigned int {
    progressQueryCancel = 0x10 // has the user cancelled? True when so.
};

// A null callback is ignored.
KORTOOLS_API void progressPushCallback(ProcessProgressCallback callback, void *user);

// The answer to the last query of the callback that is removed. False on an empty stack.
KORTOOLS_API bool progressPopCallback();

// The topmost callback, or null; `user` becomes what was pushed with it, or null.
KORTOOLS_API ProcessProgressCallback progressGetCallback(void *&user);

// Calls the topmost callback and returns its result; false on an empty stack. With
// progressQueryCancel the result is remembered for progressUserCancel() and progressPopCallback(),
// unless the callback has been popped meanwhile.
KORTOOLS_API bool progressCallCallback(unsigned int flags, ProcessProgressInfo const &info);

// The topmost callback's answer to the last query, without asking again; false before the first
// one, and on an empty stack.
KORTOOLS_API bool progressUserCancel();
