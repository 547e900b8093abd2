// SPDX-License-Identifier: MIT
#include "kortools/platform/calendar.h"

#include "kortools/platform/civil_time.h"
#include "kortools/platform/time_zone.h"

namespace kortools::platform {
namespace {

// The runtime refuses a year by its field, before other fields are carried into it.
constexpr bool is_year_field(int year)
{
    return year >= 69 && year <= 1101;
}

long long count_local_seconds(std::tm const &fields)
{
    long long const years = (fields.tm_mon >= 0 ? fields.tm_mon : fields.tm_mon - 11LL) / 12;
    auto const month = static_cast<int>(fields.tm_mon - years * 12);
    long long const days = count_days(1900LL + fields.tm_year + years, month, 1);
    return count_seconds(days + fields.tm_mday - 1LL, fields.tm_hour, fields.tm_min, fields.tm_sec);
}

} // namespace

bool break_down_local(long long seconds, std::tm &fields)
{
    return is_in_limits(seconds) && get_local_fields(seconds, fields);
}

bool break_down_utc(long long seconds, std::tm &fields)
{
    if (!is_in_limits(seconds))
        return false;
    set_fields(seconds, fields);
    set_utc_zone(fields);
    return true;
}

bool make_time(std::tm &fields, long long &seconds)
{
    if (!is_year_field(fields.tm_year))
        return false;
    long long const local = count_local_seconds(fields);
    if (local < -2 * seconds_per_day || local > max_time + 2 * seconds_per_day)
        return false;
    return find_local_time(local, fields.tm_isdst, seconds, fields);
}

} // namespace kortools::platform
