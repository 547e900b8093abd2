// SPDX-License-Identifier: MIT
// Cold, out-of-line throwers for the templates of core, which cannot see the exception classes.
// Each registers the exception as the thread's pending one and throws it by pointer.
#pragma once

#include "kortools/export.h"

#include <new>
#include <stdexcept>

namespace kortools::core {

[[noreturn]] KORTOOLS_API void throw_invalid_argument(); // CXInvalidArgException *
[[noreturn]] KORTOOLS_API void throw_out_of_memory();    // CXMemoryException *

// The result of `call`; where the standard library finds no memory, throws as the library does.
template <class Call> decltype(auto) translate_shortage(Call const &call)
try {
    return call();
} catch (std::bad_alloc const &) {
    throw_out_of_memory();
} catch (std::length_error const &) { // no memory could ever be enough
    throw_out_of_memory();
}

} // namespace kortools::core
