// SPDX-License-Identifier: MIT
// The user's language.
#pragma once

#include <string_view>

namespace kortools::platform {

// The primary Windows language of the texts the user wants to read: 9 English, 12 French, ...; 9
// when unknown. On Windows that of the user interface; on Linux that of LC_MESSAGES once the
// process has set its locale, else that of LC_ALL, LC_MESSAGES or LANG in the environment.
unsigned int get_user_primary_language();

// Sets the locale of the calling thread and the language of the system's own texts on it, by its
// Windows number; 0: the user's again. Linux has neither.
void set_thread_language(unsigned short language);

// The primary Windows language of a locale name: fr_CA.UTF-8, sr@latin, pt, C => 12, 26, 22, 9.
unsigned int get_primary_language(std::string_view locale_name);

} // namespace kortools::platform
