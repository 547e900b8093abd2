// SPDX-License-Identifier: MIT
// A mutex of one word that the kernel is asked about only when threads have to wait, as the C
// library's are. It is faster than those because it knows at compile time what kind it is, and a
// thread that takes it again does not come this far.
//
// The word: 0 free, 1 held, 2 held and perhaps waited for. A thread that has waited takes the lock
// with 2, because others may wait still; whoever lets go of a 2 wakes one.
#include "kortools/platform/recursive_lock.h"

#include "kortools/platform/posix/futex.h"

#include <emmintrin.h>
#include <new>
#include <sys/single_threaded.h>

namespace kortools::platform {
namespace {

constexpr unsigned free_word = 0;
constexpr unsigned held = 1;
constexpr unsigned waited_for = 2;

constexpr int spin_count = 40;

struct Mutex {
    std::atomic<void const *> owner { nullptr }; // a thread asks for itself only
    std::atomic<unsigned> word { free_word };
};

// A thread is known by the address of its own copy, which stays the same in a forked child.
[[gnu::tls_model("initial-exec")]] constinit thread_local char s_identity = 0;

Mutex &mutex_in(unsigned char *storage)
{
    return *std::launder(reinterpret_cast<Mutex *>(storage));
}

// A process with one thread is spared what the processors tell each other.
bool try_take(std::atomic<unsigned> &word)
{
    unsigned expected = free_word;
    if (!__libc_single_threaded)
        return word.compare_exchange_strong(
            expected, held, std::memory_order_acquire, std::memory_order_relaxed);
    if (word.load(std::memory_order_acquire) != free_word)
        return false;
    word.store(held, std::memory_order_relaxed);
    return true;
}

// Whoever holds the lock mostly gives it back within a microsecond, sooner than the kernel could
// put this thread to sleep.
[[gnu::noinline]] void wait_and_take(std::atomic<unsigned> &word)
{
    for (int i = 0; i < spin_count && word.load(std::memory_order_relaxed) == held; ++i)
        _mm_pause();
    if (try_take(word))
        return;
    while (word.exchange(waited_for, std::memory_order_acquire) != free_word)
        posix::futex_wait(word, waited_for);
}

void let_go(std::atomic<unsigned> &word)
{
    if (__libc_single_threaded && word.load(std::memory_order_relaxed) == held)
        word.store(free_word, std::memory_order_release);
    else if (word.exchange(free_word, std::memory_order_release) == waited_for)
        posix::futex_wake(word, 1);
}

} // namespace

RecursiveLock::RecursiveLock()
{
    static_assert(sizeof(Mutex) <= sizeof(m_system));
    new (m_system) Mutex;
}

RecursiveLock::~RecursiveLock()
{
    mutex_in(m_system).~Mutex();
}

void RecursiveLock::lock()
{
    Mutex &mutex = mutex_in(m_system);
    if (mutex.owner.load(std::memory_order_relaxed) != &s_identity) {
        if (!try_take(mutex.word)) [[unlikely]]
            wait_and_take(mutex.word);
        mutex.owner.store(&s_identity, std::memory_order_relaxed);
    }
    change_depth(1);
}

void RecursiveLock::unlock()
{
    if (change_depth(-1) > 0)
        return;
    Mutex &mutex = mutex_in(m_system);
    mutex.owner.store(nullptr, std::memory_order_relaxed);
    let_go(mutex.word);
}

} // namespace kortools::platform
