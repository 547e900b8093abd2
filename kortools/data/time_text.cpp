// SPDX-License-Identifier: MIT
#include "kortools/data/time_text.h"

#include "kortools/archive/exception.h"
#include "kortools/data/date_time.h"
#include "kortools/platform/clock.h"
#include "kortools/platform/locale_format.h"

namespace platform = kortools::platform;

namespace {

bool is_plausible(platform::DateTime const &date)
{
    return date.day >= 1 && date.day <= 31 && date.month >= 1 && date.month <= 12
        && date.year >= 1900 && date.year <= 2037;
}

} // namespace

bool ConvertText2Time(CXTString<wchar_t> const &text, CXTime &time)
{
    CXTime const now = CXTime::GetTickCount();
    platform::DateTime date { now.GetYear(), now.GetMonth(), now.GetDay(), now.GetHour(),
        now.GetMinute(), now.GetSecond() };
    int const count = text.ScanS(L"%d:%d:%d %d:%d:%d", &date.year, &date.month, &date.day,
        &date.hour, &date.minute, &date.second);
    time = now;
    if (count <= 0 || !is_plausible(date))
        return true;
    bool is_converted = true;
    try {
        time = CXTime(date.year, date.month, date.day, date.hour, date.minute, date.second, -1);
    } catch (CXInvalidArgException *) {
        is_converted = false; // released below
    }
    XDeleteThreadException();
    return is_converted;
}

CXTString<wchar_t> GetFileDateString(
    CXTime const &time, bool withDate, bool withTime, bool longDate)
{
    CXTString<wchar_t> text;
    platform::DateTime local;
    if (!kortools::data::get_local_date_time(time, local))
        return text;
    if (withDate) {
        auto const length = longDate ? platform::DateLength::Long : platform::DateLength::Short;
        text = platform::format_date(local, length).c_str();
    }
    if (withTime) {
        text += L' ';
        text += platform::format_time_of_day(local).c_str();
    }
    return text;
}
