// SPDX-License-Identifier: MIT
#include "kortools/platform/locale_format.h"

#include "kortools/platform/time_record_access.h"

#include <algorithm>
#include <windows.h>

namespace kortools::platform {
namespace {

constexpr int longest_text = 255; // terminator included

SYSTEMTIME make_record(DateTime const &date_time)
{
    SYSTEMTIME record {};
    set_date_time(record, date_time);
    return record;
}

// The system's form of a locale name.
std::wstring get_windows_name(std::string const &locale)
{
    std::string const name = locale.substr(0, locale.find_first_of(".@"));
    std::wstring result(name.begin(), name.end());
    std::ranges::replace(result, L'_', L'-');
    return result;
}

} // namespace

std::wstring format_date(DateTime const &date, DateLength length, std::string const &locale)
{
    SYSTEMTIME const record = make_record(date);
    std::wstring const name = get_windows_name(locale);
    wchar_t const *const chosen = name.empty() ? LOCALE_NAME_USER_DEFAULT : name.c_str();
    DWORD const flags = length == DateLength::Long ? DATE_LONGDATE : DATE_SHORTDATE;
    wchar_t text[longest_text] = {};
    if (!GetDateFormatEx(chosen, flags, &record, nullptr, text, longest_text, nullptr))
        return std::wstring();
    return text;
}

std::wstring format_time_of_day(DateTime const &time, std::string const &locale)
{
    SYSTEMTIME const record = make_record(time);
    std::wstring const name = get_windows_name(locale);
    wchar_t const *const chosen = name.empty() ? LOCALE_NAME_USER_DEFAULT : name.c_str();
    DWORD const flags = LOCALE_NOUSEROVERRIDE | TIME_FORCE24HOURFORMAT | TIME_NOSECONDS;
    wchar_t text[longest_text] = {};
    if (!GetTimeFormatEx(chosen, flags, &record, nullptr, text, longest_text))
        return std::wstring();
    return text;
}

} // namespace kortools::platform
