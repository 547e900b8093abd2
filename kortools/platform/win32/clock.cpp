// SPDX-License-Identifier: MIT
#include "kortools/platform/clock.h"

#include <ctime>
#include <windows.h>

namespace kortools::platform {

long long get_time()
{
    return _time64(nullptr);
}

long long get_tick()
{
    return static_cast<long long>(GetTickCount64());
}

} // namespace kortools::platform
