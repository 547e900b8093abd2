// SPDX-License-Identifier: MIT
#include "kortools/data/time_text.h"

#include "kortools/archive/exception.h"
#include "kortools/data/system_time.h"
#include "tests/structured/process_zone.h"
#include "tests/structured/time_support.h"

#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h> // behind the library's headers
#endif

namespace {

bool is_now(CXTime const &time)
{
    long long const age = (CXTime::GetTickCount() - time).GetDuration();
    return age >= 0 && age <= 60;
}

TEST(TextToTime, TakesNumbersInOrderAndTheCurrentTimeForTheRest)
{
    kor_test::ProcessZone const zone("UTC0");
    struct {
        wchar_t const *text;
        wchar_t const *expected; // null: the current time
    } const cases[] = {
        { L"2024:3:15 14:05:00", L"2024-03-15 14:05:00" },
        { L"  2037:12:31 23:59:59 and more", L"2037-12-31 23:59:59" },
        { L"2024:02:31 25:-1:61", L"2024-03-03 01:00:01" },
        { L"2024:3:15 7", L"2024-03-15 07" },
        { L"2024:3:15 7:30x", L"2024-03-15 07:30" },
        { L"2024:3:15", L"2024-03-15" },
        { L"2038:1:1 0:0:0", nullptr },
        { L"1899:12:31", nullptr },
        { L"2020:13:1 0:0:0", nullptr },
        { L"2020:0:1 0:0:0", nullptr },
        { L"2020:1:32", nullptr },
        { L"abc", nullptr },
        { L"", nullptr },
    };
    for (auto const &c : cases) {
        CXTime time(5);
        EXPECT_TRUE(ConvertText2Time(c.text, time)) << testing::PrintToString(c.text);
        if (!c.expected) {
            EXPECT_TRUE(is_now(time)) << testing::PrintToString(c.text);
            continue;
        }
        CXTString<wchar_t> const text = time.Format(L"%Y-%m-%d %H:%M:%S");
        CXTString<wchar_t> const expected = c.expected;
        EXPECT_EQ(text.Left(expected.GetLength()), expected) << testing::PrintToString(c.text);
    }
    // What is missing comes from the clock: the time of day here.
    CXTime time;
    ASSERT_TRUE(ConvertText2Time(L"2024:3:15", time));
    long long const daytime = (CXTime::GetTickCount() - time).GetDuration() % 86400;
    EXPECT_LE(daytime, 60);
}

TEST(TextToTime, AMissingMonthIsTheZeroBasedCurrentOne)
{
    kor_test::ProcessZone const zone("UTC0");
    CXTime time;
    ASSERT_TRUE(ConvertText2Time(L"2024", time));
    int const month = CXTime::GetTickCount().GetMonth();
    if (month == 0)
        EXPECT_TRUE(is_now(time));
    else
        EXPECT_TRUE(time.GetYear() == 2024 && time.GetMonth() + 1 >= month);
}

TEST(TextToTime, ADateThatTheCalendarRefusesGivesTheCurrentTimeAndFalse)
{
    CXTime time;
    XSetThreadException(new CXException);
    EXPECT_FALSE(ConvertText2Time(L"1950:1:1 0:0:0", time));
    EXPECT_TRUE(is_now(time));
    EXPECT_EQ(XGetThreadException(), nullptr);
    XSetThreadException(new CXException);
    EXPECT_TRUE(ConvertText2Time(L"1980:1:1 0:0:0", time));
    EXPECT_EQ(XGetThreadException(), nullptr);
}

TEST(FileDateString, JoinsDateAndTimeWithABlank)
{
    kor_test::ProcessZone const zone("UTC0");
    CXTime const time(1721225109); // 2024-07-17 14:05:09
    CXTString<wchar_t> const day = GetFileDateString(time, true, false, false);
    CXTString<wchar_t> const clock = GetFileDateString(time, false, true, false);
    EXPECT_GE(day.Find(L"17"), 0);
    EXPECT_EQ(clock.Left(6), L" 14:05");
    EXPECT_EQ(GetFileDateString(time), day + clock);
    EXPECT_GT(GetFileDateString(time, true, false, true).GetLength(), day.GetLength());
    EXPECT_EQ(GetFileDateString(time, false, false), L"");
    EXPECT_EQ(GetFileDateString(CXTime(-1)), L"");
}

TEST(SystemTime, RecordsAreLocalTimeAndYearsBefore1900NoDate)
{
    kor_test::ProcessZone const zone("UTC0");
    static_assert(sizeof(SYSTEMTIME) == 16 && offsetof(SYSTEMTIME, wMilliseconds) == 14
        && offsetof(SYSTEMTIME, wDayOfWeek) == 4 && sizeof(FILETIME) == 8);
    SYSTEMTIME record {};
    CXTime time(1710511509);
    ASSERT_TRUE(xTimeGetAsSystemTime(record, time));
    unsigned short const expected[] = { 2024, 3, 5, 15, 14, 5, 9, 0 };
    EXPECT_EQ(std::memcmp(&record, expected, sizeof record), 0);
    record.wMilliseconds = 999;
    record.wDayOfWeek = 77;
    CXTime back;
    EXPECT_TRUE(xTimeFromSystemTime(back, record, 0));
    EXPECT_EQ(back, time);
    EXPECT_TRUE(xTimeFromSystemTime(back, record, 1));
    EXPECT_EQ(back, time - CXDuration(3600));

    EXPECT_FALSE(xTimeGetAsSystemTime(record, CXTime(-1)));
    EXPECT_EQ(record.wYear, 2024);
    record.wYear = 1899;
    EXPECT_TRUE(xTimeFromSystemTime(back, record, -1));
    EXPECT_EQ(back, CXTime());
    for (int const year : { 1900, 3002, 65535 }) {
        record.wYear = static_cast<unsigned short>(year);
        back = 7;
        EXPECT_TRUE(kor_test::is_invalid_argument([&] { xTimeFromSystemTime(back, record, -1); }));
        EXPECT_EQ(back, CXTime(7));
    }
}

TEST(SystemTime, FileTimesCountFrom1601InUnitsOf100Nanoseconds)
{
    auto const make = [](unsigned long long ticks) {
        FILETIME record {};
        record.dwLowDateTime = static_cast<unsigned int>(ticks);
        record.dwHighDateTime = static_cast<unsigned int>(ticks >> 32);
        return record;
    };
    kor_test::ProcessZone const zone("UTC0");
    CXTime time;
    EXPECT_TRUE(xTimeFromFileTime(time, make(133549851099999999ULL), -1));
    EXPECT_EQ(time, 1710511509);
    EXPECT_TRUE(xTimeFromFileTime(time, make(864000000000ULL), -1)); // 1601
    EXPECT_EQ(time, 0);
    time = 5;
    EXPECT_FALSE(xTimeFromFileTime(time, make(~0ULL - 864000000000ULL), -1));
    EXPECT_EQ(time, 0);
    EXPECT_TRUE(kor_test::is_invalid_argument(
        [&] { xTimeFromFileTime(time, make(0x7FFF35F4F06C0000ULL), -1); })); // 30828
}

TEST(Tick, NeverGoesBack)
{
    long long last = timeGetTick();
    EXPECT_GT(last, 0);
    for (int i = 0; i < 1000; ++i) {
        long long const now = timeGetTick();
        ASSERT_GE(now, last);
        last = now;
    }
}

} // namespace
