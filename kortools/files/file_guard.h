// SPDX-License-Identifier: MIT
// fileTimeOut(): a time limit for whatever file operations the caller puts between two calls.
//
//   void *guard = nullptr;
//   unsigned int timeout = 500; // milliseconds
//   fileTimeOut(ioTimeOutCreate, path, &timeout, guard);
//   fileTimeOut(ioTimeOutStart, path, &timeout, guard);
//   file.Open(path, CXFile::modeRead);
//   bool const gaveUp = fileTimeOut(ioTimeOutEnd, path, &timeout, guard);
//   fileTimeOut(ioTimeOutDestroy, path, &timeout, guard);
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

enum IoTimeOut : int {
    ioTimeOutCreate = 0,       // makes a guard, if `*timeout` sets a limit for `path`
    ioTimeOutCreateAlways = 1, // makes a guard whatever the path, if `*timeout` sets a limit
    ioTimeOutStart = 2,        // begins the guarded section; may be repeated after an end
    ioTimeOutEnd = 3,          // ends it
    ioTimeOutDestroy = 4,      // destroys the guard, after ending its section; `guard` is then null
};

// One step of a guard. `timeout` is as in file_status.h; it must live as long as the guard, which
// stores 0xFFFFFFFF there when the time is over and then cancels what the thread waits for. All
// steps are done by one thread; `path` and `timeout` count when the guard is created only.
//
// Results: whether there is a guard (create), whether the section has begun (start), whether the
// time was over (end), whether there was a guard (destroy). Without a guard (null) the last three
// do nothing and return false, so callers need not ask.
//
// On Linux the waiting call is interrupted by a signal, which calls on some dead mounts do not
// notice; the functions that take a time-out themselves come back from those as well.
KORTOOLS_API bool fileTimeOut(
    IoTimeOut step, CXTString<wchar_t> const &path, unsigned int *timeout, void *&guard);
