// SPDX-License-Identifier: MIT
// The library's texts by number, in English and French.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// The text with number `id` in the active language (the one set for the thread, else the user's);
// empty when there is none.
KORTOOLS_API CXTString<wchar_t> xLoadString(unsigned int id);

namespace kortools::text {

inline constexpr unsigned int english = 1033;
inline constexpr unsigned int french = 1036;

// Sets the language of the calling thread's texts by its Windows number, of which the low ten bits
// count: any French is French, every other language English; 0 follows the user's again.
KORTOOLS_API void set_thread_language(unsigned int language);
KORTOOLS_API unsigned int get_active_language(); // english or french

} // namespace kortools::text
