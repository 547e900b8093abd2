// SPDX-License-Identifier: MIT
// What the library reads from and writes to the records of time_records.h.
#pragma once

#include "kortools/platform/civil_time.h"

struct _SYSTEMTIME;
struct _FILETIME;

namespace kortools::platform {

DateTime get_date_time(_SYSTEMTIME const &record);

// Milliseconds become 0. Fields are cut to 16 bits.
void set_date_time(_SYSTEMTIME &record, DateTime const &date_time);

// The file time as local time by the offset that is in force now, not by that of its own date.
// False for a time that is negative as a signed number, before or after the shift.
bool get_local_date_time(_FILETIME const &record, DateTime &date_time);

} // namespace kortools::platform
