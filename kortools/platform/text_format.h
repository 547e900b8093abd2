// SPDX-License-Identifier: MIT
// printf-style formatting with the rules of the Windows runtime on both systems: in wide formats
// %s is wide text and %hs narrow, in narrow formats %s is narrow and %ls wide; %I64d is 64 bits.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace kortools::platform {

// Formats into `target`, writing at most `capacity` characters, terminator included (a result that
// is too long is cut; with capacity 0 nothing is written). Returns the length of the whole result
// without its terminator, or -1 for a format that cannot be carried out. `args` is consumed.
int format_text(char *target, std::size_t capacity, char const *format, std::va_list args);
int format_text(wchar_t *target, std::size_t capacity, wchar_t const *format, std::va_list args);

} // namespace kortools::platform
