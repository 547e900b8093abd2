// SPDX-License-Identifier: MIT
// The secure scanf family of the Windows runtime on both systems.
//
//   %[*][width][size]letter     * converts without storing, and takes no argument
//
//   d i u o x X   to hh h: 8 and 16 bits, l: the platform's long, I32, ll I64 I j z t: 64 bits;
//                 the value of strtoll or strtoull, cut to that size
//   p             hexadecimal, to a void *
//   e f g a E F G A   to a float; with l or L to a double
//   s c [set] S C     to a buffer, followed by its size in characters as an unsigned int. Text of
//                 the format's own width (S, C: of the other), with h narrow, with l or w wide
//   n             stores the number of characters read so far
//
// Widths count characters of the text. White space and text convert by the C locale of the process
// (LC_CTYPE), the decimal point is that of LC_NUMERIC.
#pragma once

#include <cstdarg>

namespace kortools::platform {

// Returns the number of fields converted and stored, or -1 (EOF) when the text ends before the
// first conversion. The scan ends at the first field that does not match, at an error in the
// format, and at a text that does not fit its buffer or does not convert, which leaves an empty
// text there (nothing when the size is 0).
int scan_text(char const *text, char const *format, std::va_list args);
int scan_text(wchar_t const *text, wchar_t const *format, std::va_list args);

} // namespace kortools::platform
