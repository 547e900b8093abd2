// SPDX-License-Identifier: MIT
// CXTime: a point in calendar time, in whole seconds since 1970-01-01 00:00:00 UTC. 0 also stands
// for no date. The value is always UTC; local time, by the zone of the process, is a view of it.
//
// A value can be any number, but only those of the years 1970 to 3000 (UTC) have a calendar date.
// Nothing checks the arithmetic for overflow. Values are unsynchronised; different ones may be used
// on different threads at once, as long as none changes the environment.
//
//   CXTime const saved(2024, 3, 15, 14, 5, 9);
//   CXDuration const age = CXTime::GetTickCount() - saved;
//   CXTString<wchar_t> const text = saved.Format(L"%Y-%m-%d %H:%M:%S");
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/data/duration.h"
#include "kortools/export.h"

#include <concepts>
#include <iosfwd>

class CXArchive;
struct tm;

class KORTOOLS_API CXTime {
public:
    CXTime() = default;
    CXTime(long long seconds)
        : m_seconds(seconds)
    {
    }

    // Any other number, among them a literal 0, which could be a pointer too.
    template <std::integral T>
    CXTime(T seconds)
        : m_seconds(static_cast<long long>(seconds))
    {
    }

    // Local time. Fields out of their ranges are carried over: month 13 of 2020 is January 2021.
    // `dst`: 0 for standard time, positive for daylight saving time (which takes off an hour in a
    // zone that has none), -1 lets the zone decide. A time that the clock skips lies before the
    // gap, one that it shows twice is the second. Throws CXInvalidArgException for a result before
    // 1970 or after 3000 (UTC), and for a year that is not 1969 to 3001 whatever the rest.
    CXTime(int year, int month, int day, int hour, int minute, int second, int dst = -1);

    // The same from the fields of the C library (month 0 to 11, years from 1900, `tm_isdst` as
    // `dst`), which are normalised in place, const or not. Null gives 0.
    CXTime(tm const *local);

    CXTime(CXTime const &) = default;
    CXTime(CXTime &&) = default;
    CXTime &operator=(CXTime const &) = default;
    CXTime &operator=(CXTime &&) = default;
    virtual ~CXTime() = default;

    CXTime &operator=(long long seconds)
    {
        m_seconds = seconds;
        return *this;
    }

    // The current time; despite its name no ticks (see timeGetTick()).
    static CXTime GetTickCount();

    long long GetTime() const { return m_seconds; } // seconds

    // --- Parts of the local time, or the value at the end of the line when there is no date

    int GetYear() const;      // 0
    int GetMonth() const;     // 0 for January to 11, unlike the constructor's; 0
    int GetDay() const;       // 1 to 31; 0
    int GetHour() const;      // -1
    int GetMinute() const;    // -1
    int GetSecond() const;    // -1
    int GetDayOfWeek() const; // 1 for Sunday to 7; 0

    long long GetElapsedDays() const { return m_seconds / 86400; } // since 1970, UTC

    // Fill the C library's structure. False, and nothing filled, when there is no date; a null
    // pointer throws CXInvalidArgException. tm_isdst is 1 while clocks are ahead of standard time.
    bool GetLocalTm(tm *result) const;
    bool GetUTCTm(tm *result) const;

    // The local time or UTC as text, by the codes of strftime with English names: %Y-%m-%d. A #
    // drops leading zeros: %#d. Empty for a null format, a text of more than 255 UTF-16 units and a
    // code that does not exist; the format itself when there is no date.
    CXTString<wchar_t> Format(wchar_t const *format) const;
    CXTString<wchar_t> FormatGmt(wchar_t const *format) const;

    CXDuration operator-(CXTime const &other) const { return m_seconds - other.m_seconds; }
    CXTime operator+(CXDuration duration) const { return m_seconds + duration.GetDuration(); }
    CXTime operator-(CXDuration duration) const { return m_seconds - duration.GetDuration(); }

    // By value, as the interface has them for callers that take their addresses.
    // NOLINTBEGIN(performance-unnecessary-value-param)
    bool operator==(CXTime other) const { return m_seconds == other.m_seconds; }
    bool operator!=(CXTime other) const { return m_seconds != other.m_seconds; }
    bool operator<(CXTime other) const { return m_seconds < other.m_seconds; }
    bool operator>(CXTime other) const { return m_seconds > other.m_seconds; }
    bool operator<=(CXTime other) const { return m_seconds <= other.m_seconds; }
    bool operator>=(CXTime other) const { return m_seconds >= other.m_seconds; }
    // NOLINTEND(performance-unnecessary-value-param)

    // Writes or reads the seconds, eight bytes.
    virtual void Serialize(CXArchive &archive);

private:
    long long m_seconds = 0;
};

// How GoogleTest shows times.
template <std::same_as<CXTime> T> void PrintTo(T const &time, std::ostream *stream)
{
    *stream << time.GetTime() << " s";
}
