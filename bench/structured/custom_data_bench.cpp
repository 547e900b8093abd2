// SPDX-License-Identifier: MIT
// CCustomData beside what a user would pick instead. Row names are <operation>/<library>/<entries>;
// a third of the entries each are ints, doubles and texts of 12 characters. What is read is
// checked. In every "set" round a container is filled from empty; "replace" stores a value of the
// same size; "remove" takes out and puts back (untimed) entries from all over the container.
#include "kortools/data/custom_data.h"

#include <QDataStream>
#include <QIODevice>
#include <QVariantMap>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

namespace {

// A bijection of 32 bits, so that different indices give different identifiers.
unsigned id_of(unsigned i)
{
    i = (i ^ (i >> 16)) * 0x85EBCA6BU;
    return i ^ (i >> 13);
}

void check(bool holds)
{
    if (!holds)
        std::abort();
}

struct Kor {
    CCustomData data;
    CXTString<wchar_t> text = L"twelve chars";
    explicit Kor(unsigned) { }
    void set(unsigned i, int number)
    {
        unsigned const id = id_of(i);
        if (i % 3 == 0)
            data.SetInt(id, number);
        else if (i % 3 == 1)
            data.SetDouble(id, number);
        else
            data.SetString(id, text);
    }
    bool get(unsigned i)
    {
        int number;
        double real;
        unsigned const id = id_of(i);
        if (i % 3 == 0)
            return data.GetInt(id, number);
        return i % 3 == 1 ? data.GetDouble(id, real) : data.GetString(id, read);
    }
    void remove(unsigned i) { data.RemoveCustom(id_of(i)); }
    std::size_t count() const { return data.GetIDCount(); }
    std::vector<char> store()
    {
        unsigned long long size;
        void *const block = data.SerializeToData(size);
        auto const *const bytes = static_cast<char const *>(block);
        std::vector<char> const stored(bytes, bytes + size);
        CCustomData::Free(block);
        return stored;
    }
    void load(std::vector<char> const &bytes)
    {
        data.SerializeFromData(bytes.data(), bytes.size());
    }
    CXTString<wchar_t> read;
};

struct Variants {
    std::unordered_map<unsigned, std::variant<int, double, std::wstring>> map;
    explicit Variants(unsigned) { }
    void set(unsigned i, int number)
    {
        auto &value = map[id_of(i)];
        if (i % 3 == 0)
            value = number;
        else if (i % 3 == 1)
            value = static_cast<double>(number);
        else
            value = std::wstring(L"twelve chars");
    }
    bool get(unsigned i)
    {
        auto const found = map.find(id_of(i));
        if (found == map.end())
            return false;
        if (i % 3 == 0)
            return std::get_if<int>(&found->second) != nullptr;
        if (i % 3 == 1)
            return std::get_if<double>(&found->second) != nullptr;
        read = std::get<std::wstring>(found->second);
        return true;
    }
    void remove(unsigned i) { map.erase(id_of(i)); }
    std::size_t count() const { return map.size(); }
    std::wstring read;
};

struct Qt {
    QVariantMap map;
    std::vector<QString> keys;
    explicit Qt(unsigned count)
    {
        for (unsigned i = 0; i < count; ++i)
            keys.push_back(QString::number(id_of(i)));
    }
    void set(unsigned i, int number)
    {
        if (i % 3 == 0)
            map.insert(keys[i], number);
        else if (i % 3 == 1)
            map.insert(keys[i], static_cast<double>(number));
        else
            map.insert(keys[i], QStringLiteral("twelve chars"));
    }
    bool get(unsigned i)
    {
        auto const found = map.constFind(keys[i]);
        if (found == map.constEnd())
            return false;
        if (i % 3 == 2)
            read = found->toString();
        return found->isValid();
    }
    void remove(unsigned i) { map.remove(keys[i]); }
    std::size_t count() const { return static_cast<std::size_t>(map.size()); }
    std::vector<char> store() const
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream << map;
        return { bytes.begin(), bytes.end() };
    }
    void load(std::vector<char> const &bytes)
    {
        QDataStream stream(QByteArray::fromRawData(bytes.data(), qsizetype(bytes.size())));
        stream >> map;
    }
    QString read;
};

template <class Library> void fill(Library &library, unsigned count)
{
    for (unsigned i = 0; i < count; ++i)
        library.set(i, static_cast<int>(i));
}

unsigned count_of(benchmark::State const &state)
{
    return static_cast<unsigned>(state.range(0));
}

template <class Library> void BM_Set(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        Library library(count_of(state));
        state.ResumeTiming();
        fill(library, count_of(state));
        check(library.count() == count_of(state));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Library> void BM_Get(benchmark::State &state)
{
    Library library(count_of(state));
    fill(library, count_of(state));
    unsigned i = 0;
    for (auto _ : state) {
        check(library.get(i));
        if (++i == count_of(state))
            i = 0;
    }
    state.SetItemsProcessed(state.iterations());
}

template <class Library> void BM_Replace(benchmark::State &state)
{
    Library library(count_of(state));
    fill(library, count_of(state));
    unsigned i = 0;
    for (auto _ : state) {
        library.set(i, 1);
        if (++i == count_of(state))
            i = 0;
    }
    check(library.count() == count_of(state));
    state.SetItemsProcessed(state.iterations());
}

template <class Library> void BM_Remove(benchmark::State &state)
{
    Library library(count_of(state));
    fill(library, count_of(state));
    unsigned const batch = std::min(count_of(state), 64U);
    for (auto _ : state) {
        for (unsigned i = 0; i < batch; ++i)
            library.remove(static_cast<unsigned>(1ULL * i * count_of(state) / batch));
        check(library.count() == count_of(state) - batch);
        state.PauseTiming();
        for (unsigned i = 0; i < batch; ++i)
            library.set(static_cast<unsigned>(1ULL * i * count_of(state) / batch), 1);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * batch);
}

template <class Library> void BM_Store(benchmark::State &state)
{
    Library library(count_of(state));
    fill(library, count_of(state));
    std::size_t size = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(size = library.store().size());
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(size));
}

template <class Library> void BM_Load(benchmark::State &state)
{
    Library library(count_of(state));
    fill(library, count_of(state));
    std::vector<char> const bytes = library.store();
    for (auto _ : state) {
        library.load(bytes);
        check(library.count() == count_of(state));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(bytes.size()));
}

// The limit of storing and loading: the bytes, copied.
void BM_StoreLoadLimit_memcpy(benchmark::State &state)
{
    Kor kor(0);
    fill(kor, count_of(state));
    std::vector<char> const bytes = kor.store();
    for (auto _ : state) {
        std::vector<char> copy(bytes);
        benchmark::DoNotOptimize(copy.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(bytes.size()));
}

#define KOR_SIZES Arg(10)->Arg(1000)->Arg(100000)
BENCHMARK_TEMPLATE(BM_Set, Kor)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Set, Variants)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Set, Qt)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Get, Kor)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Get, Variants)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Get, Qt)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Replace, Kor)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Replace, Variants)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Replace, Qt)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Remove, Kor)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Remove, Variants)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Remove, Qt)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Store, Kor)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Store, Qt)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Load, Kor)->KOR_SIZES;
BENCHMARK_TEMPLATE(BM_Load, Qt)->KOR_SIZES;
BENCHMARK(BM_StoreLoadLimit_memcpy)->KOR_SIZES;

} // namespace

BENCHMARK_MAIN();
