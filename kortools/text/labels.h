// SPDX-License-Identifier: MIT
// Labels for units of length, sizes of files and keys, in the active language.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

enum _UNIT_MODE : int {
    unitUndefined = 0,
    unitNanometer = 1,
    unitMicrometer = 2,
    unitMillimeter = 3,
    unitCentimeter = 4, // as all other numbers
    unitMeter = 5,
    unitKilometer = 6,
    unitInch = 7,
    unitFoot = 8,
    unitYard = 9,
    unitMile = 10,
    unitPixel = 11,
};

// "Kilometer", or "km".
KORTOOLS_API CXTString<wchar_t> GetUnitText(_UNIT_MODE unit, bool abbreviation = false);

// A size in bytes. Each unit goes up to 1024 of it inclusive, and values are rounded as single
// precision has them.
//
//   1024  =>  1024 Bytes        1025  =>  1.00 Kb        1048576  =>  1024.00 Kb
KORTOOLS_API CXTString<wchar_t> GetFileSizeString(unsigned long long size);

// The modifiers of a shortcut.
inline constexpr unsigned int keyShift = 1;
inline constexpr unsigned int keyControl = 2;
inline constexpr unsigned int keyAlt = 4;

// The label of a shortcut, such as "Ctrl+Shift+F5". `virtualKey` is the key's number on Windows:
// 'A' and '7' are those keys, 0x70 is F1. What the key is called tells the user's keyboard layout
// on Windows, the active language on Linux; a key without a name has an empty one.
KORTOOLS_API CXTString<wchar_t> Key2String(unsigned int virtualKey, unsigned int modifiers);
