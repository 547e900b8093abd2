// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/zone_table.h"

#include "kortools/platform/civil_time.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <time.h>

namespace kortools::platform {
namespace {

constexpr long long probe_step = 5 * seconds_per_day;
constexpr int largest_saving = 2 * seconds_per_hour;

// Guards the filling of all tables and their list: the C library has one zone at a time.
std::mutex s_mutex;
std::atomic<ZoneTable const *> s_current { nullptr };

std::vector<std::unique_ptr<ZoneTable const>> &get_tables()
{
    static auto *const tables
        = new std::vector<std::unique_ptr<ZoneTable const>>; // never destroyed
    return *tables;
}

constexpr bool is_saving(int seconds)
{
    return seconds > 0 && seconds <= largest_saving;
}

} // namespace

ZoneTable::ZoneTable(char const *setting)
    : m_is_set(setting != nullptr)
    , m_setting(setting ? setting : "")
{
}

ZoneTable::~ZoneTable()
{
    for (auto const &block : m_blocks)
        delete block.load();
}

ZoneTable const &ZoneTable::current()
{
    char const *const setting = std::getenv("TZ");
    ZoneTable const *const known = s_current.load(std::memory_order_acquire);
    if (known && known->is_for(setting))
        return *known;
    std::lock_guard const lock(s_mutex);
    auto &tables = get_tables();
    auto found = std::ranges::find_if(tables, [=](auto const &t) { return t->is_for(setting); });
    if (found == tables.end())
        found = tables.insert(found, std::make_unique<ZoneTable const>(setting));
    s_current.store(found->get(), std::memory_order_release);
    return **found;
}

ZoneSpan const &ZoneTable::find(long long instant) const
{
    long long const clamped = std::clamp(instant, 0LL, max_time);
    auto const index = static_cast<int>(clamped >> block_shift);
    Block const *block = m_blocks[static_cast<std::size_t>(index)].load(std::memory_order_acquire);
    if (!block)
        block = &fill(index);
    ZoneSpan const *span = block->data();
    while (clamped >= span->end)
        ++span;
    return *span;
}

bool ZoneTable::is_for(char const *setting) const
{
    return setting ? m_is_set && std::strcmp(m_setting.c_str(), setting) == 0 : !m_is_set;
}

ZoneTable::Block const &ZoneTable::fill(int index) const
{
    std::lock_guard const lock(s_mutex);
    auto &slot = m_blocks[static_cast<std::size_t>(index)];
    if (Block const *const block = slot.load(std::memory_order_acquire))
        return *block;
    tzset();
    std::vector<Stretch> const all = read_around(index);
    auto block = std::make_unique<Block>();
    long long const begin = static_cast<long long>(index) << block_shift;
    long long const end = begin + (1LL << block_shift);
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i].end <= begin || all[i].begin >= end)
            continue;
        ZoneSpan span = classify(
            i > 0 ? &all[i - 1] : nullptr, all[i], i + 1 < all.size() ? &all[i + 1] : nullptr);
        span.begin = std::max(span.begin, begin);
        span.end = std::min(span.end, end);
        block->push_back(span);
    }
    slot.store(block.get(), std::memory_order_release);
    return *block.release();
}

// The stretches of a block and of those beside it, joined where only the blocks had cut them.
std::vector<ZoneTable::Stretch> ZoneTable::read_around(int index) const
{
    std::vector<Stretch> all;
    for (int const part : { index - 1, index, index + 1 }) {
        for (Stretch const &stretch : read(part)) {
            if (!all.empty() && is_same(all.back(), stretch))
                all.back().end = stretch.end;
            else
                all.push_back(stretch);
        }
    }
    return all;
}

std::vector<ZoneTable::Stretch> const &ZoneTable::read(int index) const
{
    auto const [slot, is_new] = m_stretches.try_emplace(index);
    std::vector<Stretch> &stretches = slot->second;
    if (!is_new)
        return stretches;
    long long const begin = index * (1LL << block_shift);
    long long const last = begin + (1LL << block_shift) - 1;
    stretches.push_back(ask(begin));
    for (long long known = begin; known < last;) {
        long long next = std::min(known + probe_step, last);
        if (is_same(ask(next), stretches.back())) {
            known = next;
            continue;
        }
        while (next - known > 1) {
            long long const middle = known + (next - known) / 2;
            (is_same(ask(middle), stretches.back()) ? known : next) = middle;
        }
        stretches.back().end = next;
        stretches.push_back(ask(next));
        known = next;
    }
    stretches.back().end = last + 1;
    return stretches;
}

ZoneTable::Stretch ZoneTable::ask(long long instant) const
{
    time_t const time = instant;
    tm fields {};
    localtime_r(&time, &fields);
    return { instant, instant + 1, static_cast<int>(fields.tm_gmtoff), fields.tm_isdst > 0,
        m_names.emplace(fields.tm_zone ? fields.tm_zone : "").first->c_str() };
}

bool ZoneTable::is_same(Stretch const &a, Stretch const &b)
{
    return a.offset == b.offset && a.flag == b.flag && a.name == b.name;
}

ZoneSpan ZoneTable::classify(Stretch const *before, Stretch const &stretch, Stretch const *after)
{
    int const offset = stretch.offset;
    ZoneSpan span { stretch.begin, stretch.end, offset, seconds_per_hour, stretch.flag,
        stretch.name };
    auto const has_other_flag
        = [&](Stretch const *neighbour) { return neighbour && neighbour->flag != stretch.flag; };
    int behind = 0; // how many neighbours may be the standard time of this one
    int ahead = 0;
    for (Stretch const *const neighbour : { before, after }) {
        behind += has_other_flag(neighbour) && is_saving(offset - neighbour->offset);
        ahead += has_other_flag(neighbour) && is_saving(neighbour->offset - offset);
    }
    span.is_daylight = stretch.flag ? behind > 0 || ahead == 0 : behind == 2;
    int smallest = largest_saving + 1; // the larger of two belongs to another standard offset
    for (Stretch const *const neighbour : { before, after }) {
        int const difference = has_other_flag(neighbour) ? neighbour->offset - offset : 0;
        int const saving = span.is_daylight ? -difference : difference;
        if (is_saving(saving) && saving < smallest)
            span.saving = smallest = saving;
    }
    return span;
}

} // namespace kortools::platform
