// SPDX-License-Identifier: MIT
// Lists of extensions or patterns as users type them: "*.PNG; .jpg,tga".
//
// Blanks, commas and semicolons part the items. An item in double quotes is one whatever it
// contains, also nothing; it ends at the next quote, or with the list. Items of more than 260
// characters count as several.
#pragma once

#include "kortools/core/hash_table.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

// The items in small letters, with a blank between them; `set`, when given, gets them too. With
// `quote`, items that have a blank, comma or semicolon, or nothing, stand in quotes, so that the
// result can be read again and stays as it is; else none does.
//
//   *.PNG; "My Files*",,tga  =>  *.png "my files*" tga
KORTOOLS_API CXTString<wchar_t> fileCleanExtensionList(CXTString<wchar_t> const &list,
    bool quote = true, CHashTable<CXTString<wchar_t>> *set = nullptr);

// Cleans the list in place, adds its items to the set, and returns how many the set then has.
KORTOOLS_API int fileGetHashFromExtensionList(
    CXTString<wchar_t> &list, CHashTable<CXTString<wchar_t>> &set, bool quote = true);
