// SPDX-License-Identifier: MIT
#include "kortools/platform/clock.h"

#include <time.h>

namespace kortools::platform {

long long get_time()
{
    return time(nullptr);
}

long long get_tick()
{
    timespec now {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1'000'000;
}

} // namespace kortools::platform
