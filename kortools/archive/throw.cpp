// SPDX-License-Identifier: MIT
#include "kortools/core/throw.h"

#include "kortools/archive/exception.h"

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>

namespace {

// An exception made in good times, thrown when there is no memory left to make one. It is replaced
// by the next failure that finds memory again.
std::atomic<CXMemoryException *> s_reserve { new CXMemoryException };

struct ReserveOwner {
    ~ReserveOwner() { delete s_reserve.exchange(nullptr); }
} const s_reserve_owner;

// Room for an exception and its string. Asked beforehand, because the string's own failure to
// allocate ends up here again.
bool is_memory_left()
{
    void *const volatile probe = std::malloc(1024); // volatile: else the pair is optimised away
    bool const found = probe != nullptr;
    std::free(probe);
    return found;
}

} // namespace

void kortools::core::throw_invalid_argument()
{
    archive::throw_exception(new CXInvalidArgException);
}

void kortools::core::throw_out_of_memory()
{
    if (is_memory_left()) {
        if (!s_reserve.load()) {
            CXMemoryException *expected = nullptr;
            auto spare = std::make_unique<CXMemoryException>();
            if (s_reserve.compare_exchange_strong(expected, spare.get()))
                static_cast<void>(spare.release());
        }
        archive::throw_exception(new CXMemoryException);
    }
    CXMemoryException *const reserve = s_reserve.exchange(nullptr);
    if (!reserve)
        throw std::bad_alloc();
    archive::throw_exception(reserve);
}
