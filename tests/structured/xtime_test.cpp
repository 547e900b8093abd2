// SPDX-License-Identifier: MIT
#include "kortools/data/xtime.h"

#include "tests/archive/archive_support.h"
#include "tests/structured/process_zone.h"
#include "tests/structured/time_support.h"
#include "tests/support/child_process.h"
#include "tests/support/oracle.h"

#include <chrono>
#include <climits>
#include <cstring>
#include <ctime>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr long long last_second = 32535215999; // of the year 3000, UTC

std::vector<int> get_fields(std::tm const &fields)
{
    return { fields.tm_year, fields.tm_mon, fields.tm_mday, fields.tm_hour, fields.tm_min,
        fields.tm_sec, fields.tm_wday, fields.tm_yday, fields.tm_isdst };
}

// The fields by the standard library's calendar, which asks no C library.
std::vector<int> get_model_fields(long long seconds)
{
    using namespace std::chrono;
    sys_seconds const instant { std::chrono::seconds(seconds) };
    auto const day = floor<days>(instant);
    year_month_day const date(day);
    hh_mm_ss const time(instant - day);
    auto const new_year = sys_days(date.year() / January / 1);
    return { int(date.year()) - 1900, int(unsigned(date.month())) - 1, int(unsigned(date.day())),
        int(time.hours().count()), int(time.minutes().count()), int(time.seconds().count()),
        int(weekday(day).c_encoding()), int((day - new_year).count()), 0 };
}

TEST(Time, BreaksDownAndComesBackByAnIndependentCalendar)
{
    kor_test::ProcessZone const zone("UTC0");
    std::mt19937_64 random(7);
    std::vector<long long> times { 0, 1, 86399, 86400, 951782400, last_second };
    while (times.size() < 3000)
        times.push_back(static_cast<long long>(random() % (last_second + 1)));
    for (long long const seconds : times) {
        CXTime const time(seconds);
        std::tm local {};
        std::tm utc {};
        ASSERT_TRUE(time.GetLocalTm(&local));
        ASSERT_TRUE(time.GetUTCTm(&utc));
        ASSERT_EQ(get_fields(local), get_model_fields(seconds)) << seconds;
        ASSERT_EQ(get_fields(utc), get_fields(local)) << seconds;
        ASSERT_EQ(CXTime(&local), time);
        ASSERT_EQ(CXTime(time.GetYear(), time.GetMonth() + 1, time.GetDay(), time.GetHour(),
                      time.GetMinute(), time.GetSecond(), -1),
            time);
        ASSERT_EQ(time.GetDayOfWeek(), utc.tm_wday + 1);
    }
}

TEST(Time, LocalFieldsAreNormalisedAndRefusedAsRecorded)
{
    kor_test::ProcessZone const zone("UTC0");
    for (kor_test::OracleRow const &row : kor_test::read_oracle("crt_mktime.tsv")) {
        std::tm fields {};
        int *const in[] = { &fields.tm_year, &fields.tm_mon, &fields.tm_mday, &fields.tm_hour,
            &fields.tm_min, &fields.tm_sec, &fields.tm_isdst };
        for (std::size_t i = 0; i < std::size(in); ++i)
            *in[i] = std::stoi(row[i]);
        std::vector<int> const before = get_fields(fields);
        long long const expected = std::stoll(row[7]);
        CXTime time(-1);
        bool const is_refused = kor_test::is_invalid_argument([&] { time = CXTime(&fields); });
        ASSERT_EQ(time.GetTime(), expected) << testing::PrintToString(row);
        ASSERT_EQ(is_refused, expected == -1) << testing::PrintToString(row);
        std::vector<int> after;
        for (std::size_t i = 8; i < 17 && expected != -1; ++i)
            after.push_back(std::stoi(row[i]));
        ASSERT_EQ(get_fields(fields), is_refused ? before : after) << testing::PrintToString(row);
    }
}

TEST(Time, FormatsAsRecorded)
{
    kor_test::ProcessZone const zone("UTC0");
    for (kor_test::OracleRow const &row : kor_test::read_oracle("crt_wcsftime.tsv")) {
        CXTime const time(std::stoll(row[0]));
        std::wstring const format = kor_test::to_wide(kor_test::unescape(row[1]));
        std::wstring const expected = kor_test::to_wide(kor_test::unescape(row[3]));
        ASSERT_EQ(time.FormatGmt(format.c_str()), expected) << row[0] << ' ' << row[1];
        ASSERT_EQ(time.Format(format.c_str()), expected) << row[0] << ' ' << row[1];
    }
}

TEST(Time, FormatsWhatTheRecordsLeaveOut)
{
    kor_test::ProcessZone const zone("UTC0");
    struct {
        long long seconds;
        wchar_t const *format, *expected;
    } const cases[] = { { 1709647449, L"%#c", L"Tuesday, March 05, 2024, 14:04:09" },
        { 1709647449, L"%#D %#F %#r %#R %#e %#V", L"3/5/24 2024-3-5 2:4:9 PM 14:4 5 10" },
        { 1709647449, L"%Ey%Od%EY", L"24052024" }, { 0, L"%z|%#z", L"+0000|+0000" },
        { 0, L"%", L"" }, { 0, L"%#", L"" }, { 0, L"a%Qb", L"" }, { 0, L"%Ed", L"" },
        { 0, L"%E", L"" }, { 0, L"\U0001F30D%y", L"\U0001F30D70" },
        { 1262476800, L"%#g %G %V", L"9 2009 53" },    // 2010-01-03
        { 1735560000, L"%G-W%V-%u", L"2025-W01-1" } }; // 2024-12-30
    for (auto const &[seconds, format, expected] : cases) {
        EXPECT_EQ(CXTime(seconds).Format(format), expected) << testing::PrintToString(format);
        EXPECT_EQ(CXTime(seconds).FormatGmt(format), expected) << testing::PrintToString(format);
    }
    EXPECT_EQ(CXTime(0).FormatGmt(L"%Z"), L"UTC");
    // 255 UTF-16 units fit, whatever the width of a character.
    std::wstring format;
    for (int i = 0; i < 126; ++i)
        format += L"\U0001F30D";
    EXPECT_EQ(CXTime(0).Format((format + L"xxx").c_str()), format + L"xxx");
    EXPECT_EQ(CXTime(0).Format((format + L"xxxx").c_str()), L"");
}

TEST(Time, HasNoDateOutsideTheYears1970To3000)
{
    kor_test::ProcessZone const zone("UTC0");
    for (long long const seconds : { -1LL, last_second + 1, LLONG_MIN, LLONG_MAX }) {
        CXTime const time(seconds);
        std::tm fields {};
        fields.tm_mon = 77;
        EXPECT_FALSE(time.GetLocalTm(&fields) || time.GetUTCTm(&fields));
        EXPECT_EQ(fields.tm_mon, 77);
        EXPECT_EQ((std::vector<int> { time.GetYear(), time.GetMonth(), time.GetDay(),
                      time.GetHour(), time.GetMinute(), time.GetSecond(), time.GetDayOfWeek() }),
            (std::vector<int> { 0, 0, 0, -1, -1, -1, 0 }));
        EXPECT_EQ(time.Format(L"%Y") + time.FormatGmt(L"%Y"), L"%Y%Y");
        EXPECT_EQ(time.GetElapsedDays(), seconds / 86400);
    }
}

// In a process of its own: Wine's runtime keeps the rules of the first zone that it has seen.
int check_new_york(std::vector<std::string> const &)
{
    kor_test::ProcessZone const zone("EST5EDT");
    CXTime const noon_of_summer(1721059200); // 2024-07-15 16:00 UTC
    EXPECT_EQ(CXTime(2024, 7, 15, 12, 0, 0, -1), noon_of_summer);
    EXPECT_EQ(CXTime(2024, 7, 15, 12, 0, 0, 1), noon_of_summer);
    EXPECT_EQ(CXTime(2024, 7, 15, 12, 0, 0, 0), noon_of_summer + 3600);
    EXPECT_EQ(CXTime(2024, 1, 15, 12, 0, 0, -1).FormatGmt(L"%H"), L"17");
    EXPECT_EQ(CXTime(2024, 1, 15, 12, 0, 0, 1).FormatGmt(L"%H"), L"16");
    EXPECT_EQ(noon_of_summer.Format(L"%H %z"), L"12 -0400");
    return testing::Test::HasFailure();
}

kor_test::ChildPart const s_new_york("new_york", check_new_york);

TEST(Time, DaylightSavingIsTakenOffInSummerAndWhereTheFlagSaysSo)
{
    EXPECT_EQ(kor_test::run_child("new_york", {}), 0);
}

TEST(Time, IsSavedInEightBytes)
{
    auto const exchange = [](CXArchive &archive) {
        CXTime time(archive.IsStoring() ? -2 : 0);
        time.Serialize(archive);
        EXPECT_EQ(time, -2);
    };
    std::string const bytes = kor_test::store_bytes(exchange);
    EXPECT_EQ(bytes, "\xFE" + std::string(7, '\xFF'));
    kor_test::load_bytes(bytes, exchange);
}

TEST(Duration, PartsAddUpAndAreTruncatedTowardZero)
{
    struct {
        CXDuration duration;
        long long days, hours, minutes, seconds;
    } const cases[] = { { CXDuration(0, 25, 61, 61), 1, 2, 2, 1 },
        { CXDuration(-90), 0, 0, -1, -30 }, { CXDuration(-1, -1, -1, -1), -1, -1, -1, -1 },
        { CXDuration(1, -1, 0, 0), 0, 23, 0, 0 },
        { CXDuration(INT_MAX, 0, 0, 59), INT_MAX, 0, 0, 59 },
        { CXDuration(LLONG_MIN), LLONG_MIN / 86400, LLONG_MIN / 3600 % 24, LLONG_MIN / 60 % 60,
            LLONG_MIN % 60 } };
    for (auto const &[duration, days, hours, minutes, seconds] : cases)
        EXPECT_TRUE(duration.GetDays() == days && duration.GetHours() == hours
            && duration.GetMinutes() == minutes && duration.GetSeconds() == seconds)
            << duration.GetDuration();
}

} // namespace
