// SPDX-License-Identifier: MIT
#include "kortools/platform/time_format.h"

#include "kortools/platform/civil_time.h"
#include "kortools/platform/time_zone.h"
#include "kortools/platform/wide_text.h"

#include <cstdlib>
#include <string_view>

namespace kortools::platform {
namespace {

using Text = std::wstring_view;

constexpr Text day_names[]
    = { L"Sunday", L"Monday", L"Tuesday", L"Wednesday", L"Thursday", L"Friday", L"Saturday" };
constexpr Text month_names[] = { L"January", L"February", L"March", L"April", L"May", L"June",
    L"July", L"August", L"September", L"October", L"November", L"December" };

constexpr Text codes_with_e = L"cCxXyY";
constexpr Text codes_with_o = L"deHImMSuUVwWy";

// The week that holds a day of the year, when weeks begin on day `first` of 0 Sunday to 6.
int get_week(std::tm const &fields, int first)
{
    return (fields.tm_yday + 7 - (fields.tm_wday + 7 - first) % 7) / 7;
}

struct IsoWeek {
    int year;
    int week;
};

// The week with a Thursday in the year is its first.
IsoWeek get_iso_week(std::tm const &fields)
{
    int const year = fields.tm_year + 1900;
    int const thursday = fields.tm_yday - (fields.tm_wday + 6) % 7 + 3; // of this week
    if (thursday < 0)
        return { year - 1, (thursday + 365 + is_leap_year(year - 1)) / 7 + 1 };
    int const days = 365 + is_leap_year(year);
    return thursday < days ? IsoWeek { year, thursday / 7 + 1 } : IsoWeek { year + 1, 1 };
}

class TimeFormatter {
public:
    TimeFormatter(wchar_t *target, std::size_t capacity, TimeToFormat const &time)
        : m_time(time)
        , m_fields(time.fields)
        , m_at(target)
        , m_room(capacity)
    {
    }

    bool run(wchar_t const *format);
    wchar_t *terminate(); // the terminator's address, null without room for it

private:
    bool expand(wchar_t code);
    bool expand_name(wchar_t code);
    bool expand_week(wchar_t code);
    bool expand_combination(wchar_t code);
    bool expand_zone(wchar_t code);
    bool put(wchar_t ch);
    bool put(Text text);
    bool put_number(int value, int width, wchar_t fill = L'0');
    bool put_codes(Text codes);
    bool put_plain_codes(Text codes);

    TimeToFormat const &m_time;
    std::tm const &m_fields;
    wchar_t *m_at;
    std::size_t m_room; // UTF-16 units
    bool m_alternate = false;
};

bool TimeFormatter::run(wchar_t const *format)
{
    for (; *format; ++format) {
        if (*format != L'%') {
            if (!put(*format))
                return false;
            continue;
        }
        ++format;
        m_alternate = *format == L'#';
        format += m_alternate;
        bool const is_e = *format == L'E';
        if (is_e || *format == L'O') {
            ++format;
            if (!*format || (is_e ? codes_with_e : codes_with_o).find(*format) == Text::npos)
                return false;
        }
        if (!expand(*format))
            return false;
    }
    return true;
}

wchar_t *TimeFormatter::terminate()
{
    if (m_room == 0)
        return nullptr;
    *m_at = 0;
    return m_at;
}

// False also for the end of the format, a code that does not exist.
bool TimeFormatter::expand(wchar_t code)
{
    int const hour = m_fields.tm_hour;
    int const year = m_fields.tm_year + 1900;
    switch (code) {
    case L'd':
        return put_number(m_fields.tm_mday, 2);
    case L'e':
        return put_number(m_fields.tm_mday, 2, L' ');
    case L'j':
        return put_number(m_fields.tm_yday + 1, 3);
    case L'm':
        return put_number(m_fields.tm_mon + 1, 2);
    case L'y':
        return put_number(year % 100, 2);
    case L'Y':
        return put_number(year, 4);
    case L'C':
        return put_number(year / 100, 2);
    case L'H':
        return put_number(hour, 2);
    case L'I':
        return put_number(hour % 12 == 0 ? 12 : hour % 12, 2);
    case L'M':
        return put_number(m_fields.tm_min, 2);
    case L'S':
        return put_number(m_fields.tm_sec, 2);
    case L'n':
        return put(L'\n');
    case L't':
        return put(L'\t');
    case L'%':
        return put(L'%');
    default:
        return expand_name(code);
    }
}

bool TimeFormatter::expand_name(wchar_t code)
{
    Text const day = day_names[m_fields.tm_wday];
    Text const month = month_names[m_fields.tm_mon];
    switch (code) {
    case L'a':
        return put(day.substr(0, 3));
    case L'A':
        return put(day);
    case L'b':
    case L'h':
        return put(month.substr(0, 3));
    case L'B':
        return put(month);
    case L'p':
        return put(m_fields.tm_hour < 12 ? L"AM" : L"PM");
    default:
        return expand_week(code);
    }
}

bool TimeFormatter::expand_week(wchar_t code)
{
    switch (code) {
    case L'u':
        return put_number(m_fields.tm_wday == 0 ? 7 : m_fields.tm_wday, 1);
    case L'w':
        return put_number(m_fields.tm_wday, 1);
    case L'U':
        return put_number(get_week(m_fields, 0), 2);
    case L'W':
        return put_number(get_week(m_fields, 1), 2);
    case L'G':
        return put_number(get_iso_week(m_fields).year, 4);
    case L'g':
        return put_number(get_iso_week(m_fields).year % 100, 2);
    case L'V':
        return put_number(get_iso_week(m_fields).week, 2);
    default:
        return expand_combination(code);
    }
}

bool TimeFormatter::expand_combination(wchar_t code)
{
    switch (code) {
    case L'c':
        return put_plain_codes(m_alternate ? L"A, B d, Y, H:M:S" : L"a b e H:M:S Y");
    case L'D':
        return put_codes(L"m/d/y");
    case L'F':
        return put_codes(L"Y-m-d");
    case L'r':
        return put_codes(L"I:M:S p");
    case L'R':
        return put_codes(L"H:M");
    case L'T':
        return put_codes(L"H:M:S");
    case L'x':
        return put_plain_codes(m_alternate ? L"A, B d, Y" : L"m/d/y");
    case L'X':
        return put_plain_codes(L"H:M:S");
    default:
        return expand_zone(code);
    }
}

bool TimeFormatter::expand_zone(wchar_t code)
{
    if (code == L'Z')
        return put(m_time.is_utc ? L"UTC" : Text(get_zone_name(m_fields)));
    if (code != L'z')
        return false;
    auto const minutes = static_cast<int>((count_seconds(m_fields) - m_time.seconds) / 60);
    m_alternate = false;
    return put(minutes < 0 ? L'-' : L'+')
        && put_number(std::abs(minutes) / 60 * 100 + std::abs(minutes) % 60, 4);
}

bool TimeFormatter::put(wchar_t ch)
{
    std::size_t const units = count_utf16_units(&ch, 1);
    if (units > m_room)
        return false;
    m_room -= units;
    *m_at++ = ch;
    return true;
}

bool TimeFormatter::put(Text text)
{
    for (wchar_t const ch : text) {
        if (!put(ch))
            return false;
    }
    return true;
}

// Digits of a value that is not negative.
bool TimeFormatter::put_number(int value, int width, wchar_t fill)
{
    wchar_t digits[12];
    wchar_t *const end = digits + 12;
    wchar_t *at = end;
    do {
        *--at = static_cast<wchar_t>(L'0' + value % 10);
        value /= 10;
    } while (value != 0);
    while (!m_alternate && end - at < width)
        *--at = fill;
    return put(Text(at, static_cast<std::size_t>(end - at)));
}

// Expands the letters among the codes.
bool TimeFormatter::put_codes(Text codes)
{
    for (wchar_t const code : codes) {
        bool const is_letter = (code >= L'A' && code <= L'Z') || (code >= L'a' && code <= L'z');
        if (!(is_letter ? expand(code) : put(code)))
            return false;
    }
    return true;
}

bool TimeFormatter::put_plain_codes(Text codes)
{
    m_alternate = false;
    return put_codes(codes);
}

} // namespace

int format_time(
    wchar_t *target, std::size_t capacity, wchar_t const *format, TimeToFormat const &time)
{
    TimeFormatter formatter(target, capacity, time);
    wchar_t const *const end = formatter.run(format) ? formatter.terminate() : nullptr;
    return end ? static_cast<int>(end - target) : -1;
}

} // namespace kortools::platform
