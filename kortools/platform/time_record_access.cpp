// SPDX-License-Identifier: MIT
#include "kortools/platform/time_record_access.h"

#include <cstring>
#include <memory>

namespace kortools::platform {
namespace {

// The layout of a SYSTEMTIME, which is not defined here on every system.
struct Layout {
    unsigned short year;
    unsigned short month;
    unsigned short day_of_week;
    unsigned short day;
    unsigned short hour;
    unsigned short minute;
    unsigned short second;
    unsigned short milliseconds;
};

unsigned short to_word(int number)
{
    return static_cast<unsigned short>(number);
}

} // namespace

DateTime get_date_time(_SYSTEMTIME const &record)
{
    Layout layout;
    std::memcpy(&layout, static_cast<void const *>(std::addressof(record)), sizeof layout);
    return { layout.year, layout.month, layout.day, layout.hour, layout.minute, layout.second,
        layout.day_of_week };
}

void set_date_time(_SYSTEMTIME &record, DateTime const &date_time)
{
    Layout const layout { to_word(date_time.year), to_word(date_time.month),
        to_word(date_time.day_of_week), to_word(date_time.day), to_word(date_time.hour),
        to_word(date_time.minute), to_word(date_time.second), 0 };
    std::memcpy(static_cast<void *>(std::addressof(record)), &layout, sizeof layout);
}

} // namespace kortools::platform
