// SPDX-License-Identifier: MIT
// Local time beside the C library, Abseil and Qt, in a zone with daylight saving time: taking a
// time apart, putting it together again, and writing it as text into a string object.
#include "kortools/data/xtime.h"

#include <QDateTime>
#include <absl/time/time.h>
#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

namespace {

// Year, month (1 to 12), day, hour, minute and second of the local clock.
using Clock = std::array<int, 6>;

Clock get_clock(std::tm const &fields)
{
    return { fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
        fields.tm_min, fields.tm_sec };
}

Clock get_system_clock(std::time_t seconds)
{
    std::tm fields {};
    localtime_r(&seconds, &fields);
    return get_clock(fields);
}

// Times of this century so far, without the hour that comes twice a year.
std::vector<long long> const &get_times()
{
    static std::vector<long long> const times = [] {
        std::mt19937_64 random(5);
        std::vector<long long> result;
        while (result.size() < 1024) {
            auto const time = static_cast<long long>(946684800 + random() % 788918400);
            if (get_system_clock(time)[3] != 1)
                result.push_back(time);
        }
        return result;
    }();
    return times;
}

struct KorTools {
    Clock take_apart(long long seconds) const
    {
        std::tm fields;
        CXTime(seconds).GetLocalTm(&fields);
        return get_clock(fields);
    }
    long long put_together(Clock const &c) const
    {
        return CXTime(c[0], c[1], c[2], c[3], c[4], c[5], -1).GetTime();
    }
    std::size_t format(long long seconds)
    {
        m_text = CXTime(seconds).Format(L"%Y-%m-%d %H:%M:%S");
        return static_cast<std::size_t>(m_text.GetLength());
    }
    CXTString<wchar_t> m_text;
};

struct CLibrary {
    Clock take_apart(long long seconds) const { return get_system_clock(seconds); }
    long long put_together(Clock const &c) const
    {
        std::tm fields {};
        fields.tm_year = c[0] - 1900;
        fields.tm_mon = c[1] - 1;
        fields.tm_mday = c[2];
        fields.tm_hour = c[3];
        fields.tm_min = c[4];
        fields.tm_sec = c[5];
        fields.tm_isdst = -1;
        return std::mktime(&fields);
    }
    std::size_t format(long long seconds)
    {
        std::time_t const time = seconds;
        std::tm fields {};
        localtime_r(&time, &fields);
        wchar_t text[256];
        m_text.assign(text, std::wcsftime(text, 256, L"%Y-%m-%d %H:%M:%S", &fields));
        return m_text.size();
    }
    std::wstring m_text;
};

struct Abseil {
    Clock take_apart(long long seconds) const
    {
        absl::CivilSecond const c = zone.At(absl::FromUnixSeconds(seconds)).cs;
        return { static_cast<int>(c.year()), c.month(), c.day(), c.hour(), c.minute(), c.second() };
    }
    long long put_together(Clock const &c) const
    {
        absl::CivilSecond const civil(c[0], c[1], c[2], c[3], c[4], c[5]);
        return absl::ToUnixSeconds(absl::FromCivil(civil, zone));
    }
    std::size_t format(long long seconds)
    {
        m_text = absl::FormatTime("%Y-%m-%d %H:%M:%S", absl::FromUnixSeconds(seconds), zone);
        return m_text.size();
    }
    absl::TimeZone zone = absl::LocalTimeZone();
    std::string m_text;
};

struct QtTime {
    Clock take_apart(long long seconds) const
    {
        QDateTime const local = QDateTime::fromSecsSinceEpoch(seconds);
        QDate const date = local.date();
        QTime const time = local.time();
        return { date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second() };
    }
    long long put_together(Clock const &c) const
    {
        return QDateTime(QDate(c[0], c[1], c[2]), QTime(c[3], c[4], c[5])).toSecsSinceEpoch();
    }
    std::size_t format(long long seconds)
    {
        m_text = QDateTime::fromSecsSinceEpoch(seconds).toString(u"yyyy-MM-dd HH:mm:ss");
        return static_cast<std::size_t>(m_text.size());
    }
    QString m_text;
};

// Calls run(library, i) for one time after another; stops when it returns false.
template <class Library, class Run> void measure(benchmark::State &state, Run run)
{
    Library library;
    std::size_t i = 0;
    for (auto _ : state) {
        if (!run(library, i)) {
            state.SkipWithError("wrong result");
            break;
        }
        i = (i + 1) % get_times().size();
    }
}

std::vector<Clock> const &get_clocks()
{
    static std::vector<Clock> const clocks = [] {
        std::vector<Clock> result;
        for (long long const time : get_times())
            result.push_back(get_system_clock(time));
        return result;
    }();
    return clocks;
}

template <class Library> void add_rows(std::string const &name)
{
    benchmark::RegisterBenchmark(("local_time/take_apart/" + name).c_str(), [](auto &state) {
        measure<Library>(state,
            [](auto &l, std::size_t i) { return l.take_apart(get_times()[i]) == get_clocks()[i]; });
    });
    benchmark::RegisterBenchmark(("local_time/put_together/" + name).c_str(), [](auto &state) {
        measure<Library>(state, [](auto &l, std::size_t i) {
            return l.put_together(get_clocks()[i]) == get_times()[i];
        });
    });
    benchmark::RegisterBenchmark(("local_time/format/" + name).c_str(), [](auto &state) {
        measure<Library>(
            state, [](auto &l, std::size_t i) { return l.format(get_times()[i]) == 19; });
    });
}

} // namespace

int main(int argc, char **argv)
{
    setenv("TZ", "America/New_York", 1);
    tzset();
    add_rows<KorTools>("CXTime");
    add_rows<CLibrary>("libc");
    add_rows<Abseil>("absl::Time");
    add_rows<QtTime>("QDateTime");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
