// SPDX-License-Identifier: MIT
// CXTime to and from the system's date records, and a tick for measuring intervals. A record is
// looked into with the system's own header where it has one; elsewhere this header defines
// SYSTEMTIME and FILETIME.
#pragma once

#include "kortools/data/xtime.h"
#include "kortools/export.h"
#include "kortools/platform/time_records.h"

// Milliseconds since the system started; never goes back. Unrelated to CXTime.
KORTOOLS_API long long timeGetTick();

// The record as local time, `dst` as for CXTime; milliseconds and day of the week do not count. A
// year before 1900 is no date and gives 0. True always; a date that CXTime cannot hold throws
// CXInvalidArgException and leaves `time` as it was.
KORTOOLS_API bool xTimeFromSystemTime(CXTime &time, SYSTEMTIME const &record, int dst = -1);

// The same with a file's time (UTC), made local by the offset from UTC that is in force now, not
// the one at that time: in the other half of the year the result may differ by the daylight saving.
// False, with `time` 0, for a file time that is negative or that the shift makes so.
KORTOOLS_API bool xTimeFromFileTime(CXTime &time, FILETIME const &record, int dst = -1);

// The local time as a record, milliseconds 0. False, and `record` unchanged, when there is no date.
KORTOOLS_API bool xTimeGetAsSystemTime(SYSTEMTIME &record, CXTime const &time);
