// SPDX-License-Identifier: MIT
#include "kortools/platform/time_zone.h"

#include "kortools/platform/calendar.h"
#include "kortools/platform/civil_time.h"

#include <algorithm>
#include <windows.h>

namespace kortools::platform {
namespace {

long long find_instant(long long local_seconds, int daylight)
{
    // The runtime is asked for the rules of the zone only. What it refuses at the limits, which
    // years it carries over and what a daylight flag does in a zone without daylight saving time
    // differ between its versions, so these are kept from it.
    constexpr long long margin = 3 * seconds_per_day;
    long long const inside = std::clamp(local_seconds, margin, max_time - margin);
    std::tm fields {};
    set_fields(inside, fields); // in standard time
    long long instant = _mktime64(&fields);
    bool is_daylight = daylight > 0;
    if (daylight < 0)
        is_daylight = _localtime64_s(&fields, &instant) == 0 && fields.tm_isdst > 0;
    if (is_daylight)
        instant += _dstbias != 0 ? _dstbias : -seconds_per_hour;
    return instant + (local_seconds - inside);
}

} // namespace

bool get_local_fields(long long seconds, std::tm &fields)
{
    std::tm local {};
    if (_localtime64_s(&local, &seconds) != 0)
        return false;
    fields = local;
    return true;
}

void set_utc_zone(std::tm &)
{
    // The structure does not know its zone.
}

bool find_local_time(long long local_seconds, int daylight, long long &instant, std::tm &fields)
{
    long long const found = find_instant(local_seconds, daylight);
    if (!is_in_limits(found) || !get_local_fields(found, fields))
        return false;
    instant = found;
    return true;
}

std::wstring get_zone_name(std::tm const &fields)
{
    wchar_t name[128] = {};
    MultiByteToWideChar(CP_ACP, 0, _tzname[fields.tm_isdst > 0], -1, name, 127);
    return name;
}

} // namespace kortools::platform
