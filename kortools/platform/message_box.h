// SPDX-License-Identifier: MIT
// Message boxes. A window back end installs a handler; without one the text goes to standard
// error and the box answers with its default button.
#pragma once

#include "kortools/export.h"

namespace kortools::platform {

// `flags` and the answer are those of the Windows MessageBox function: the low four bits of the
// flags name the buttons, bits 8 to 11 the default one; the answer is 1 OK, 2 Cancel, 3 Abort,
// 4 Retry, 5 Ignore, 6 Yes, 7 No.
using MessageBoxHandler = int (*)(wchar_t const *text, unsigned int flags);

// Installs `handler` (null: standard error) and returns the one before. Thread safe.
KORTOOLS_API MessageBoxHandler set_message_box_handler(MessageBoxHandler handler);

int show_message_box(wchar_t const *text, unsigned int flags);

// Writes the text and a line end to standard error, in the encoding of the terminal.
void write_to_standard_error(wchar_t const *text);

} // namespace kortools::platform
