// SPDX-License-Identifier: MIT
// The secure scanf family of the Windows runtime on both systems: %s, %c and %[ take a buffer and,
// as a further argument, its size in characters (unsigned int). %s is text of the format's own
// width, %hs narrow, %ls wide; %I64d is 64 bits.
#pragma once

#include <cstdarg>

namespace kortools::platform {

// Returns the number of fields converted and stored, or -1 (EOF) when the text ends before the
// first conversion. A field that does not fit its buffer ends the scan; that buffer gets an empty
// text.
int scan_text(char const *text, char const *format, std::va_list args);
int scan_text(wchar_t const *text, wchar_t const *format, std::va_list args);

} // namespace kortools::platform
