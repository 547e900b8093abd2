// SPDX-License-Identifier: MIT
// CXDuration: a span of time in whole seconds, the difference of two CXTime. It may be negative.
// A plain value; nothing checks for overflow.
#pragma once

#include <concepts>
#include <iosfwd>

class CXDuration {
public:
    constexpr CXDuration() = default;
    constexpr CXDuration(long long seconds)
        : m_seconds(seconds)
    {
    }

    // The sum of the parts, each of any size and sign.
    constexpr CXDuration(int days, int hours, int minutes, int seconds)
        : m_seconds(((days * 24LL + hours) * 60 + minutes) * 60 + seconds)
    {
    }

    // The whole span in one unit, truncated toward zero.
    constexpr long long GetDays() const { return m_seconds / 86400; }
    constexpr long long GetTotalHours() const { return m_seconds / 3600; }
    constexpr long long GetTotalMinutes() const { return m_seconds / 60; }
    constexpr long long GetTotalSeconds() const { return m_seconds; }
    constexpr long long GetDuration() const { return m_seconds; }

    // What is left of it beside the next larger unit: 0 to 23 hours, 0 to 59 minutes and seconds,
    // and 0 down to -23 or -59 in a negative span.
    //
    //   CXDuration(-90)  =>  GetMinutes() -1, GetSeconds() -30
    constexpr int GetHours() const { return static_cast<int>(GetTotalHours() - GetDays() * 24); }
    constexpr int GetMinutes() const
    {
        return static_cast<int>(GetTotalMinutes() - GetTotalHours() * 60);
    }
    constexpr int GetSeconds() const
    {
        return static_cast<int>(m_seconds - GetTotalMinutes() * 60);
    }

    constexpr CXDuration operator+(CXDuration other) const { return m_seconds + other.m_seconds; }
    constexpr CXDuration operator-(CXDuration other) const { return m_seconds - other.m_seconds; }
    constexpr CXDuration &operator+=(CXDuration other) { return *this = *this + other; }
    constexpr CXDuration &operator-=(CXDuration other) { return *this = *this - other; }

    constexpr bool operator==(CXDuration other) const { return m_seconds == other.m_seconds; }
    constexpr bool operator!=(CXDuration other) const { return m_seconds != other.m_seconds; }
    constexpr bool operator<(CXDuration other) const { return m_seconds < other.m_seconds; }
    constexpr bool operator>(CXDuration other) const { return m_seconds > other.m_seconds; }
    constexpr bool operator<=(CXDuration other) const { return m_seconds <= other.m_seconds; }
    constexpr bool operator>=(CXDuration other) const { return m_seconds >= other.m_seconds; }

private:
    long long m_seconds = 0;
};

// How GoogleTest shows durations.
template <std::same_as<CXDuration> T> void PrintTo(T const &duration, std::ostream *stream)
{
    *stream << duration.GetDuration() << " s";
}
