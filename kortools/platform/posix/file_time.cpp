// SPDX-License-Identifier: MIT
#include "kortools/platform/clock.h"
#include "kortools/platform/posix/time_records.h"
#include "kortools/platform/posix/zone_table.h"
#include "kortools/platform/time_record_access.h"

namespace kortools::platform {
namespace {

constexpr long long ticks_per_second = 10'000'000;
constexpr long long seconds_from_1601 = 11'644'473'600; // to 1970

} // namespace

bool get_local_date_time(_FILETIME const &record, DateTime &date_time)
{
    int const offset = ZoneTable::current().find(get_time()).offset;
    auto const ticks = static_cast<long long>(
        static_cast<unsigned long long>(record.dwHighDateTime) << 32 | record.dwLowDateTime);
    long long local = 0;
    if (ticks < 0 || __builtin_add_overflow(ticks, offset * ticks_per_second, &local) || local < 0)
        return false;
    std::tm fields {};
    set_fields(local / ticks_per_second - seconds_from_1601, fields);
    date_time = { fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
        fields.tm_min, fields.tm_sec, fields.tm_wday };
    return true;
}

} // namespace kortools::platform
