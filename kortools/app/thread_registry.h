// SPDX-License-Identifier: MIT
// The thread registry: which thread started which, and two marks, "cancel" and "silent", that a
// thread passes on to every thread below it.
//
// Threads are named by the system's identifiers (CXThread::GetCurrentThreadID()); 0 is the calling
// thread everywhere. A CXThread enters and leaves the registry by itself, other threads may be
// entered by hand. Any thread may call these functions at any time, also while static objects are
// initialised or destroyed. They throw CXMemoryException where memory is needed and there is none.
//
//   SetCancelThread(true, import->GetThreadID());
//   ...
//   if (ShouldCancelThread(0)) // on the import thread, and on those that it has started
//       return false;
#pragma once

#include "kortools/archive/archive.h"
#include "kortools/core/array.h"
#include "kortools/export.h"

// Enters `parent` as the parent of `child`, in place of another. Nothing when both are the same.
KORTOOLS_API void AttachThread(unsigned long long child, unsigned long long parent);

// Forgets the parent of `child`. The marks of `child`, and its own children, stay as they are.
KORTOOLS_API void DetachThread(unsigned long long child);

// Replaces the elements of `threads`, whose block is given up, by the threads that have `parent` as
// their parent, in no particular order. Returns their number. O(all threads that have a parent).
KORTOOLS_API int GetChildThreads(unsigned long long parent, CXArray<unsigned long long> &threads);

// Sets or clears a thread's own mark. What it inherits stays.
KORTOOLS_API void SetCancelThread(bool cancel, unsigned long long thread);
KORTOOLS_API void SetSilentThread(bool silent, unsigned long long thread);

// Is the thread marked, or one above it? O(depth), and next to nothing while no thread is marked.
// Where parents form a ring, the walk ends after it.
KORTOOLS_API bool ShouldCancelThread(unsigned long long thread);
KORTOOLS_API bool IsSilentThread(unsigned long long thread); // its messages are not to be shown

// The thread that initialised the application; until then the one that loaded the library. Only the
// main thread may touch windows.
KORTOOLS_API unsigned long long GetApplicationMainThreadID();
