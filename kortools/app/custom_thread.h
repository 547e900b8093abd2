// SPDX-License-Identifier: MIT
// CCustomThread: a CXThread that can be ended together with all others of its kind, when the
// application closes for instance, and that has a name. CWinCustomThread: the same with OLE.
//
// The wish to end is a wish: bodies look at MustTerminate() and come back. GetRunningThreadCount(),
// WaitEndOfThreads() and HardThreadsTermination() mean every CCustomThread that has been begun and
// has not ended, suspended ones too, but never the calling thread.
//
//   bool CImport::Run() // CImport is a CCustomThread
//   {
//       while (!MustTerminate() && ImportNextMesh()) { }
//       return IsComplete();
//   }
//
//   CCustomThread::AskForThreadsEnd(); // on the main thread, at the end
//   if (!CCustomThread::WaitEndOfThreads(5000))
//       CCustomThread::HardThreadsTermination();
#pragma once

#include "kortools/app/thread.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

class KORTOOLS_API CCustomThread : public CXThread {
    KOR_DECLARE_CLASS(CCustomThread)
public:
    explicit CCustomThread(bool keep = false); // as CXThread's
    CCustomThread(ThreadFunction function, void *data);

    // Asks all of them to end, or takes that back. Threads that begin meanwhile are asked, too.
    static void AskForThreadsEnd(bool end = true);
    static bool ThreadsMustTerminate(); // were all asked?

    // Waits until none runs, milliseconds at most. False when the time is over before. They are not
    // asked to end by this.
    static bool WaitEndOfThreads(unsigned int timeout = infinite);

    // Ends those that run, wherever they are, and returns how many. A last resort before the
    // process ends: they run no further instruction, so that what they hold stays held, their
    // objects are not deleted, and their memory is not freed. A thread of which the system cannot
    // get hold within two seconds goes on.
    static int HardThreadsTermination();

    static int GetRunningThreadCount();

    // Has anybody asked this thread to end? By AskForThreadsEnd(), SetCancel(), or the cancel mark
    // of the thread or of one above it in the thread registry.
    bool MustTerminate() const;

    // Asks this thread to end, resumes it when it is suspended, and waits, milliseconds at most.
    // True when it runs no more, or has never run. On the thread itself this only asks, and is
    // false.
    bool StopThread(unsigned int timeout = infinite);

    // Names are for debuggers and for tools that list threads. They may be set before the thread
    // begins. Linux shows the first 15 bytes of their UTF-8 form.
    void SetThreadName(CXTString<wchar_t> const &name);
    CXTString<wchar_t> GetThreadName() const;
    static void SetCurrentThreadName(CXTString<wchar_t> const &name); // of any thread

private:
    friend class CWinCustomThread;

    static void Announce(CXThread &thread, kortools::platform::NativeThread const &native);
    static void Enter(CXThread &thread);
    static void Leave(CXThread &thread);
    static kortools::app::ThreadHooks const s_hooks;

    CXTString<wchar_t> m_name; // under the object's lock; empty: the system's choice
};

// Enters an OLE apartment on its thread before the body and leaves it afterwards, for drag and
// drop, the clipboard and controls. Linux has no OLE: there it is a CCustomThread.
class KORTOOLS_API CWinCustomThread : public CCustomThread {
    KOR_DECLARE_CLASS(CWinCustomThread)
public:
    explicit CWinCustomThread(bool keep = false);
    CWinCustomThread(ThreadFunction function, void *data);

private:
    static void Enter(CXThread &thread);
    static void Leave(CXThread &thread);
    static kortools::app::ThreadHooks const s_hooks;

    bool m_inApartment = false; // used by the thread itself
};
