// SPDX-License-Identifier: MIT
// The arithmetic of the Gregorian calendar, with no zone in it: seconds since 1970-01-01 00:00:00
// of whatever clock the fields are read from.
#pragma once

#include <ctime>

namespace kortools::platform {

inline constexpr int seconds_per_hour = 3600;
inline constexpr long long seconds_per_day = 86400;

// A date and time as records of the system have it. Fields need not be in their ranges.
struct DateTime {
    int year = 0;        // in full
    int month = 0;       // 1 to 12
    int day = 0;         // 1 to 31
    int hour = 0;        // 0 to 23
    int minute = 0;      // 0 to 59
    int second = 0;      // 0 to 59
    int day_of_week = 0; // 0 is Sunday
};

// Days from 1970-01-01 to a date; `month` is 0 to 11, `day` any number. The year is counted from
// March, so that the leap day is its last one.
constexpr long long count_days(long long year, int month, long long day)
{
    if (month < 2)
        --year;
    long long const era = (year >= 0 ? year : year - 399) / 400;
    long long const year_of_era = year - era * 400;
    long long const day_of_year = (153 * ((month + 10) % 12) + 2) / 5 + day - 1;
    return era * 146097 + year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year
        - 719468;
}

constexpr long long count_seconds(
    long long days, long long hour, long long minute, long long second)
{
    return ((days * 24 + hour) * 60 + minute) * 60 + second;
}

inline long long count_seconds(std::tm const &fields)
{
    return count_seconds(count_days(fields.tm_year + 1900LL, fields.tm_mon, fields.tm_mday),
        fields.tm_hour, fields.tm_min, fields.tm_sec);
}

constexpr bool is_leap_year(int year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

// Whether the date exists, of the years that date records know.
constexpr bool is_date(DateTime const &date)
{
    if (date.year < 1601 || date.year > 30827 || date.month < 1 || date.month > 12 || date.day < 1)
        return false;
    bool const is_short = date.month == 4 || date.month == 6 || date.month == 9 || date.month == 11;
    int const february = is_leap_year(date.year) ? 29 : 28;
    return date.day <= (date.month == 2 ? february : is_short ? 30 : 31);
}

constexpr bool is_time_of_day(DateTime const &time)
{
    return time.hour >= 0 && time.hour < 24 && time.minute >= 0 && time.minute < 60
        && time.second >= 0 && time.second < 60;
}

// Sets the nine fields of the C library, tm_isdst to 0. `seconds` lies after 0000-03-01 and before
// the year 5000000.
inline void set_fields(long long seconds, std::tm &fields)
{
    long long const days
        = (seconds >= 0 ? seconds : seconds - (seconds_per_day - 1)) / seconds_per_day;
    auto const rest = static_cast<int>(seconds - days * seconds_per_day);
    fields.tm_hour = rest / 3600;
    fields.tm_min = rest / 60 % 60;
    fields.tm_sec = rest % 60;
    auto const since_march_0 = static_cast<unsigned>(days + 719468);
    unsigned const day_of_era = since_march_0 % 146097;
    unsigned const year_of_era
        = (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
    unsigned const day_of_year
        = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
    unsigned const month = (5 * day_of_year + 2) / 153; // 0 is March
    bool const is_next_year = month >= 10;
    auto const year = static_cast<int>(since_march_0 / 146097 * 400 + year_of_era) + is_next_year;
    fields.tm_year = year - 1900;
    fields.tm_mon = static_cast<int>(is_next_year ? month - 10 : month + 2);
    fields.tm_mday = static_cast<int>(day_of_year - (153 * month + 2) / 5 + 1);
    fields.tm_wday = static_cast<int>((since_march_0 + 3) % 7); // 0000-03-01 was a Wednesday
    int const before_march = 59 + is_leap_year(year);
    fields.tm_yday = static_cast<int>(day_of_year) + (is_next_year ? -306 : before_march);
    fields.tm_isdst = 0;
}

} // namespace kortools::platform
