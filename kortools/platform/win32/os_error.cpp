// SPDX-License-Identifier: MIT
#include "kortools/platform/os_error.h"

#include <windows.h>

namespace kortools::platform {

unsigned int get_last_os_error()
{
    return static_cast<unsigned int>(GetLastError());
}

void set_last_os_error(unsigned int code)
{
    SetLastError(code);
}

} // namespace kortools::platform
