// SPDX-License-Identifier: MIT
// Texts against patterns in which '*' stands for any characters, also none, and '?' for one.
//
// Without `case_sensitive` case is ignored in front of the first '*', and loosely there: of each
// 16-bit unit the low byte counts, with small ASCII letters as capitals. Behind a '*' characters
// must be the same.
//
// Time is proportional to the length of the text and to the number of '*'; a part of the pattern
// that has a '?' behind a '*' costs that again for each 64 characters.
#pragma once

#include <string_view>

namespace kortools::text {

bool match_wildcards(std::wstring_view text, std::wstring_view pattern, bool case_sensitive);

} // namespace kortools::text
