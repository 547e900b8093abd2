// SPDX-License-Identifier: MIT
// CXThread: a thread of the system, which runs a function or the Start(), Run() and Finish() of a
// derived class. docs/threads.md has the life cycle and what to know about suspending.
//
// By default a started object deletes itself when its thread ends, so the pointer that
// BeginThread() returns may be used for as long only as the thread is known to run. An object that
// was told to stay, and is begun with keepAutoDelete, is deleted by its owner after WaitForEnd().
//
// Each object has a lock of its own for its flags; all functions but the destructor may be called
// by any thread. A thread is a child of the thread that began it: see thread_registry.h for the
// marks that it inherits.
//
//   class CImport : public CXThread {
//   public:
//       using CXThread::CXThread;
//       bool Run() override; // comes back early when ShouldCancel()
//   };
//   CXThread *import = CXThread::BeginThread(
//       new CImport(true), xThreadPriorityBelowNormal, CXThread::keepAutoDelete);
//   ...
//   import->SetCancel();
//   import->WaitForEnd();
//   delete import;
#pragma once

#include "kortools/archive/runtime_class.h"
#include "kortools/core/critical_section.h"
#include "kortools/export.h"

#include <atomic>
#include <memory>

namespace kortools::platform {
class NativeThread;
}

namespace kortools::app {
struct ThreadHooks;
}

// From the least to the most urgent. On Windows these are the system's levels. On Linux each thread
// has its own nice value, counted from the process's: 10, 5, 0, -5, -10 and -20; idle is the policy
// for idle work. There, only privileged users (or those with a RLIMIT_NICE) may raise a priority,
// also one that has been lowered: SetThreadPriority() then returns false, and a new thread begins
// with that of the thread that began it, as GetThreadPriority() tells.
enum xThreadPriority {
    xThreadPriorityIdle = -15,
    xThreadPriorityLowest = -2,
    xThreadPriorityBelowNormal = -1,
    xThreadPriorityNormal = 0,
    xThreadPriorityAboveNormal = 1,
    xThreadPriorityHighest = 2,
    xThreadPriorityTimeCritical = 15
};

class KORTOOLS_API CXThread : public CXObject {
    KOR_DECLARE_CLASS(CXThread)
public:
    using ThreadFunction = bool (*)(void *data); // a body; its result is the thread's

    enum ThreadFlags : unsigned int {
        autoDelete = 0x1,      // the object deletes itself when the thread ends
        cancelRequested = 0x2, // SetCancel() was called
        terminated = 0x8       // the thread is about to end; with autoDelete nobody sees it
    };
    enum CreationFlags : unsigned int {
        keepAutoDelete = 0x2, // the flag stays as the object has it; else it is set
        beginSuspended = 0x4  // the body waits for ResumeThread()
    };
    enum : unsigned int { infinite = 0xFFFFFFFF }; // a time without a limit

    // For derived classes. The object deletes itself unless `keep`.
    explicit CXThread(bool keep = false);

    // The object stays, unless BeginThread() or SetAutoDelete() decide otherwise.
    CXThread(ThreadFunction function, void *data);

    CXThread(CXThread const &) = delete;
    CXThread &operator=(CXThread const &) = delete;

    // Forgets what the thread registry has about the thread, and closes the handle. A thread that
    // still runs, and is not the one that deletes the object, must not use the object any more.
    ~CXThread() override;

    // The body: when Start() returns true, Run() gives the result and Finish() follows; else only
    // Finish() is called, and the result is false. Nothing follows an exception, which may escape
    // all three: it is deleted, and the result is false.
    virtual bool Start();  // true by default
    virtual void Finish(); // nothing by default
    virtual bool Run();    // true by default

    // These start a thread for a new object, for `thread`, or for an object of a class derived from
    // CXThread. They return the object, which may be gone already when it deletes itself. On
    // failure they delete it and return null; they never throw, and leave the calling thread
    // without a pending exception. `creationFlags` are CreationFlags, the stack size is in bytes
    // (0: the system's default).
    //
    // An object whose thread has ended may be given again: it then starts afresh. One whose thread
    // still runs is refused with null, and goes on.
    static CXThread *BeginThread(ThreadFunction function, void *data,
        xThreadPriority priority = xThreadPriorityNormal, unsigned int creationFlags = 0,
        unsigned int stackSize = 0);
    static CXThread *BeginThread(CXThread *thread, xThreadPriority priority = xThreadPriorityNormal,
        unsigned int creationFlags = 0, unsigned int stackSize = 0);
    static CXThread *BeginThread(CXRuntimeClass const *threadClass,
        xThreadPriority priority = xThreadPriorityNormal, unsigned int creationFlags = 0,
        unsigned int stackSize = 0);

    void SetCancel();          // asks the body to end, which it does when it sees ShouldCancel()
    bool ShouldCancel() const; // for the body: has SetCancel() been called?
    bool IsTerminated() const;
    void SetAutoDelete(bool deleteAtEnd);
    void SetFlag(ThreadFlags flag, bool on = true);
    bool IsFlagSet(ThreadFlags flag) const;

    // Locks or unlocks the object's own recursive lock, which the functions above take as well.
    // Returns true.
    bool Lock(bool lock);

    // Stops the thread, wherever it is: it has stopped when this returns, unless a thread stops
    // itself. It goes on after as many calls of ResumeThread(). False when no thread runs; resuming
    // one that is not suspended does nothing and is true.
    //
    // What a stopped thread holds stays held, the heap's locks among them: whoever stops a thread
    // does little until it resumes it.
    bool SuspendThread();
    bool ResumeThread();

    // A bit, not the count: one ResumeThread() clears it however often the thread was suspended.
    // Kept, for callers that loop on it.
    bool IsSuspended() const;

    // Waits until the thread has ended, with all its thread-local objects. False when the time (in
    // milliseconds) is over before, when no thread was started, and when a thread waits for itself.
    bool WaitForEnd(unsigned int timeout = infinite) const;

    bool GetThreadResult() const; // of the body; false until it has ended
    bool IsValidThread() const;   // was a thread started? Stays true when it has ended.

    // Windows: the HANDLE, to be waited for but not closed. Linux: the pthread_t, to be used while
    // the thread runs, and neither joined nor detached. Null when no thread was started.
    void *GetThreadHandle() const;

    unsigned long long GetThreadID() const; // the system's; 0 when no thread was started
    xThreadPriority GetThreadPriority() const;
    bool SetThreadPriority(xThreadPriority priority); // false when refused, or no thread runs
    void *GetUserThreadData() const { return m_userData; }

    static unsigned long long GetMainThreadID(); // GetApplicationMainThreadID()
    static unsigned long long GetCurrentThreadID();
    static void SleepCurrentThread(unsigned int milliseconds); // 0 gives way to other threads

private:
    friend class CCustomThread;
    friend class CWinCustomThread;

    bool Launch(xThreadPriority priority, unsigned int creationFlags, unsigned int stackSize);
    void Prepare();
    bool RunBody();
    void Release();
    void End();
    static void Announce(void *argument, unsigned long long id); // the argument is the object
    static bool Main(void *argument);
    static bool CatchingBody(void *argument);

    ThreadFunction m_function = nullptr; // null: the virtual operations are the body
    void *m_userData = nullptr;
    std::unique_ptr<kortools::platform::NativeThread> m_native; // null: no thread was started
    unsigned long long m_threadID = 0;
    std::atomic<bool> m_suspended { false };
    mutable CXCriticalSection m_lock;
    unsigned int m_flags = 0;                            // ThreadFlags; under the lock
    bool m_result = false;                               // under the lock
    unsigned long long m_parentID = 0;                   // the thread that began this one
    kortools::app::ThreadHooks const *m_hooks = nullptr; // null: none
};
