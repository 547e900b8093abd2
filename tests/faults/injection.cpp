// SPDX-License-Identifier: MIT
#include "tests/faults/injection.h"

#include "tests/faults/strike.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <new>

namespace kor_test {
namespace {

constinit std::atomic<bool> s_armed { false };
constinit FaultPlan s_plan {};
constinit std::atomic<int> s_calls { 0 };
constinit std::atomic<int> s_faults { 0 };
[[maybe_unused]] constinit std::atomic<long> s_blocks { 0 };

template <class Function> [[maybe_unused]] Function find_next(Function, char const *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

[[maybe_unused]] void *count(void *block)
{
    if (block)
        s_blocks.fetch_add(1, std::memory_order_relaxed);
    return block;
}

void *allocate_or_throw(void *block)
{
    if (!block)
        throw std::bad_alloc();
    return block;
}

} // namespace

std::string describe(FaultPlan const &plan)
{
    static constexpr char const *names[] = { "no memory", "error", "interrupt", "short transfer" };
    return std::string(names[static_cast<int>(plan.fault)]) + " at call "
        + std::to_string(plan.first) + (plan.forever ? " and all after it" : "");
}

bool strikes(Fault fault)
{
    if (!s_armed.load(std::memory_order_acquire) || s_plan.fault != fault)
        return false;
    int const call = ++s_calls;
    if (call < s_plan.first || (call > s_plan.first && !s_plan.forever))
        return false;
    ++s_faults;
    return true;
}

Injection::Injection(FaultPlan const &plan)
{
    s_plan = plan;
    s_calls = 0;
    s_faults = 0;
    s_armed = true;
}

Injection::~Injection()
{
    s_armed = false;
}

FaultPlan const &get_fault_plan()
{
    return s_plan;
}

int get_fault_count()
{
    return s_faults;
}

long get_block_count()
{
#ifdef __SANITIZE_ADDRESS__ // its own functions allocate past these
    return 0;
#else
    return s_blocks;
#endif
}

int get_open_files()
{
    DIR *const folder = opendir("/proc/self/fd");
    int files = 0;
    while (folder && readdir(folder))
        ++files;
    if (folder)
        closedir(folder);
    return files;
}

} // namespace kor_test

using kor_test::Fault;
using kor_test::strikes;

#ifndef __SANITIZE_ADDRESS__ // which needs its own from the first instruction on

#define KOR_NEXT(name) kor_test::find_next(&name, #name)

KOR_PUBLIC void *malloc(std::size_t size) noexcept
{
    static auto const next = KOR_NEXT(malloc);
    if (!strikes(Fault::NoMemory))
        return kor_test::count(next(size));
    errno = ENOMEM;
    return nullptr;
}

KOR_PUBLIC void *calloc(std::size_t count, std::size_t size) noexcept
{
    static auto const next = KOR_NEXT(calloc);
    if (!strikes(Fault::NoMemory))
        return kor_test::count(next(count, size));
    errno = ENOMEM;
    return nullptr;
}

KOR_PUBLIC void *realloc(void *block, std::size_t size) noexcept
{
    static auto const next = KOR_NEXT(realloc);
    if (!strikes(Fault::NoMemory))
        return block ? next(block, size) : kor_test::count(next(block, size));
    errno = ENOMEM;
    return nullptr;
}

KOR_PUBLIC void *aligned_alloc(std::size_t alignment, std::size_t size) noexcept
{
    static auto const next = KOR_NEXT(aligned_alloc);
    if (!strikes(Fault::NoMemory))
        return kor_test::count(next(alignment, size));
    errno = ENOMEM;
    return nullptr;
}

KOR_PUBLIC int posix_memalign(void **block, std::size_t alignment, std::size_t size) noexcept
{
    static auto const next = KOR_NEXT(posix_memalign);
    if (strikes(Fault::NoMemory))
        return ENOMEM;
    int const result = next(block, alignment, size);
    if (result == 0)
        kor_test::count(*block);
    return result;
}

KOR_PUBLIC void free(void *block) noexcept
{
    static auto const next = KOR_NEXT(free);
    if (block)
        kor_test::s_blocks.fetch_sub(1, std::memory_order_relaxed);
    next(block);
}

#endif

namespace {

void *allocate(std::size_t size) noexcept
{
#ifdef __SANITIZE_ADDRESS__
    if (strikes(Fault::NoMemory))
        return nullptr;
#endif
    return std::malloc(size > 0 ? size : 1);
}

} // namespace

void *operator new(std::size_t size)
{
    return kor_test::allocate_or_throw(allocate(size));
}
void *operator new[](std::size_t size)
{
    return kor_test::allocate_or_throw(allocate(size));
}
void *operator new(std::size_t size, std::nothrow_t const &) noexcept
{
    return allocate(size);
}
void *operator new[](std::size_t size, std::nothrow_t const &) noexcept
{
    return allocate(size);
}
void *operator new(std::size_t size, std::align_val_t alignment)
{
    auto const unit = static_cast<std::size_t>(alignment);
    return kor_test::allocate_or_throw(std::aligned_alloc(unit, (size + unit - 1) / unit * unit));
}
void operator delete(void *block) noexcept
{
    std::free(block);
}
void operator delete[](void *block) noexcept
{
    std::free(block);
}
void operator delete(void *block, std::size_t) noexcept
{
    std::free(block);
}
void operator delete[](void *block, std::size_t) noexcept
{
    std::free(block);
}
void operator delete(void *block, std::align_val_t) noexcept
{
    std::free(block);
}
void operator delete(void *block, std::size_t, std::align_val_t) noexcept
{
    std::free(block);
}
