// SPDX-License-Identifier: MIT
#include "kortools/archive/pending_exceptions.h"

#include "kortools/archive/exception.h"
#include "kortools/platform/threads.h"

#include <iterator>
#include <mutex>
#include <new>

namespace kortools::archive {
namespace {

constinit CXException *s_chains[23] = {}; // by thread identifier modulo their number

// Never destroyed, because the static objects of other modules still throw and catch while they are
// destroyed, and not on the heap, because exceptions tell of exhausted memory.
std::mutex &get_mutex()
{
    alignas(std::mutex) static unsigned char s_storage[sizeof(std::mutex)];
    static auto *const s_mutex = new (s_storage) std::mutex;
    return *s_mutex;
}

// What is pending when the library is unloaded would otherwise lie in memory for good.
struct DestroyAtUnload {
    ~DestroyAtUnload() { PendingExceptions::destroy_all(); }
} const s_destroy_at_unload;

} // namespace

// The link in the chain that points to the thread's exception, or the null link at its end. Needs
// the lock.
CXException **PendingExceptions::find_link(unsigned long long thread)
{
    CXException **link = &s_chains[thread % std::size(s_chains)];
    while (*link && (*link)->m_pendingThread != thread)
        link = &(*link)->m_nextPending;
    return link;
}

// Needs the lock.
CXException *PendingExceptions::unlink(CXException **link)
{
    CXException *const exception = *link;
    if (exception) {
        *link = exception->m_nextPending;
        exception->m_nextPending = nullptr;
        exception->m_pendingThread = 0;
    }
    return exception;
}

void PendingExceptions::set(CXException *exception)
{
    unsigned long long const thread = platform::get_current_thread_id();
    CXException *previous = nullptr;
    {
        std::lock_guard const lock(get_mutex());
        if (exception->m_pendingThread == thread)
            return;
        if (exception->m_pendingThread != 0)
            unlink(find_link(exception->m_pendingThread));
        CXException **const link = find_link(thread);
        previous = unlink(link);
        exception->m_pendingThread = thread;
        exception->m_nextPending = *link;
        *link = exception;
    }
    delete previous;
}

CXException *PendingExceptions::get()
{
    std::lock_guard const lock(get_mutex());
    return *find_link(platform::get_current_thread_id());
}

CXException *PendingExceptions::take()
{
    std::lock_guard const lock(get_mutex());
    return unlink(find_link(platform::get_current_thread_id()));
}

void PendingExceptions::remove(CXException *exception)
{
    std::lock_guard const lock(get_mutex());
    if (exception->m_pendingThread != 0)
        unlink(find_link(exception->m_pendingThread));
}

void PendingExceptions::destroy_all()
{
    for (CXException *&chain : s_chains) {
        for (;;) {
            CXException *exception = nullptr;
            {
                std::lock_guard const lock(get_mutex());
                exception = unlink(&chain);
            }
            if (!exception)
                break;
            delete exception;
        }
    }
}

void release_pending_exceptions()
{
    PendingExceptions::destroy_all();
}

} // namespace kortools::archive

void XSetThreadException(CXException *exception)
{
    if (exception)
        kortools::archive::PendingExceptions::set(exception);
}

void XDeleteThreadException()
{
    delete kortools::archive::PendingExceptions::take();
}

CXException *XGetThreadException()
{
    return kortools::archive::PendingExceptions::get();
}
