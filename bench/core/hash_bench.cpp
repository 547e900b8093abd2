// SPDX-License-Identifier: MIT
// CHashMap beside the maps that a user would pick instead. Row names are
// <key type>/<operation>/<order of keys>/<entries>/<library>; all libraries of a row run on the
// same keys, and what they find is checked.
#include "kortools/core/hash_map.h"

#include <QHash>
#include <absl/container/flat_hash_map.h>
#include <benchmark/benchmark.h>
#include <boost/unordered/unordered_flat_map.hpp>

#include <algorithm>
#include <ctime>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

struct KorMap {
    CHashMap<int, int, int> map;
    void Insert(int key, int value) { map.Insert(key, value); }
    int const *Find(int key) const { return map.Find(key); }
    bool Erase(int key) { return map.Remove(key, false); }
    std::size_t Count() const { return map.GetCount(); }
    template <typename F> void ForEach(F visit) const
    {
        for (auto const &[key, value] : map)
            visit(key, value);
    }
};

// Iteration as the interface of old has it, by positions.
struct KorMapByPosition : KorMap {
    template <typename F> void ForEach(F visit) const
    {
        for (unsigned pos = map.GetFirst(); pos != ~0U;) {
            int key, value;
            map.GetNext(pos, key, value);
            visit(key, value);
        }
    }
};

template <typename MAP> struct StdLikeMap {
    MAP map;
    void Insert(int key, int value) { map.emplace(key, value); }
    int const *Find(int key) const
    {
        auto const it = map.find(key);
        return it == map.end() ? nullptr : &it->second;
    }
    bool Erase(int key) { return map.erase(key) != 0; }
    std::size_t Count() const { return map.size(); }
    template <typename F> void ForEach(F visit) const
    {
        for (auto const &[key, value] : map)
            visit(key, value);
    }
};

struct QtMap {
    QHash<int, int> map;
    void Insert(int key, int value) { map.insert(key, value); }
    int const *Find(int key) const
    {
        auto const it = map.constFind(key);
        return it == map.cend() ? nullptr : &it.value();
    }
    bool Erase(int key) { return map.remove(key); }
    std::size_t Count() const { return std::size_t(map.size()); }
    template <typename F> void ForEach(F visit) const
    {
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            visit(it.key(), it.value());
    }
    QtMap() = default;
    QtMap(QtMap const &other)
        : map(other.map)
    {
        map.detach(); // a shared copy would be paid for by the first erase
    }
};

// A bijection of 32 bits, so that different indices give different keys.
int scrambled(unsigned i)
{
    i = (i ^ (i >> 16)) * 0x85EBCA6BU;
    i = (i ^ (i >> 13)) * 0xC2B2AE35U;
    return int(i ^ (i >> 16));
}

struct Keys {
    std::vector<int> inserted;
    std::vector<int> looked_up; // the same in another order
    std::vector<int> absent;
};

Keys const &keys_of(bool random, unsigned count)
{
    static std::unordered_map<unsigned long long, Keys> s_keys;
    Keys &keys = s_keys[(static_cast<unsigned long long>(random) << 32) + count];
    if (keys.inserted.empty()) {
        for (unsigned i = 0; i < count; ++i) {
            keys.inserted.push_back(random ? scrambled(i) : int(i));
            keys.absent.push_back(random ? scrambled(count + i) : int(count + i));
        }
        keys.looked_up = keys.inserted;
        if (random)
            std::shuffle(keys.looked_up.begin(), keys.looked_up.end(), std::mt19937(1));
    }
    return keys;
}

template <typename MAP> void fill(MAP &map, Keys const &keys)
{
    int value = 0;
    for (int const key : keys.inserted)
        map.Insert(key, value++);
}

long long expected_sum(Keys const &keys)
{
    auto const n = static_cast<long long>(keys.inserted.size());
    return n * (n - 1) / 2;
}

// Processor time, so that other programs on the machine disturb the caches only.
double now_in_seconds()
{
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

template <typename F> double seconds(F run)
{
    double const start = now_in_seconds();
    run();
    return now_in_seconds() - start;
}

// Runs `measure` on enough maps that one iteration is not about the clock.
template <typename F> void repeat(benchmark::State &state, unsigned count, F measure)
{
    unsigned const rounds = std::max(1U, 100000 / count);
    for (auto _ : state) {
        double total = 0;
        for (unsigned i = 0; i < rounds; ++i)
            total += measure();
        state.SetIterationTime(total);
    }
    state.SetItemsProcessed(state.iterations() * rounds * count);
}

template <typename MAP> void run_insert(benchmark::State &state, bool random, unsigned count)
{
    Keys const &keys = keys_of(random, count);
    repeat(state, count, [&] {
        auto map = std::make_unique<MAP>();
        double const time = seconds([&] { fill(*map, keys); });
        if (map->Count() != count)
            state.SkipWithError("entries missing");
        return time;
    });
}

template <typename MAP>
void run_find(benchmark::State &state, bool random, unsigned count, bool absent)
{
    Keys const &keys = keys_of(random, count);
    auto const map = std::make_unique<MAP>();
    fill(*map, keys);
    long long const expected = absent ? 0 : expected_sum(keys);
    repeat(state, count, [&] {
        long long sum = 0;
        double const time = seconds([&] {
            for (int const key : absent ? keys.absent : keys.looked_up) {
                if (int const *value = map->Find(key))
                    sum += *value;
            }
        });
        if (sum != expected)
            state.SkipWithError("wrong values");
        return time;
    });
}

template <typename MAP> void run_erase(benchmark::State &state, bool random, unsigned count)
{
    Keys const &keys = keys_of(random, count);
    auto const full = std::make_unique<MAP>();
    fill(*full, keys);
    repeat(state, count, [&] {
        auto map = std::make_unique<MAP>(*full);
        unsigned erased = 0;
        double const time = seconds([&] {
            for (int const key : keys.looked_up)
                erased += map->Erase(key);
        });
        if (erased != count || map->Count() != 0)
            state.SkipWithError("entries left");
        return time;
    });
}

template <typename MAP> void run_iterate(benchmark::State &state, bool random, unsigned count)
{
    Keys const &keys = keys_of(random, count);
    auto const map = std::make_unique<MAP>();
    fill(*map, keys);
    repeat(state, count, [&] {
        long long sum = 0;
        double const time = seconds([&] { map->ForEach([&](int, int value) { sum += value; }); });
        if (sum != expected_sum(keys))
            state.SkipWithError("wrong values");
        return time;
    });
}

template <typename MAP> void add_rows(std::string const &library, bool random, unsigned count)
{
    auto const add = [&](char const *operation, auto run) {
        std::string const name = std::string("int/") + operation
            + (random ? "/random/" : "/sequential/") + std::to_string(count) + "/" + library;
        benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime();
    };
    add("insert", [=](benchmark::State &s) { run_insert<MAP>(s, random, count); });
    add("hit", [=](benchmark::State &s) { run_find<MAP>(s, random, count, false); });
    add("miss", [=](benchmark::State &s) { run_find<MAP>(s, random, count, true); });
    add("erase", [=](benchmark::State &s) { run_erase<MAP>(s, random, count); });
    add("iterate", [=](benchmark::State &s) { run_iterate<MAP>(s, random, count); });
    if (std::is_same_v<MAP, KorMap>)
        add("iterate by position",
            [=](benchmark::State &s) { run_iterate<KorMapByPosition>(s, random, count); });
}

} // namespace

int main(int argc, char **argv)
{
    for (unsigned const count : { 1000U, 100000U, 5000000U }) {
        for (bool const random : { false, true }) {
            add_rows<KorMap>("KorTools", random, count);
            add_rows<StdLikeMap<boost::unordered_flat_map<int, int>>>("boost", random, count);
            add_rows<StdLikeMap<absl::flat_hash_map<int, int>>>("absl", random, count);
            add_rows<QtMap>("QHash", random, count);
            add_rows<StdLikeMap<std::unordered_map<int, int>>>("std", random, count);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
