// SPDX-License-Identifier: MIT
// The calling thread's stack, for recursion that follows outside data and must not exhaust it.
#pragma once

#include <cstddef>

namespace kortools::platform {

struct StackRange {
    std::size_t low = 0; // address of the last byte that the stack can grow down to
    std::size_t high = 0;
};

// Both 0 when the system cannot tell. Cheap after a thread's first call.
StackRange get_stack_range();

} // namespace kortools::platform
