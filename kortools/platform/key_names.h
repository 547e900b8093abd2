// SPDX-License-Identifier: MIT
// What is written on the keys of a keyboard.
#pragma once

#include <string>

namespace kortools::platform {

enum class KeyLanguage { English, French };

// The name of a key, by its virtual-key number on Windows; empty for a key without one. On Windows
// it is that of the current keyboard layout, at most 29 characters, and on Linux the usual one in
// the given language.
std::wstring get_key_name(unsigned int virtual_key, KeyLanguage language);

} // namespace kortools::platform
