// SPDX-License-Identifier: MIT
#include "kortools/platform/stack.h"

#include <pthread.h>

namespace kortools::platform {
namespace {

// For the main thread the C library reads the process's memory map: too slow to repeat.
StackRange query_stack_range()
{
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0)
        return {};
    void *low = nullptr;
    std::size_t size = 0;
    bool const known = pthread_attr_getstack(&attributes, &low, &size) == 0;
    pthread_attr_destroy(&attributes);
    if (!known)
        return {};
    auto const address = reinterpret_cast<std::size_t>(low);
    return { address, address + size };
}

} // namespace

StackRange get_stack_range()
{
    thread_local StackRange const range = query_stack_range();
    return range;
}

} // namespace kortools::platform
