// SPDX-License-Identifier: MIT
// Text that does not read plainly, for values in preferences files. This hides nothing from whoever
// wants to know it.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// Of each character only the low byte counts: what CText() makes of a text, DText() makes that text
// again, if all its characters are below 0x100. A result may contain zeros.
//
//   CText(L"abc")  =>  dfh
KORTOOLS_API CXTString<wchar_t> CText(CXTString<wchar_t> const &text);
KORTOOLS_API CXTString<wchar_t> DText(CXTString<wchar_t> const &text);
