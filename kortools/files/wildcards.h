// SPDX-License-Identifier: MIT
// Names against patterns in which '*' stands for any characters, also none, and '?' for one.
//
// Case is ignored in front of the first '*' only, and there loosely: of each 16-bit unit the low
// byte counts, with small ASCII letters as capitals. Behind a '*' characters must be the same.
//
//   Photo.JPG  photo*     matches          Photo.JPG  *.jpg  does not
//   \u0141     A          matches (0x41)   (empty)    *      matches
//
// A name is matched in time proportional to its length and to the number of '*'; a part of the
// pattern that has a '?' behind a '*' costs that again for each 64 characters.
#pragma once

#include "kortools/core/hash_table.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

// Does the whole name match the pattern?
KORTOOLS_API bool fileMatchWilcards(
    CXTString<wchar_t> const &name, CXTString<wchar_t> const &pattern, bool caseSensitive = false);

// True when the name in small letters matches one of the patterns, which must have none but small
// letters to match (fileGetHashFromExtensionList() makes such). False without patterns.
KORTOOLS_API bool fileMatchWilcards(
    CXTString<wchar_t> const &name, CHashTable<CXTString<wchar_t>> const &patterns);
