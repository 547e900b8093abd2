// SPDX-License-Identifier: MIT
// What is made of the library's texts: fields of texts that have several, parted by "|", and texts
// with arguments. `id` is a number of the table behind xLoadString(), whose language is the active
// one; a number that the table lacks gives an empty text.
//
//   ExtractString(5363, 1)                =>  km
//   FormatString(5238, 1.5)               =>  1.50 Kb
//   YesNoString(true)                     =>  Yes
#pragma once

#include "kortools/core/array.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

// The text, or the default when that is empty. 0xFFFFFFFF is no number.
KORTOOLS_API CXTString<wchar_t> LoadResourceString(
    unsigned int id, wchar_t const *defaultText = nullptr);

// A field, from 0; empty when there are fewer. With `lineFeed`, what is not empty ends with one.
KORTOOLS_API CXTString<wchar_t> ExtractString(
    unsigned int id, unsigned int index, bool lineFeed = false);

// The text `formatId` with the field as its argument, and a line feed when asked for.
KORTOOLS_API CXTString<wchar_t> ExtractString(
    unsigned int formatId, unsigned int id, int index, bool lineFeed);

// Replaces the array by the fields of a text; returns how many: one more than there are "|".
KORTOOLS_API int ExtractString(CXTString<wchar_t> const &text, CXArray<CXTString<wchar_t>> &fields);

// Texts with arguments, as CXTString::Format() takes them.
KORTOOLS_API CXTString<wchar_t> FormatString(unsigned int id, ...);
KORTOOLS_API CXTString<wchar_t> FormatString(wchar_t const *format, ...);

// The same, with a format for numbers that the table lacks (or null), and with a line feed behind
// what is not empty when `lineFeed` is true: an int, since no bool may stand in front of "...".
KORTOOLS_API CXTString<wchar_t> FormatStringEx(
    unsigned int id, wchar_t const *defaultFormat, int lineFeed, ...);

// "Yes" or "No"; and in a line "text: Yes", at whose end `lineFeed` puts a blank and a line feed.
KORTOOLS_API CXTString<wchar_t> YesNoString(bool value);
KORTOOLS_API CXTString<wchar_t> YesNoString(unsigned int id, bool value, bool lineFeed = false);
