// SPDX-License-Identifier: MIT
// CHashMap beside the maps that a user would pick instead. A row is
//
//   <keys>/<operation>/<entries>/<library>
//
// where the keys are `sequential` or `random` integers or `text` of so many wide characters. All
// libraries of a row run on the same keys, and what they find is checked. QString shares its text,
// so for QHash inserting and erasing a text copies and frees nothing.
#include "kortools/core/hash_map.h"
#include "kortools/core/xstring.h"

#include <QHash>
#include <QString>
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

template <typename K> struct KorMap {
    using Key = K;
    using Argument = std::conditional_t<std::is_integral_v<K>, K, K const &>;

    CHashMap<K, Argument, int> map;

    void Insert(K const &key, int value) { map.Insert(key, value); }
    int const *Find(K const &key) const { return map.Find(key); }
    bool Erase(K const &key) { return map.Remove(key, false); }
    std::size_t Count() const { return map.GetCount(); }
    template <typename F> void ForEach(F visit) const
    {
        for (auto const &[key, value] : map)
            visit(value);
    }
};

// Iteration by positions instead of range-for.
template <typename K> struct KorMapByPosition : KorMap<K> {
    template <typename F> void ForEach(F visit) const
    {
        for (unsigned pos = this->map.GetFirst(); pos != ~0U;) {
            int const *value;
            this->map.GetNext(pos, value);
            visit(*value);
        }
    }
};

template <typename MAP> struct StdLikeMap {
    using Key = typename MAP::key_type;

    MAP map;

    void Insert(Key const &key, int value) { map.emplace(key, value); }
    int const *Find(Key const &key) const
    {
        auto const it = map.find(key);
        return it == map.end() ? nullptr : &it->second;
    }
    bool Erase(Key const &key) { return map.erase(key) != 0; }
    std::size_t Count() const { return map.size(); }
    template <typename F> void ForEach(F visit) const
    {
        for (auto const &[key, value] : map)
            visit(value);
    }
};

template <typename K> struct QtMap {
    using Key = K;

    QHash<K, int> map;

    QtMap() = default;
    QtMap(QtMap const &other)
        : map(other.map)
    {
        map.detach(); // a shared copy would be paid for by the first erase
    }
    void Insert(K const &key, int value) { map.insert(key, value); }
    int const *Find(K const &key) const
    {
        auto const it = map.constFind(key);
        return it == map.cend() ? nullptr : &it.value();
    }
    bool Erase(K const &key) { return map.remove(key); }
    std::size_t Count() const { return std::size_t(map.size()); }
    template <typename F> void ForEach(F visit) const
    {
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            visit(it.value());
    }
};

struct KeyKind {
    std::string name;
    bool random;
    unsigned length; // of text
};

// A bijection of 32 bits, so that different indices give different keys.
unsigned scrambled(unsigned i)
{
    i = (i ^ (i >> 16)) * 0x85EBCA6BU;
    i = (i ^ (i >> 13)) * 0xC2B2AE35U;
    return i ^ (i >> 16);
}

template <typename K> K make_key(KeyKind const &kind, unsigned index)
{
    unsigned bits = kind.random ? scrambled(index) : index;
    if constexpr (std::is_integral_v<K>) {
        return K(bits);
    } else {
        // Texts differ in their last seven characters, as paths and names do.
        std::wstring text(kind.length, L'x');
        for (unsigned i = 1; i <= 7; ++i, bits /= 26)
            text[kind.length - i] = wchar_t(L'a' + bits % 26);
        if constexpr (std::is_same_v<K, QString>)
            return QString::fromStdWString(text);
        else
            return K(text.c_str());
    }
}

template <typename K> struct Keys {
    std::vector<K> inserted;
    std::vector<K> looked_up; // the same in another order, unless sequential
    std::vector<K> absent;
};

// The keys of the row that ran last are kept.
template <typename K> Keys<K> const &keys_of(KeyKind const &kind, unsigned count)
{
    static std::string s_name;
    static Keys<K> s_keys;
    std::string const name = kind.name + std::to_string(count);
    if (name == s_name)
        return s_keys;
    s_name = name;
    s_keys = {};
    for (unsigned i = 0; i < count; ++i)
        s_keys.inserted.push_back(make_key<K>(kind, i));
    for (unsigned i = 0; i < count; ++i)
        s_keys.absent.push_back(make_key<K>(kind, count + i));
    std::vector<unsigned> order(count);
    for (unsigned i = 0; i < count; ++i)
        order[i] = i;
    if (kind.random)
        std::shuffle(order.begin(), order.end(), std::mt19937(1));
    for (unsigned const i : order)
        s_keys.looked_up.push_back(make_key<K>(kind, i));
    return s_keys;
}

template <typename MAP, typename K> void fill(MAP &map, Keys<K> const &keys)
{
    int value = 0;
    for (K const &key : keys.inserted)
        map.Insert(key, value++);
}

long long sum_of_values(unsigned count)
{
    return static_cast<long long>(count) * (count - 1) / 2;
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

template <typename MAP>
void run_insert(benchmark::State &state, KeyKind const &kind, unsigned count)
{
    auto const &keys = keys_of<typename MAP::Key>(kind, count);
    repeat(state, count, [&] {
        auto map = std::make_unique<MAP>();
        double const time = seconds([&] { fill(*map, keys); });
        if (map->Count() != count)
            state.SkipWithError("entries missing");
        return time;
    });
}

template <typename MAP>
void run_find(benchmark::State &state, KeyKind const &kind, unsigned count, bool present)
{
    auto const &keys = keys_of<typename MAP::Key>(kind, count);
    auto const map = std::make_unique<MAP>();
    fill(*map, keys);
    repeat(state, count, [&] {
        long long sum = 0;
        double const time = seconds([&] {
            for (auto const &key : present ? keys.looked_up : keys.absent) {
                if (int const *value = map->Find(key))
                    sum += *value;
            }
        });
        if (sum != (present ? sum_of_values(count) : 0))
            state.SkipWithError("wrong values");
        return time;
    });
}

template <typename MAP> void run_erase(benchmark::State &state, KeyKind const &kind, unsigned count)
{
    auto const &keys = keys_of<typename MAP::Key>(kind, count);
    auto const full = std::make_unique<MAP>();
    fill(*full, keys);
    repeat(state, count, [&] {
        auto map = std::make_unique<MAP>(*full);
        unsigned erased = 0;
        double const time = seconds([&] {
            for (auto const &key : keys.looked_up)
                erased += map->Erase(key);
        });
        if (erased != count || map->Count() != 0)
            state.SkipWithError("entries left");
        return time;
    });
}

template <typename MAP>
void run_iterate(benchmark::State &state, KeyKind const &kind, unsigned count)
{
    auto const &keys = keys_of<typename MAP::Key>(kind, count);
    auto const map = std::make_unique<MAP>();
    fill(*map, keys);
    repeat(state, count, [&] {
        long long sum = 0;
        double const time = seconds([&] { map->ForEach([&](int value) { sum += value; }); });
        if (sum != sum_of_values(count))
            state.SkipWithError("wrong values");
        return time;
    });
}

using Row = void (*)(benchmark::State &, KeyKind const &, unsigned count);

void add_row(
    KeyKind const &kind, char const *operation, unsigned count, char const *library, Row run)
{
    std::string const name
        = kind.name + '/' + operation + '/' + std::to_string(count) + '/' + library;
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State &state) {
        run(state, kind, count);
    })->UseManualTime();
}

template <typename MAP> void add_rows(KeyKind const &kind, unsigned count, char const *library)
{
    add_row(kind, "insert", count, library, run_insert<MAP>);
    add_row(kind, "hit", count, library, [](benchmark::State &state, KeyKind const &k, unsigned n) {
        run_find<MAP>(state, k, n, true);
    });
    add_row(
        kind, "miss", count, library, [](benchmark::State &state, KeyKind const &k, unsigned n) {
            run_find<MAP>(state, k, n, false);
        });
    add_row(kind, "erase", count, library, run_erase<MAP>);
    add_row(kind, "iterate", count, library, run_iterate<MAP>);
}

template <typename KOR, typename STANDARD, typename QT>
void add_libraries(KeyKind const &kind, unsigned count)
{
    add_rows<KorMap<KOR>>(kind, count, "KorTools");
    add_row(kind, "iterate", count, "KorTools by position", run_iterate<KorMapByPosition<KOR>>);
    add_rows<StdLikeMap<boost::unordered_flat_map<STANDARD, int>>>(kind, count, "boost");
    add_rows<StdLikeMap<absl::flat_hash_map<STANDARD, int>>>(kind, count, "absl");
    add_rows<QtMap<QT>>(kind, count, "QHash");
    add_rows<StdLikeMap<std::unordered_map<STANDARD, int>>>(kind, count, "std");
}

} // namespace

int main(int argc, char **argv)
{
    for (unsigned const count : { 1000U, 100000U, 5000000U }) {
        add_libraries<int, int, int>({ "sequential", false, 0 }, count);
        add_libraries<int, int, int>({ "random", true, 0 }, count);
    }
    // 5 million long texts would need 20 GB.
    for (unsigned const length : { 8U, 24U, 80U }) {
        KeyKind const kind { "text" + std::to_string(length), true, length };
        for (unsigned const count : { 1000U, 100000U, 1000000U })
            add_libraries<CXTString<wchar_t>, std::wstring, QString>(kind, count);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
