// SPDX-License-Identifier: MIT
#include "kortools/data/time_text.h"

#include "kortools/archive/exception.h"
#include "kortools/data/system_time.h"
#include "tests/structured/process_zone.h"
#include "tests/structured/time_support.h"

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
    } const cases[] = { { L"2024:3:15 14:05:00", L"2024-03-15 14:05:00" },
        { L"  2037:12:31 23:59:59 and more", L"2037-12-31 23:59:59" },
        { L"2024:02:31 25:-1:61", L"2024-03-03 01:00:01" }, { L"2024:3:15 7", L"2024-03-15 07" },
        { L"2024:3:15 7:30x", L"2024-03-15 07:30" }, { L"2024:3:15", L"2024-03-15" },
        { L"2038:1:1 0:0:0", nullptr }, { L"1899:12:31", nullptr }, { L"2020:13:1 0:0:0", nullptr },
        { L"2020:0:1 0:0:0", nullptr }, { L"2020:1:32", nullptr }, { L"abc", nullptr },
        { L"", nullptr } };
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
}

TEST(TextToTime, ADateThatTheCalendarRefusesGivesTheCurrentTimeAndFalse)
{
    CXTime time;
    XSetThreadException(new CXException);
    EXPECT_FALSE(ConvertText2Time(L"1950:1:1 0:0:0", time));
    EXPECT_TRUE(is_now(time));
    EXPECT_EQ(XGetThreadException(), nullptr);
}

TEST(SystemTime, RecordsAreLocalTimeAndYearsBefore1900NoDate)
{
    kor_test::ProcessZone const zone("UTC0");
    SYSTEMTIME record {};
    CXTime const time(1710511509);
    ASSERT_TRUE(xTimeGetAsSystemTime(record, time));
    unsigned short const expected[] = { 2024, 3, 5, 15, 14, 5, 9, 0 };
    EXPECT_EQ(std::memcmp(&record, expected, sizeof record), 0);
    EXPECT_FALSE(xTimeGetAsSystemTime(record, CXTime(-1)));
    record.wMilliseconds = 999;
    record.wDayOfWeek = 77;
    CXTime back;
    EXPECT_TRUE(xTimeFromSystemTime(back, record, 0) && back == time);
    EXPECT_TRUE(xTimeFromSystemTime(back, record, 1) && back == time - CXDuration(3600));
    record.wYear = 1899;
    EXPECT_TRUE(xTimeFromSystemTime(back, record, -1) && back == CXTime());
    for (int const year : { 1900, 3002, 65535 }) {
        record.wYear = static_cast<unsigned short>(year);
        back = 7;
        EXPECT_TRUE(kor_test::is_invalid_argument([&] { xTimeFromSystemTime(back, record, -1); }));
        EXPECT_EQ(back, CXTime(7));
    }
}

TEST(SystemTime, FileTimesCountFrom1601InUnitsOf100Nanoseconds)
{
    kor_test::ProcessZone const zone("UTC0");
    CXTime time;
    auto const convert = [&time](unsigned long long ticks) {
        FILETIME record {};
        record.dwLowDateTime = static_cast<unsigned int>(ticks);
        record.dwHighDateTime = static_cast<unsigned int>(ticks >> 32);
        return xTimeFromFileTime(time, record, -1);
    };
    EXPECT_TRUE(convert(133549851099999999) && time == 1710511509);
    EXPECT_TRUE(convert(864000000000) && time == 0); // 1601
    time = 5;
    EXPECT_TRUE(!convert(~0ULL - 864000000000) && time == 0);
    EXPECT_TRUE(kor_test::is_invalid_argument([&] { convert(0x7FFF35F4F06C0000); })); // 30828
}

} // namespace
