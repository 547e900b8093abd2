// SPDX-License-Identifier: MIT
// The calling thread's last failure of the operating system, as a Windows system error code on
// both systems, so that one table of causes serves.
#pragma once

#include "kortools/export.h"

namespace kortools::platform {

// On Linux the code is translated from errno, which therefore must not be overwritten between the
// failure and this call. 0 means no failure.
KORTOOLS_API unsigned int get_last_os_error();

// Sets what get_last_os_error() returns next on this thread.
KORTOOLS_API void set_last_os_error(unsigned int code);

} // namespace kortools::platform
