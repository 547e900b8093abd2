// SPDX-License-Identifier: MIT
#include "kortools/data/xtime.h"

#include "kortools/archive/archive.h"
#include "kortools/core/throw.h"
#include "kortools/platform/calendar.h"
#include "kortools/platform/clock.h"
#include "kortools/platform/time_format.h"

#include <algorithm>
#include <climits>
#include <ctime>

namespace platform = kortools::platform;

namespace {

// Large enough to be out of every range, and far from overflow.
int offset_field(int value, int offset)
{
    return static_cast<int>(std::clamp<long long>(1LL * value - offset, INT_MIN, INT_MAX));
}

long long make_time(std::tm &fields)
{
    long long seconds = 0;
    if (!platform::make_time(fields, seconds))
        kortools::core::throw_invalid_argument();
    return seconds;
}

// A field of the local time, or `failure`.
int get_local(long long seconds, int std::tm::*field, int failure)
{
    std::tm fields;
    return platform::break_down_local(seconds, fields) ? fields.*field : failure;
}

CXTString<wchar_t> format_fields(wchar_t const *format, platform::TimeToFormat const &time)
{
    wchar_t text[256];
    int const length = platform::format_time(text, 256, format, time);
    return CXTString<wchar_t>(text, std::max(length, 0));
}

} // namespace

CXTime::CXTime(int year, int month, int day, int hour, int minute, int second, int dst)
{
    std::tm fields {};
    fields.tm_year = offset_field(year, 1900);
    fields.tm_mon = offset_field(month, 1);
    fields.tm_mday = day;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    fields.tm_isdst = dst;
    m_seconds = make_time(fields);
}

CXTime::CXTime(tm const *local)
    : m_seconds(local ? make_time(const_cast<tm &>(*local)) : 0)
{
}

CXTime CXTime::GetTickCount()
{
    return platform::get_time();
}

int CXTime::GetYear() const
{
    return get_local(m_seconds, &std::tm::tm_year, -1900) + 1900;
}

int CXTime::GetMonth() const
{
    return get_local(m_seconds, &std::tm::tm_mon, 0);
}

int CXTime::GetDay() const
{
    return get_local(m_seconds, &std::tm::tm_mday, 0);
}

int CXTime::GetHour() const
{
    return get_local(m_seconds, &std::tm::tm_hour, -1);
}

int CXTime::GetMinute() const
{
    return get_local(m_seconds, &std::tm::tm_min, -1);
}

int CXTime::GetSecond() const
{
    return get_local(m_seconds, &std::tm::tm_sec, -1);
}

int CXTime::GetDayOfWeek() const
{
    return get_local(m_seconds, &std::tm::tm_wday, -1) + 1;
}

bool CXTime::GetLocalTm(tm *result) const
{
    if (!result)
        kortools::core::throw_invalid_argument();
    return platform::break_down_local(m_seconds, *result);
}

bool CXTime::GetUTCTm(tm *result) const
{
    if (!result)
        kortools::core::throw_invalid_argument();
    return platform::break_down_utc(m_seconds, *result);
}

CXTString<wchar_t> CXTime::Format(wchar_t const *format) const
{
    platform::TimeToFormat time { {}, m_seconds, false };
    if (!format || !platform::break_down_local(m_seconds, time.fields))
        return format;
    return format_fields(format, time);
}

CXTString<wchar_t> CXTime::FormatGmt(wchar_t const *format) const
{
    platform::TimeToFormat time { {}, m_seconds, true };
    if (!format || !platform::break_down_utc(m_seconds, time.fields))
        return format;
    return format_fields(format, time);
}

void CXTime::Serialize(CXArchive &archive)
{
    if (archive.IsLoading())
        archive >> m_seconds;
    else
        archive << m_seconds;
}
