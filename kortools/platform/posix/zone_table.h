// SPDX-License-Identifier: MIT
// The rules of a time zone as a table of spans, taken from the C library by probing.
//
// The C library answers slowly (a microsecond where the rules repeat, under a lock) and tells less
// than is needed: not the zone's standard offset, and its daylight flag marks the exception to the
// rule, which in some zones is the winter. So the time from 1970 to 3000 is cut into blocks of 388
// days. A block is probed when it is first asked for, every five days and then by bisection (no
// zone has had a shorter span since 1970), and its spans are classified by their neighbours:
//
//   flag  neighbours                            daylight  standard offset
//    1    one without flag, up to 2 h behind    yes       the neighbour's
//    1    else one without flag, up to 2 h ahead no       its own
//    1    else                                  yes       one hour less
//    0    both with flag and up to 2 h behind   yes       the neighbours'
//    0    else                                  no        its own
//
// What has been read is kept: a lookup in a known block takes no lock.
#pragma once

#include "kortools/platform/calendar.h"

#include <array>
#include <atomic>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kortools::platform {

struct ZoneSpan {
    long long begin; // UTC; spans are cut at the ends of their block
    long long end;
    int offset;       // local time minus UTC, seconds
    int saving;       // what a positive daylight flag takes off here, seconds
    bool is_daylight; // then the standard offset is offset - saving, else offset
    char const *name; // lives as long as the table
};

class ZoneTable {
public:
    // `setting` is the value of TZ, null when it is not set.
    explicit ZoneTable(char const *setting);
    ZoneTable(ZoneTable const &) = delete;
    ZoneTable &operator=(ZoneTable const &) = delete;
    ~ZoneTable();

    // The table of the process's zone now. TZ is looked at in each call; a system zone that changes
    // while the process runs is not noticed. Tables are kept until the process ends.
    static ZoneTable const &current();

    // The span of an instant; of the nearest limit for one outside the limits of calendar.h.
    ZoneSpan const &find(long long instant) const;

private:
    static constexpr int block_shift = 25; // 2^25 seconds
    static constexpr int block_count = static_cast<int>(max_time >> block_shift) + 1;

    // A time in which the C library's answers do not change.
    struct Stretch {
        long long begin;
        long long end;
        int offset;
        bool flag;
        char const *name;
    };
    using Block = std::vector<ZoneSpan>;

    bool is_for(char const *setting) const;
    Block const &fill(int index) const;
    std::vector<Stretch> read_around(int index) const;
    std::vector<Stretch> const &read(int index) const;
    Stretch ask(long long instant) const;
    static bool is_same(Stretch const &a, Stretch const &b);
    static ZoneSpan classify(Stretch const *before, Stretch const &stretch, Stretch const *after);

    bool m_is_set;
    std::string m_setting;
    mutable std::array<std::atomic<Block const *>, block_count> m_blocks {}; // owned
    // The rest under the mutex of all tables.
    mutable std::map<int, std::vector<Stretch>> m_stretches; // by block
    mutable std::set<std::string> m_names;
};

} // namespace kortools::platform
