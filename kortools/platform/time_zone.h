// SPDX-License-Identifier: MIT
// The zone of the process, as the C library finds it: the environment's TZ, else the system's.
#pragma once

#include <ctime>
#include <string>

namespace kortools::platform {

// Sets all fields to those of local time; false when the system refuses. `seconds` is within the
// limits of calendar.h.
bool get_local_fields(long long seconds, std::tm &fields);

// Completes the structure of a time in UTC, whose nine standard fields are set.
void set_utc_zone(std::tm &fields);

// Sets the instant of a time of the local clock (in seconds, see civil_time.h) and its fields.
// `daylight` as tm_isdst in make_time(). False, and nothing set, when the instant is outside the
// limits. The time itself is not more than two days outside; then the offset at the limit counts.
bool find_local_time(long long local_seconds, int daylight, long long &instant, std::tm &fields);

// The name of the zone that is in force for fields which get_local_fields() has set.
std::wstring get_zone_name(std::tm const &fields);

} // namespace kortools::platform
