// SPDX-License-Identifier: MIT
// The pending exception of each thread: a hash table of chains that run through the exceptions
// themselves. Registering therefore never allocates, which matters most to CXMemoryException.
//
// All functions lock; exceptions are destroyed outside the lock, because their destructors come
// back here.
#pragma once

class CXException;

namespace kortools::archive {

class PendingExceptions {
public:
    // Makes `exception` the calling thread's and destroys the one before, unless it is the same.
    static void set(CXException *exception);

    // The calling thread's pending exception or null; take() also takes it out.
    static CXException *get();
    static CXException *take();

    // Takes `exception` out, whosever it is.
    static void remove(CXException *exception);

    static void destroy_all();

private:
    static CXException **find_link(unsigned long long thread);
    static CXException *unlink(CXException **link);
};

} // namespace kortools::archive
