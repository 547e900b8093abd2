// SPDX-License-Identifier: MIT
#include "kortools/app/thread_registry.h"

#include "kortools/app/thread_records.h"
#include "kortools/core/critical_section.h"
#include "kortools/core/hash_map.h"
#include "kortools/core/hash_table.h"
#include "kortools/core/throw.h"
#include "kortools/platform/threads.h"

#include <algorithm>
#include <atomic>
#include <optional>

namespace {

using ThreadID = unsigned long long;
using ParentMap = CHashMap<ThreadID, ThreadID, ThreadID>;
using ThreadSet = CHashTable<ThreadID>;

enum Mark { cancel_mark, silent_mark };

constexpr unsigned table_size = 23; // slots, at first

constinit std::atomic<ThreadID> s_main_thread = 0; // 0: not recorded yet

// A set of threads that mostly is empty or has a few elements, and is asked about often.
class MarkSet {
public:
    bool is_empty() const { return m_count.load(std::memory_order_acquire) == 0; }

    bool contains(ThreadID thread) const
    {
        unsigned const count = m_count.load(std::memory_order_relaxed);
        if (count > few)
            return m_threads->IsFound(thread);
        return std::find(m_first, m_first + count, thread) != m_first + count;
    }

    // False without memory.
    bool change(ThreadID thread, bool marked)
    {
        if (!m_threads && !marked)
            return true;
        if (!m_threads)
            m_threads.emplace(table_size);
        if (!marked && !m_threads->Remove(thread))
            return true;
        if (marked && m_threads->Insert(thread) == 0)
            return m_threads->IsFound(thread);
        unsigned const count = m_threads->GetCount();
        ThreadID *next = m_first;
        if (count <= few) {
            for (ThreadID const each : *m_threads)
                *next++ = each;
        }
        m_count.store(count, std::memory_order_release);
        return true;
    }

private:
    static constexpr unsigned few = 4;

    std::optional<ThreadSet> m_threads;
    ThreadID m_first[few] {};            // all of them again, when they are few
    std::atomic<unsigned> m_count { 0 }; // may be read without the lock
};

struct ThreadRegistry {
    CXCriticalSection m_lock;
    std::optional<ParentMap> m_parents;
    MarkSet m_marks[2]; // by Mark
    std::atomic<unsigned long long> m_changes {
        1
    }; // of everything above; may be read without the lock

    // False without memory.
    bool attach(ThreadID child, ThreadID parent)
    {
        ++m_changes;
        if (!m_parents)
            m_parents.emplace(table_size);
        return m_parents->Insert(child, parent) != 0 || m_parents->IsFound(child);
    }
    void detach(ThreadID child)
    {
        ++m_changes;
        if (m_parents)
            m_parents->Remove(child);
    }
    bool mark(Mark mark, ThreadID thread, bool marked)
    {
        ++m_changes;
        return m_marks[mark].change(thread, marked);
    }
    bool inherits(MarkSet const &marks, ThreadID thread) const;
};

// Never destroyed: threads end, and ask, while static objects are destroyed.
ThreadRegistry &get_registry()
{
    static auto *const s_registry = new ThreadRegistry;
    return *s_registry;
}

ThreadID resolve(ThreadID thread)
{
    return thread != 0 ? thread : kortools::platform::get_current_thread_id();
}

// Walks up with one mile stone, which is moved further and further away: in a ring, the walk passes
// a stone that it has left behind.
bool ThreadRegistry::inherits(MarkSet const &marks, ThreadID thread) const
{
    ThreadID stone = 0;
    unsigned steps = 0;
    unsigned steps_to_next_stone = 1;
    while (thread != stone) {
        if (marks.contains(thread))
            return true;
        ThreadID const *const parent = m_parents ? m_parents->Find(thread) : nullptr;
        if (!parent)
            return false;
        if (++steps == steps_to_next_stone) {
            stone = thread;
            steps = 0;
            steps_to_next_stone *= 2;
        }
        thread = *parent;
    }
    return false;
}

void set_mark(Mark mark, ThreadID thread, bool marked)
{
    ThreadRegistry &registry = get_registry();
    CXSingleLock const lock(&registry.m_lock, true);
    if (!registry.mark(mark, resolve(thread), marked))
        kortools::core::throw_out_of_memory();
}

// The last answer that the calling thread got, good until anything changes: loops ask for the same
// thread again and again.
struct Answer {
    unsigned long long changes = 0;
    ThreadID thread = 0;
    bool marked = false;
};
constinit thread_local Answer s_answers[2] = {}; // by Mark

bool has_mark(Mark mark, ThreadID thread)
{
    ThreadRegistry &registry = get_registry();
    if (registry.m_marks[mark].is_empty())
        return false;
    thread = resolve(thread);
    Answer &answer = s_answers[mark];
    if (answer.thread == thread
        && answer.changes == registry.m_changes.load(std::memory_order_acquire))
        return answer.marked;
    CXSingleLock const lock(&registry.m_lock, true);
    bool const marked = registry.inherits(registry.m_marks[mark], thread);
    answer = { registry.m_changes.load(std::memory_order_relaxed), thread, marked };
    return marked;
}

[[maybe_unused]] ThreadID const s_loading_thread = GetApplicationMainThreadID();

} // namespace

void AttachThread(unsigned long long child, unsigned long long parent)
{
    child = resolve(child);
    parent = resolve(parent);
    if (child == parent)
        return;
    ThreadRegistry &registry = get_registry();
    CXSingleLock const lock(&registry.m_lock, true);
    if (!registry.attach(child, parent))
        kortools::core::throw_out_of_memory();
}

void DetachThread(unsigned long long child)
{
    ThreadRegistry &registry = get_registry();
    CXSingleLock const lock(&registry.m_lock, true);
    registry.detach(resolve(child));
}

int GetChildThreads(unsigned long long parent, CXArray<unsigned long long> &threads)
{
    threads.RemoveAll();
    threads.FreeExtra();
    parent = resolve(parent);
    ThreadRegistry &registry = get_registry();
    CXSingleLock const lock(&registry.m_lock, true);
    if (registry.m_parents) {
        for (auto const [child, its_parent] : *registry.m_parents) {
            if (its_parent == parent)
                threads.Add(child);
        }
    }
    return threads.GetSize();
}

void SetCancelThread(bool cancel, unsigned long long thread)
{
    set_mark(cancel_mark, thread, cancel);
}

void SetSilentThread(bool silent, unsigned long long thread)
{
    set_mark(silent_mark, thread, silent);
}

bool ShouldCancelThread(unsigned long long thread)
{
    return has_mark(cancel_mark, thread);
}

bool IsSilentThread(unsigned long long thread)
{
    return has_mark(silent_mark, thread);
}

// Asked before the library's static objects are initialised, it answers with the thread that
// initialises them.
unsigned long long GetApplicationMainThreadID()
{
    ThreadID recorded = s_main_thread.load(std::memory_order_relaxed);
    if (recorded == 0) {
        ThreadID const current = kortools::platform::get_current_thread_id();
        if (s_main_thread.compare_exchange_strong(recorded, current))
            return current;
    }
    return recorded;
}

namespace kortools::app {

void record_started_thread(unsigned long long thread, unsigned long long parent) noexcept
{
    ThreadRegistry &registry = get_registry();
    CXSingleLock const lock(&registry.m_lock, true);
    registry.mark(cancel_mark, thread, false);
    registry.mark(silent_mark, thread, false);
    if (!registry.attach(thread, parent))
        registry.detach(thread);
}

void forget_thread(unsigned long long thread) noexcept
{
    ThreadRegistry &registry = get_registry();
    CXSingleLock const lock(&registry.m_lock, true);
    registry.mark(silent_mark, thread, false);
    registry.mark(cancel_mark, thread, false);
    registry.detach(thread);
}

void record_main_thread()
{
    s_main_thread = platform::get_current_thread_id();
}

void lock_thread_registry()
{
    get_registry().m_lock.Lock();
}

void unlock_thread_registry()
{
    get_registry().m_lock.Unlock();
}

} // namespace kortools::app
