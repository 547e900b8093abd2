// SPDX-License-Identifier: MIT
// Locks, threads and the thread registry, beside the standard library's. The registry's peer is
// what a user would write: maps behind a recursive mutex.
#include "kortools/app/thread.h"
#include "kortools/app/thread_registry.h"
#include "kortools/core/critical_section.h"

#include <benchmark/benchmark.h>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <unordered_set>

namespace {

// A program that uses threads has started one: the C library is faster before.
void become_multithreaded()
{
    static std::thread s_idle([] {});
    static bool const s_started = (s_idle.detach(), true);
    benchmark::DoNotOptimize(s_started);
}

template <class Lock> void lock_uncontended(benchmark::State &state)
{
    become_multithreaded();
    Lock lock;
    for (auto _ : state) {
        lock.lock();
        benchmark::ClobberMemory();
        lock.unlock();
    }
}

template <class Lock> void lock_nested(benchmark::State &state)
{
    become_multithreaded();
    Lock lock;
    std::lock_guard const outer(lock);
    for (auto _ : state) {
        lock.lock();
        benchmark::ClobberMemory();
        lock.unlock();
    }
}

// Each thread counts 20 steps with the lock and 20 without.
template <class Lock> void lock_contended(benchmark::State &state)
{
    static Lock s_lock;
    static long s_steps = 0;
    for (auto _ : state) {
        {
            std::lock_guard const guard(s_lock);
            for (int i = 0; i < 20; ++i)
                benchmark::DoNotOptimize(++s_steps);
        }
        for (int i = 0; i < 20; ++i)
            benchmark::DoNotOptimize(i);
    }
}

void BM_UncontendedLock_CXCriticalSection(benchmark::State &state)
{
    lock_uncontended<CXCriticalSection>(state);
}
void BM_UncontendedLock_StdRecursiveMutex(benchmark::State &state)
{
    lock_uncontended<std::recursive_mutex>(state);
}
void BM_NestedLock_CXCriticalSection(benchmark::State &state)
{
    lock_nested<CXCriticalSection>(state);
}
void BM_NestedLock_StdRecursiveMutex(benchmark::State &state)
{
    lock_nested<std::recursive_mutex>(state);
}
void BM_ContendedLock_CXCriticalSection(benchmark::State &state)
{
    lock_contended<CXCriticalSection>(state);
}
void BM_ContendedLock_StdRecursiveMutex(benchmark::State &state)
{
    lock_contended<std::recursive_mutex>(state);
}
BENCHMARK(BM_UncontendedLock_CXCriticalSection);
BENCHMARK(BM_UncontendedLock_StdRecursiveMutex);
BENCHMARK(BM_NestedLock_CXCriticalSection);
BENCHMARK(BM_NestedLock_StdRecursiveMutex);
BENCHMARK(BM_ContendedLock_CXCriticalSection)->Threads(2)->Threads(4)->UseRealTime();
BENCHMARK(BM_ContendedLock_StdRecursiveMutex)->Threads(2)->Threads(4)->UseRealTime();

bool count_up(void *count)
{
    ++*static_cast<int *>(count);
    return true;
}

// Ours also enters the thread in the registry, and waits until it is there.
void BM_StartAndJoin_CXThread(benchmark::State &state)
{
    int count = 0;
    int expected = 0;
    for (auto _ : state) {
        CXThread thread(count_up, &count);
        CXThread::BeginThread(&thread, xThreadPriorityNormal, CXThread::keepAutoDelete);
        thread.WaitForEnd();
        ++expected;
    }
    if (count != expected)
        state.SkipWithError("a thread has not run");
}
void BM_StartAndJoin_StdThread(benchmark::State &state)
{
    int count = 0;
    for (auto _ : state)
        std::thread(count_up, &count).join();
}
BENCHMARK(BM_StartAndJoin_CXThread)->UseRealTime();
BENCHMARK(BM_StartAndJoin_StdThread)->UseRealTime();

using ThreadID = unsigned long long;

constexpr ThreadID first = 1ULL << 40; // above those of the system
constexpr int other_threads = 100;     // with parents, elsewhere

struct KorRegistry {
    static void attach(ThreadID child, ThreadID parent) { AttachThread(child, parent); }
    static void cancel(bool cancels, ThreadID thread) { SetCancelThread(cancels, thread); }
    static bool should_cancel(ThreadID thread) { return ShouldCancelThread(thread); }
};

struct MapRegistry {
    std::recursive_mutex lock;
    std::unordered_map<ThreadID, ThreadID> parents;
    std::unordered_set<ThreadID> cancelled;

    void attach(ThreadID child, ThreadID parent) { parents[child] = parent; }
    void cancel(bool cancels, ThreadID thread)
    {
        std::lock_guard const guard(lock);
        if (cancels)
            cancelled.insert(thread);
        else
            cancelled.erase(thread);
    }
    bool should_cancel(ThreadID thread)
    {
        std::lock_guard const guard(lock);
        for (;;) {
            if (cancelled.contains(thread))
                return true;
            auto const parent = parents.find(thread);
            if (parent == parents.end())
                return false;
            thread = parent->second;
        }
    }
};

enum Marking { TheTopmost, Another, AnotherNowAndThen };

// The topmost of `depth` ancestors is marked, or an unrelated thread; in the last case something
// changes before each look-up.
template <class Registry> void look_up(benchmark::State &state, Marking marking)
{
    become_multithreaded();
    Registry registry;
    auto const depth = static_cast<ThreadID>(state.range(0));
    for (ThreadID i = 0; i < depth; ++i)
        registry.attach(first + i + 1, first + i);
    for (ThreadID i = 0; i < other_threads; ++i)
        registry.attach(first + 1000 + i, first + 999);
    ThreadID const mark = marking == TheTopmost ? first : first + 5000;
    registry.cancel(true, mark);
    for (auto _ : state) {
        if (marking == AnotherNowAndThen)
            registry.cancel(true, mark);
        if (registry.should_cancel(first + depth) != (marking == TheTopmost))
            state.SkipWithError("wrong answer");
    }
    registry.cancel(false, mark);
}

void BM_ShouldCancelMarked_KorTools(benchmark::State &state)
{
    look_up<KorRegistry>(state, TheTopmost);
}
void BM_ShouldCancelMarked_StdMaps(benchmark::State &state)
{
    look_up<MapRegistry>(state, TheTopmost);
}
void BM_ShouldCancelOthersMarked_KorTools(benchmark::State &state)
{
    look_up<KorRegistry>(state, Another);
}
void BM_ShouldCancelOthersMarked_StdMaps(benchmark::State &state)
{
    look_up<MapRegistry>(state, Another);
}
void BM_ShouldCancelAfterAChange_KorTools(benchmark::State &state)
{
    look_up<KorRegistry>(state, AnotherNowAndThen);
}
void BM_ShouldCancelAfterAChange_StdMaps(benchmark::State &state)
{
    look_up<MapRegistry>(state, AnotherNowAndThen);
}
BENCHMARK(BM_ShouldCancelMarked_KorTools)->Arg(1)->Arg(8)->Arg(64);
BENCHMARK(BM_ShouldCancelMarked_StdMaps)->Arg(1)->Arg(8)->Arg(64);
BENCHMARK(BM_ShouldCancelOthersMarked_KorTools)->Arg(1)->Arg(8)->Arg(64);
BENCHMARK(BM_ShouldCancelOthersMarked_StdMaps)->Arg(1)->Arg(8)->Arg(64);
BENCHMARK(BM_ShouldCancelAfterAChange_KorTools)->Arg(1)->Arg(8)->Arg(64);
BENCHMARK(BM_ShouldCancelAfterAChange_StdMaps)->Arg(1)->Arg(8)->Arg(64);

// What loops ask most of the time: nobody is marked.
void BM_ShouldCancelNoneMarked_KorTools(benchmark::State &state)
{
    become_multithreaded();
    for (auto _ : state)
        benchmark::DoNotOptimize(KorRegistry::should_cancel(0));
}
void BM_ShouldCancelNoneMarked_StdMaps(benchmark::State &state)
{
    become_multithreaded();
    MapRegistry registry;
    for (auto _ : state)
        benchmark::DoNotOptimize(registry.should_cancel(first));
}
BENCHMARK(BM_ShouldCancelNoneMarked_KorTools);
BENCHMARK(BM_ShouldCancelNoneMarked_StdMaps);

} // namespace

BENCHMARK_MAIN();
