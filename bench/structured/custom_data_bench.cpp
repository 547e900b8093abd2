// SPDX-License-Identifier: MIT
// CCustomData beside what a user would pick instead. Row names are <operation>/<entries>/<library>;
// a third of the entries each are ints, doubles and texts of 12 characters. What is read is
// checked. In every "set" round a container is filled from empty; "replace" stores a value of the
// same size; "remove" takes out and puts back (untimed) entries from all over the container. Only
// CCustomData locks itself; a text is copied out by all.
#include "kortools/data/custom_data.h"

#include <QDataStream>
#include <QIODevice>
#include <QVariantMap>
#include <benchmark/benchmark.h>
#include <flatbuffers/flexbuffers.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <type_traits>
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

// The same map, stored as a FlexBuffers document, whose keys are texts; "get" reads from the
// document.
struct FlexBuffers : Variants {
    std::vector<std::string> keys;
    std::vector<unsigned char> document;
    explicit FlexBuffers(unsigned count)
        : Variants(count)
    {
        for (unsigned i = 0; i < count; ++i)
            keys.push_back(std::to_string(id_of(i)));
    }
    bool get(unsigned i)
    {
        if (document.empty())
            write();
        auto const value = flexbuffers::GetRoot(document).AsMap()[keys[i].c_str()];
        if (i % 3 == 2)
            read = text_of(value);
        return i % 3 == 0 ? value.IsInt() : i % 3 == 1 ? value.IsFloat() : !read.empty();
    }
    void write()
    {
        flexbuffers::Builder builder;
        std::size_t const start = builder.StartMap();
        for (auto const &[id, value] : map) {
            builder.Key(std::to_string(id));
            if (int const *number = std::get_if<int>(&value))
                builder.Int(*number);
            else if (double const *real = std::get_if<double>(&value))
                builder.Double(*real);
            else if (auto const *text = std::get_if<std::wstring>(&value))
                builder.Blob(text->data(), text->size() * sizeof(wchar_t));
        }
        builder.EndMap(start);
        builder.Finish();
        document = builder.GetBuffer();
    }
    static std::wstring text_of(flexbuffers::Reference value)
    {
        auto const blob = value.AsBlob();
        std::wstring text(blob.size() / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), blob.data(), blob.size());
        return text;
    }
    std::vector<char> store()
    {
        write();
        return { document.begin(), document.end() };
    }
    void load(std::vector<char> const &bytes)
    {
        map.clear();
        auto const root = flexbuffers::GetRoot(
            reinterpret_cast<unsigned char const *>(bytes.data()), bytes.size());
        auto const entries = root.AsMap();
        auto const ids = entries.Keys();
        auto const values = entries.Values();
        for (std::size_t i = 0; i < ids.size(); ++i) {
            auto const id = static_cast<unsigned>(std::strtoul(ids[i].AsKey(), nullptr, 10));
            auto const value = values[i];
            if (value.IsInt())
                map[id] = value.AsInt32();
            else if (value.IsFloat())
                map[id] = value.AsDouble();
            else
                map[id] = text_of(value);
        }
    }
};

struct QtMap {
    QVariantMap map;
    std::vector<QString> keys;
    explicit QtMap(unsigned count)
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

template <class Library> void set_all(benchmark::State &state, unsigned count)
{
    for (auto _ : state) {
        state.PauseTiming();
        Library library(count);
        state.ResumeTiming();
        fill(library, count);
        check(library.count() == count);
    }
    state.SetItemsProcessed(state.iterations() * count);
}

template <class Library> void get_each(benchmark::State &state, unsigned count)
{
    Library library(count);
    fill(library, count);
    unsigned i = 0;
    for (auto _ : state) {
        check(library.get(i));
        if (++i == count)
            i = 0;
    }
    state.SetItemsProcessed(state.iterations());
}

template <class Library> void replace_each(benchmark::State &state, unsigned count)
{
    Library library(count);
    fill(library, count);
    unsigned i = 0;
    for (auto _ : state) {
        library.set(i, 1);
        if (++i == count)
            i = 0;
    }
    check(library.count() == count);
    state.SetItemsProcessed(state.iterations());
}

template <class Library> void remove_some(benchmark::State &state, unsigned count)
{
    Library library(count);
    fill(library, count);
    unsigned const batch = std::min(count / 5, 16U);
    unsigned round = 0;
    auto const for_each = [&](auto visit) {
        for (unsigned i = 0; i < batch; ++i)
            visit((i * (count / batch) + round) % count);
    };
    for (auto _ : state) {
        for_each([&](unsigned i) { library.remove(i); });
        check(library.count() == count - batch);
        state.PauseTiming();
        for_each([&](unsigned i) { library.set(i, 1); });
        ++round; // what was put back is at the end now
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * batch);
}

template <class Library> void store_all(benchmark::State &state, unsigned count)
{
    Library library(count);
    fill(library, count);
    std::size_t size = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(size = library.store().size());
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(size));
}

template <class Library> void load_all(benchmark::State &state, unsigned count)
{
    Library library(count);
    fill(library, count);
    std::vector<char> const bytes = library.store();
    for (auto _ : state) {
        library.load(bytes);
        check(library.count() == count);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(bytes.size()));
}

// The limit of storing and loading: the bytes, copied.
void copy_bytes(benchmark::State &state, unsigned count)
{
    Kor kor(0);
    fill(kor, count);
    std::vector<char> const bytes = kor.store();
    for (auto _ : state) {
        std::vector<char> copy(bytes);
        benchmark::DoNotOptimize(copy.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(bytes.size()));
}

void add(std::string const &operation, std::string const &library,
    void (*run)(benchmark::State &, unsigned))
{
    for (unsigned const count : { 10, 1000, 100'000 }) {
        std::string const name
            = "custom_data/" + operation + '/' + std::to_string(count) + '/' + library;
        benchmark::RegisterBenchmark(
            name.c_str(), [=](benchmark::State &state) { run(state, count); });
    }
}

template <class Library> void add_all(std::string const &name)
{
    add("get", name, get_each<Library>);
    if constexpr (!std::is_same_v<Library, FlexBuffers>) { // its documents cannot be changed
        add("set", name, set_all<Library>);
        add("replace", name, replace_each<Library>);
        add("remove", name, remove_some<Library>);
    }
    if constexpr (requires(Library library) { library.store(); }) {
        add("store", name, store_all<Library>);
        add("load", name, load_all<Library>);
    }
}

} // namespace

int main(int argc, char **argv)
{
    add_all<Kor>("KorTools");
    add_all<Variants>("std::variant");
    add_all<QtMap>("QVariantMap");
    add_all<FlexBuffers>("FlexBuffers");
    add("store", "memcpy", copy_bytes);
    add("load", "memcpy", copy_bytes);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
