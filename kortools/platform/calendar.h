// SPDX-License-Identifier: MIT
// Calendar time with the limits and rules of the Windows runtime on both systems: seconds from
// 1970-01-01 00:00:00 UTC to the end of the year 3000, and the zone of the process. Thread safe.
//
// tm_isdst is 1 while clocks are ahead of the zone's lower offset, also in the zones whose rules
// are written the other way round (Dublin, where the winter time is the exception).
#pragma once

#include <ctime>

namespace kortools::platform {

inline constexpr long long max_time = 32535215999; // 3000-12-31 23:59:59 UTC

constexpr bool is_in_limits(long long seconds)
{
    return seconds >= 0 && seconds <= max_time;
}

// Set the fields (all of the platform's structure); false, and nothing set, outside the limits.
bool break_down_local(long long seconds, std::tm &fields);
bool break_down_utc(long long seconds, std::tm &fields);

// The seconds of fields in local time, which may be out of their ranges and are normalised in
// place. tm_isdst: 0 is standard time, positive takes off the daylight saving (an hour in a zone
// that has none), negative lets the zone decide. A time that occurs twice is then the one in
// standard time; one that is skipped is taken with the offset that follows, and so lies before the
// gap. False, and nothing changed, for a year field that is not 69 to 1101 and for a result outside
// the limits.
bool make_time(std::tm &fields, long long &seconds);

} // namespace kortools::platform
