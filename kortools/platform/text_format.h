// SPDX-License-Identifier: MIT
// printf-style formatting with the rules of the Windows runtime on both systems. Allocates nothing.
//
//   %[flags -+ 0#][width|*][.precision|*][size]letter
//
//   d i u o x X     hh h: 8 and 16 bits, l: the platform's long, I32, ll I64 I j z t: 64 bits
//   e f g a E F G A a double; l, L and h change nothing
//   p               16 capital hexadecimal digits
//   s c             text of the format's own width; with h narrow, with l or w wide
//   S C             text of the other width, unless h, l or w tells
//
// Narrow and wide text convert by the C locale of the process (LC_CTYPE), the decimal point is that
// of LC_NUMERIC. A null text is "(null)". Width and precision of text count UTF-16 units on both
// systems. %n, an unknown letter and a '%' at the end are errors.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace kortools::platform {

// Formats into `target`, writing at most `capacity` characters, terminator included (a result that
// is too long is cut; with capacity 0 nothing is written). Returns the length of the whole result
// without its terminator, in characters of T. Returns -1, and leaves the target empty, for a format
// that cannot be carried out, text that does not convert, and a result longer than INT_MAX. `args`
// is consumed.
int format_text(char *target, std::size_t capacity, char const *format, std::va_list args);
int format_text(wchar_t *target, std::size_t capacity, wchar_t const *format, std::va_list args);

} // namespace kortools::platform
