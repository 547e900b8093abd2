// SPDX-License-Identifier: MIT
#include "kortools/platform/threads.h"

#include <windows.h>

namespace kortools::platform {

unsigned long long get_current_thread_id()
{
    return GetCurrentThreadId();
}

} // namespace kortools::platform
