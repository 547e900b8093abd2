// SPDX-License-Identifier: MIT
#include "kortools/platform/time_zone.h"

#include "kortools/platform/civil_time.h"
#include "kortools/platform/posix/zone_table.h"

#include <cstring>
#include <optional>

namespace kortools::platform {
namespace {

// How far any clock is from UTC, generously.
constexpr long long largest_offset = 16 * seconds_per_hour;

// The instant in the zone's own reading: of two the later, unless only the earlier is in daylight
// or standard time as wanted; of none the one by the offset that follows the gap.
long long read_clock(ZoneTable const &zone, long long local_seconds, bool want_daylight)
{
    std::optional<long long> found;
    bool is_wanted = false;
    ZoneSpan const *span = &zone.find(local_seconds - largest_offset);
    for (;;) {
        long long const instant = local_seconds - span->offset;
        if (instant < span->begin)
            return found.value_or(instant);
        bool const is_as_wanted = span->is_daylight == want_daylight;
        if (instant < span->end && (is_as_wanted || !is_wanted)) {
            found = instant;
            is_wanted = is_as_wanted;
        }
        if (span->end > local_seconds + largest_offset || span->end > max_time)
            return found.value_or(instant);
        span = &zone.find(span->end);
    }
}

// The same by a daylight flag.
long long find_instant(ZoneTable const &zone, long long local_seconds, int daylight)
{
    long long const instant = read_clock(zone, local_seconds, daylight > 0);
    ZoneSpan const &span = zone.find(instant);
    bool const is_in_gap = local_seconds - span.offset != instant;
    if (daylight < 0 || (span.is_daylight == (daylight > 0) && !is_in_gap))
        return instant;
    int const standard = span.offset - (span.is_daylight ? span.saving : 0);
    return local_seconds - standard - (daylight > 0 ? span.saving : 0);
}

void set_local_fields(ZoneTable const &zone, long long seconds, std::tm &fields)
{
    ZoneSpan const &span = zone.find(seconds);
    set_fields(seconds + span.offset, fields);
    fields.tm_isdst = span.is_daylight;
    fields.tm_gmtoff = span.offset;
    fields.tm_zone = span.name;
}

} // namespace

bool get_local_fields(long long seconds, std::tm &fields)
{
    set_local_fields(ZoneTable::current(), seconds, fields);
    return true;
}

void set_utc_zone(std::tm &fields)
{
    fields.tm_gmtoff = 0;
    fields.tm_zone = "UTC";
}

bool find_local_time(long long local_seconds, int daylight, long long &instant, std::tm &fields)
{
    ZoneTable const &zone = ZoneTable::current();
    long long const found = find_instant(zone, local_seconds, daylight);
    if (!is_in_limits(found))
        return false;
    instant = found;
    set_local_fields(zone, found, fields);
    return true;
}

std::wstring get_zone_name(std::tm const &fields)
{
    char const *const name = fields.tm_zone ? fields.tm_zone : "";
    return std::wstring(name, name + std::strlen(name)); // ASCII
}

} // namespace kortools::platform
