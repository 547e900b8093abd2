// SPDX-License-Identifier: MIT
#include "kortools/platform/stack.h"

#include <windows.h>

namespace kortools::platform {

StackRange get_stack_range()
{
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
    GetCurrentThreadStackLimits(&low, &high); // reads the thread's own block
    return { low, high };
}

} // namespace kortools::platform
