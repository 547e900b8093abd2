// SPDX-License-Identifier: MIT
// The language of a thread.
#pragma once

#include "kortools/export.h"

// Sets the language of the calling thread by its Windows number (1033 English, 1036 French ...): of
// the library's texts (any French is French, every other language English), and on Windows also the
// thread's locale and that of the system's own texts. 0 follows the user again. New threads begin
// with the user's.
KORTOOLS_API void SetThreadLanguage(unsigned short language);
