// SPDX-License-Identifier: MIT
// CXArray beside std::vector and QList, for numbers and for strings, each library with its own.
// Appending is measured with each growth rule; the peers have one rule only, which doubles.
#include "kortools/archive/archive.h"
#include "kortools/core/array.h"
#include "kortools/core/xstring.h"

#include <QList>
#include <QString>
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

template <class T> T make(int value)
{
    return static_cast<T>(value);
}
template <> CXTString<wchar_t> make<CXTString<wchar_t>>(int value)
{
    return (L"element number " + std::to_wstring(value)).c_str();
}
template <> std::wstring make<std::wstring>(int value)
{
    return L"element number " + std::to_wstring(value);
}
template <> QString make<QString>(int value)
{
    return QStringLiteral("element number ") + QString::number(value);
}

template <class T> struct KorTools {
    using Element = T;
    using Array = CXArray<T>;
    static void append(Array &array, T const &value, int rule) { array.Add(value, rule); }
    static void insert(Array &array, int at, T const &value) { array.InsertAt(at, value); }
    static void remove(Array &array, int at) { array.RemoveAt(at); }
    static int count(Array const &array) { return array.GetSize(); }
    static bool equals(Array const &array, int at, T const &value) { return array[at] == value; }
};

template <class T> struct StdVector {
    using Element = T;
    using Array = std::vector<T>;
    static void append(Array &array, T const &value, int) { array.push_back(value); }
    static void insert(Array &array, int at, T const &value)
    {
        array.insert(array.begin() + at, value);
    }
    static void remove(Array &array, int at) { array.erase(array.begin() + at); }
    static int count(Array const &array) { return static_cast<int>(array.size()); }
    static bool equals(Array const &array, int at, T const &value)
    {
        return array[static_cast<std::size_t>(at)] == value;
    }
};

template <class T> struct QtList {
    using Element = T;
    using Array = QList<T>;
    static void append(Array &array, T const &value, int) { array.append(value); }
    static void insert(Array &array, int at, T const &value) { array.insert(at, value); }
    static void remove(Array &array, int at) { array.removeAt(at); }
    static int count(Array const &array) { return static_cast<int>(array.size()); }
    static bool equals(Array const &array, int at, T const &value) { return array.at(at) == value; }
};

template <class Library> std::vector<typename Library::Element> make_source(int count)
{
    std::vector<typename Library::Element> source;
    for (int i = 0; i < count; ++i)
        source.push_back(make<typename Library::Element>(i));
    return source;
}

template <class Library> void append(benchmark::State &state, int count, int rule)
{
    auto const source = make_source<Library>(count);
    for (auto _ : state) {
        typename Library::Array array;
        Library::append(array, source.front(), rule);
        for (int i = 1; i < count; ++i)
            Library::append(array, source[static_cast<std::size_t>(i)], CXArray<int>::keep_rule);
        if (Library::count(array) != count || !Library::equals(array, count - 1, source.back())) {
            state.SkipWithError("wrong result");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * count);
}

// Builds an array by inserting each element at `divisor`-th part of what there is (0: the front).
template <class Library> void insert(benchmark::State &state, int count, int divisor)
{
    auto const source = make_source<Library>(count);
    for (auto _ : state) {
        typename Library::Array array;
        for (int i = 0; i < count; ++i)
            Library::insert(array, divisor ? i / divisor : 0, source[static_cast<std::size_t>(i)]);
        int const last_at = divisor ? (count - 1) / divisor : 0;
        if (Library::count(array) != count || !Library::equals(array, last_at, source.back())) {
            state.SkipWithError("wrong result");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * count);
}

// Empties a copy of an array element by element.
template <class Library> void remove(benchmark::State &state, int count, int divisor)
{
    typename Library::Array full;
    for (auto const &element : make_source<Library>(count))
        Library::append(full, element, CXArray<int>::grow_double);
    for (auto _ : state) {
        typename Library::Array array = full;
        for (int left = count; left > 1; --left)
            Library::remove(array, divisor ? left / divisor : 0);
        auto const survivor = make<typename Library::Element>(divisor ? 0 : count - 1);
        if (Library::count(array) != 1 || !Library::equals(array, 0, survivor)) {
            state.SkipWithError("wrong result");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * count);
}

template <class Library> void add_rows(std::string const &element, std::string const &library)
{
    using Row = void (*)(benchmark::State &, int, int);
    auto const add = [&](std::string const &row, Row run, int argument, std::vector<int> counts) {
        for (int const count : counts) {
            auto const name
                = "array/" + element + "/" + row + "/" + std::to_string(count) + "/" + library;
            benchmark::RegisterBenchmark(
                name.c_str(), [=](benchmark::State &state) { run(state, count, argument); });
        }
    };
    add("append_double", append<Library>, CXArray<int>::grow_double, { 10, 1000, 100000 });
    add("append_auto", append<Library>, CXArray<int>::grow_auto, { 10, 1000, 100000 });
    add("append_by_1000", append<Library>, 1000, { 10, 1000, 100000 });
    add("insert_front", insert<Library>, 0, { 100, 10000 });
    add("insert_middle", insert<Library>, 2, { 100, 10000 });
    add("remove_front", remove<Library>, 0, { 100, 10000 });
    add("remove_middle", remove<Library>, 2, { 100, 10000 });
}

} // namespace

int main(int argc, char **argv)
{
    add_rows<KorTools<int>>("int", "KorTools");
    add_rows<StdVector<int>>("int", "std::vector");
    add_rows<QtList<int>>("int", "QList");
    add_rows<KorTools<CXTString<wchar_t>>>("string", "KorTools");
    add_rows<StdVector<std::wstring>>("string", "std::vector");
    add_rows<QtList<QString>>("string", "QList");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
