// SPDX-License-Identifier: MIT
// A CXTime in the fields that the seam's date services take.
#pragma once

#include "kortools/data/xtime.h"
#include "kortools/platform/calendar.h"
#include "kortools/platform/civil_time.h"

namespace kortools::data {

// The local time; false, and nothing set, when there is no date.
inline bool get_local_date_time(CXTime const &time, platform::DateTime &date_time)
{
    std::tm fields;
    if (!platform::break_down_local(time.GetTime(), fields))
        return false;
    date_time = { fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
        fields.tm_min, fields.tm_sec, fields.tm_wday };
    return true;
}

} // namespace kortools::data
