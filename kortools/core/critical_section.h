// SPDX-License-Identifier: MIT
// CXCriticalSection: the recursive lock of every object that locks itself, and CXSingleLock, its
// scope guard.
//
//   CXSingleLock lock(&m_section, true);
//   m_entries.Add(entry); // unlocked at the end of the scope
//
// CXCriticalSection also has the standard library's names, so that std::scoped_lock and its like
// work with it.
#pragma once

#include "kortools/export.h"
#include "kortools/platform/recursive_lock.h"

class KORTOOLS_API CXCriticalSection {
public:
    CXCriticalSection(); // throws CXMemoryException when the system refuses a lock
    CXCriticalSection(CXCriticalSection const &) = delete;
    CXCriticalSection &operator=(CXCriticalSection const &) = delete;
    ~CXCriticalSection(); // no thread may hold it

    // Waits until no other thread holds the section. A thread that holds it may lock it again; it
    // is free after as many calls of Unlock().
    void Lock();

    // Only by the thread that holds the section.
    void Unlock();

    // Does any thread hold the section? The answer may be out of date when it arrives, unless the
    // calling thread is the holder.
    bool IsLocked() const { return m_lock.depth() > 0; }

    // The names that the standard's guards call.
    void lock() { Lock(); }
    void unlock() { Unlock(); }

private:
    kortools::platform::RecursiveLock m_lock;
};

// Holds a section at most once, however often Lock() is called. Used by one thread.
class KORTOOLS_API CXSingleLock {
public:
    explicit CXSingleLock(CXCriticalSection *section = nullptr, bool lockNow = false)
        : m_section(section)
    {
        if (lockNow)
            Lock();
    }
    CXSingleLock(CXSingleLock const &) = delete;
    CXSingleLock &operator=(CXSingleLock const &) = delete;
    ~CXSingleLock() { Unlock(); }

    // Unlocks the present section and turns to another one, which is not locked yet.
    void Attach(CXCriticalSection *section)
    {
        Unlock();
        m_section = section;
    }

    void Lock() // nothing when the section is held already, or when there is none
    {
        if (!m_section || m_locked)
            return;
        m_section->Lock();
        m_locked = true;
    }
    void Unlock() // nothing when the section is not held
    {
        if (!m_locked)
            return;
        m_section->Unlock();
        m_locked = false;
    }
    bool IsLocked() const { return m_locked; } // by this object

private:
    CXCriticalSection *m_section;
    bool m_locked = false;
};
