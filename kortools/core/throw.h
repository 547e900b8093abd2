// SPDX-License-Identifier: MIT
// Cold, out-of-line throwers for the templates of core, which cannot see the exception classes.
// Each registers the exception as the thread's pending one and throws it by pointer.
#pragma once

#include "kortools/export.h"

namespace kortools::core {

[[noreturn]] KORTOOLS_API void throw_invalid_argument(); // CXInvalidArgException *
[[noreturn]] KORTOOLS_API void throw_out_of_memory();    // CXMemoryException *

} // namespace kortools::core
