// SPDX-License-Identifier: MIT
// Names in a series ("report.txt", "report (1).txt", ...), unique and temporary names.
//
// A name is cut as CFileInfo cuts it, and only its base name is changed. Lengths are in characters
// of the whole name; a limit below 1 is none. A character beyond 16 bits is never cut in two.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// Cuts the base name so that the whole name has at most `maxLength` characters; it keeps at least
// 8 of its own, though.
//
//   C:\a\long base name.txt, 16  =>  C:\a\long bas.txt (the base has 8 left)
KORTOOLS_API CXTString<wchar_t> fileCutName(CXTString<wchar_t> const &name, int maxLength);

// Removes the number at the end of a base name: the digits, also in parentheses, and digits in
// front of these. `number` becomes the last of them, -1 when there is none or when it is
// 2147483647 or more; then the name stays. The first character is not looked at.
//
//   report (2)  =>  "report ", 2        a7  =>  "a", 7        42  =>  "4", 2        a()  =>  -1
KORTOOLS_API CXTString<wchar_t> fileRemoveNameDigitEnding(
    CXTString<wchar_t> const &name, int &number);

// The next name of a series: the number of the base name and 1, or 1 when it has none. A base name
// that has no room besides the number within `maxLength` is cut, down to nothing. The disk is not
// asked.
//
//   report.txt      =>  report (1).txt, without parentheses report1.txt
//   report (2).txt  =>  report (3).txt, without parentheses "report 3.txt"
KORTOOLS_API CXTString<wchar_t> fileNextNumberedName(
    CXTString<wchar_t> const &name, bool parenthesis = true, int maxLength = 0);

// A name that names nothing on the disk: that of fileCutName(), unless it exists or `alwaysNumber`
// is set, else the first numbered one that does not exist. Another program may take it before it is
// used.
KORTOOLS_API CXTString<wchar_t> fileCreateUniqueName(CXTString<wchar_t> const &name,
    bool parenthesis = true, int maxLength = 0, bool alwaysNumber = false);
