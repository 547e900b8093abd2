// SPDX-License-Identifier: MIT
// Zones with odd rules, through the C library's zone data.
#include "kortools/data/xtime.h"
#include "tests/structured/process_zone.h"

#include <ctime>
#include <gtest/gtest.h>
#include <random>
#include <thread>
#include <tuple>
#include <vector>

namespace {

std::tuple<int, int, int, int, int, int, int, int> get_clock(std::tm const &fields)
{
    return { fields.tm_year, fields.tm_mon, fields.tm_mday, fields.tm_hour, fields.tm_min,
        fields.tm_sec, fields.tm_wday, fields.tm_yday };
}

class Zones : public testing::TestWithParam<char const *> { };

TEST_P(Zones, LocalTimeIsTheSystemsAndComesBack)
{
    kor_test::ProcessZone const zone(GetParam());
    std::mt19937_64 random(11);
    for (int i = 0; i < 3000; ++i) {
        // Every other one in the years whose rules are data and not a formula; and the limits.
        long long const last = i % 2 ? 32535215999 : 2145916799;
        long long const seconds = i < 2 ? i * last : static_cast<long long>(random() >> 1) % last;
        auto const system_time = static_cast<std::time_t>(seconds);
        std::tm expected {};
        std::tm local {};
        localtime_r(&system_time, &expected);
        ASSERT_TRUE(CXTime(seconds).GetLocalTm(&local));
        ASSERT_EQ(get_clock(local), get_clock(expected)) << seconds;
        ASSERT_EQ(local.tm_gmtoff, expected.tm_gmtoff) << seconds;
        ASSERT_STREQ(local.tm_zone, expected.tm_zone) << seconds;
        ASSERT_EQ(CXTime(&local), CXTime(seconds)) << local.tm_isdst;
        std::tm guessed = local;
        guessed.tm_isdst = -1;
        CXTime const guess(&guessed);
        ASSERT_EQ(get_clock(guessed), get_clock(local)) << seconds << ' ' << guess.GetTime();
    }
}
INSTANTIATE_TEST_SUITE_P(Names, Zones,
    testing::Values("America/New_York", "Europe/Dublin", "Australia/Lord_Howe", "Pacific/Apia",
        "Africa/Casablanca", "Asia/Kathmandu", "EST5EDT,M3.2.0,M11.1.0", "UTC0"));

struct Reading {
    char const *zone;
    CXTime (*make)(int dst);
    long long results[3]; // with dst -1, 0 and 1
};

TEST(ZoneRules, DaylightFlagsMeanTheSameInEveryZone)
{
    constexpr long long hour = 3600;
    Reading const readings[]
        = { { "Europe/Dublin", [](int dst) { return CXTime(2024, 7, 15, 12, 0, 0, dst); },
                { 1721041200, 1721041200 + hour, 1721041200 } },
              { "Europe/Dublin", [](int dst) { return CXTime(2024, 1, 15, 12, 0, 0, dst); },
                  { 1705320000, 1705320000, 1705320000 - hour } },
              { "Australia/Lord_Howe", [](int dst) { return CXTime(2024, 1, 15, 12, 0, 0, dst); },
                  { 1705280400, 1705280400 + hour / 2, 1705280400 } },
              { "Australia/Lord_Howe", [](int dst) { return CXTime(2024, 7, 15, 12, 0, 0, dst); },
                  { 1721007000, 1721007000, 1721007000 - hour / 2 } },
              // The hour that comes twice, and the one that is left out.
              { "America/New_York", [](int dst) { return CXTime(2024, 11, 3, 1, 30, 0, dst); },
                  { 1730611800 + hour, 1730611800 + hour, 1730611800 } },
              { "America/New_York", [](int dst) { return CXTime(2024, 3, 10, 2, 30, 0, dst); },
                  { 1710055800 - hour, 1710055800, 1710055800 - hour } } };
    for (Reading const &reading : readings) {
        kor_test::ProcessZone const zone(reading.zone);
        for (int const dst : { -1, 0, 1 })
            EXPECT_EQ(reading.make(dst).GetTime(), reading.results[dst + 1])
                << reading.zone << ' ' << &reading - readings << ' ' << dst;
    }
}

TEST(ZoneRules, ApiaHasNoThirtiethOfDecember2011)
{
    kor_test::ProcessZone const zone("Pacific/Apia");
    CXTime const before(2011, 12, 29, 23, 59, 59, -1);
    EXPECT_EQ(CXTime(2011, 12, 31, 0, 0, 0, -1) - before, CXDuration(1));
    EXPECT_EQ((before + 1).Format(L"%F %T %z %Z"), L"2011-12-31 00:00:00 +1400 +14");
    EXPECT_EQ(CXTime(2011, 12, 30, 12, 0, 0, -1).Format(L"%F %H"), L"2011-12-29 12");
}

TEST(ZoneRules, ThreadsMayAskAtOnce)
{
    kor_test::ProcessZone const zone("<+03>-3<+04>,M4.1.0,M10.1.0"); // known to no test before
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int year = 1971; year < 2300; ++year)
                EXPECT_EQ(CXTime(year, 7, 1, 4, 0, 0, -1).FormatGmt(L"%m-%d %H"), L"07-01 00");
        });
    }
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace
