// SPDX-License-Identifier: MIT
#include "kortools/data/system_time.h"

#include "kortools/data/date_time.h"
#include "kortools/platform/clock.h"
#include "kortools/platform/time_record_access.h"

namespace platform = kortools::platform;

namespace {

bool set_time(CXTime &time, platform::DateTime const &from, int dst)
{
    time = from.year < 1900
        ? CXTime()
        : CXTime(from.year, from.month, from.day, from.hour, from.minute, from.second, dst);
    return true;
}

} // namespace

long long timeGetTick()
{
    return platform::get_tick();
}

bool xTimeFromSystemTime(CXTime &time, SYSTEMTIME const &record, int dst)
{
    return set_time(time, platform::get_date_time(record), dst);
}

bool xTimeFromFileTime(CXTime &time, FILETIME const &record, int dst)
{
    platform::DateTime local;
    if (platform::get_local_date_time(record, local))
        return set_time(time, local, dst);
    time = 0;
    return false;
}

bool xTimeGetAsSystemTime(SYSTEMTIME &record, CXTime const &time)
{
    platform::DateTime local;
    if (!kortools::data::get_local_date_time(time, local))
        return false;
    platform::set_date_time(record, local);
    return true;
}
