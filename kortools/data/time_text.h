// SPDX-License-Identifier: MIT
// Times from text and, for display, to text. CXTime::Format() is for text that programs read.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/data/xtime.h"
#include "kortools/export.h"

// The local time of a text of up to six numbers: 2024:3:15 14:05:00. Parts that the text does not
// have are those of the current time, but a missing month is the zero-based current one, as
// CXTime::GetMonth() has it. Hour, minute and second may be out of their ranges.
//
//   2024:3:15              =>  true, that day at the current time of day
//   abc, 2020:13:1 0:0:0   =>  true, the current time: no number, or not a month (1 to 12), day (1
//                              to 31) or year (1900 to 2037)
//   1950:1:1 0:0:0         =>  false, the current time: CXTime has no such date
//
// Whenever the numbers pass that check, the thread's pending exception is released.
KORTOOLS_API bool ConvertText2Time(CXTString<wchar_t> const &text, CXTime &time);

// The local time as the user's locale writes it: the long or short date, then a blank and the time
// in hours and minutes on the clock of 24 hours (the blank also without a date). No text for a time
// without a date.
KORTOOLS_API CXTString<wchar_t> GetFileDateString(
    CXTime const &time, bool withDate = true, bool withTime = true, bool longDate = false);
