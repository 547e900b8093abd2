// SPDX-License-Identifier: MIT
// Arrays of texts: sorted, searched, turned into sets; searches in a text with and without case;
// names that are not taken.
#pragma once

#include "kortools/core/array.h"
#include "kortools/core/hash_table.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

// How SortStringArray() orders texts. But for file names, empty texts come first.
enum _CompareStringsEnum : int {
    compareStringsNoCase = 1,        // by character, in small letters
    compareStringsCase = 2,          // by UTF-16 unit
    compareStringsCollateNoCase = 3, // as the C runtime's current locale collates, without case
    compareStringsCollate = 4,       // the same with case
    compareStringsFileName = 5,      // by class where both have different ones, else as 1
};

// Sorts in place; equal texts keep their order, and another mode changes nothing. Takes 40 bytes
// for each text meanwhile, and without case their characters again.
//
// The order of file names goes by fileGetClass(). It contradicts itself where some names have no
// class: then their place depends on the order before.
KORTOOLS_API void SortStringArray(CXArray<CXTString<wchar_t>> &array, _CompareStringsEnum mode);

// Replaces the texts of `target`.
KORTOOLS_API void CopyStringArray(
    CXArray<CXTString<wchar_t>> const &source, CXArray<CXTString<wchar_t>> &target);

// Adds the texts to the set.
KORTOOLS_API void StringToHash(
    CXArray<CXTString<wchar_t>> const &array, CHashTable<CXTString<wchar_t>> &set);

// The index of the first equal text, or -1.
KORTOOLS_API int FindInStringArray(
    CXArray<CXTString<wchar_t>> const &array, CXTString<wchar_t> const &text, bool noCase = false);

// The position of `sub`, or -1: as CXTString::Find().
KORTOOLS_API int StringFind(
    CXTString<wchar_t> const &text, CXTString<wchar_t> const &sub, bool noCase = false);
KORTOOLS_API int StringFindNoCase(CXTString<wchar_t> const &text, CXTString<wchar_t> const &sub);

// Removes every `sub` from the text; returns how many. As CXTString::Remove().
KORTOOLS_API int StringRemoveNoCase(
    CXTString<wchar_t> &text, CXTString<wchar_t> const &sub, bool noCase = true);

// Negative, 0 or positive: as CXTString::Compare() or CompareNoCase().
KORTOOLS_API int StringCompare(
    CXTString<wchar_t> const &a, CXTString<wchar_t> const &b, bool noCase = false);

// A name that is not in the set yet, and now is: `base`, else the first free one of base-0, base-1
// and so on, or base0, base1 with `plainNumber`. With a maximum of 1 or more, in characters, the
// base is cut so that the name has no more; only what the number needs may be longer.
//
//   { box, box-0 }, box, 0  =>  box-1        { box, bo }, box, 2  =>  -0
KORTOOLS_API CXTString<wchar_t> GetUniqueName(CHashTable<CXTString<wchar_t>> &taken,
    CXTString<wchar_t> const &base, int maxLength = 0, bool plainNumber = false);
