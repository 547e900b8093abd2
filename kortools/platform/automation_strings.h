// SPDX-License-Identifier: MIT
// Automation strings: blocks of UTF-16 text with their size in bytes in the 32 bits before the
// first character and a terminating zero behind the last.
#pragma once

namespace kortools::platform {

// A new automation string with the text of `source`; null for null or when memory is exhausted.
char16_t *allocate_automation_string(wchar_t const *source);

// Null does nothing.
void free_automation_string(char16_t *text);

// In UTF-16 units, without the terminator; 0 for null.
unsigned int get_automation_string_length(char16_t const *text);

} // namespace kortools::platform
