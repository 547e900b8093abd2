// SPDX-License-Identifier: MIT
// The archive beside boost.serialization (binary), cereal (binary), QDataStream and, as the limit,
// memcpy: ten million integers, a million strings, a graph of a million objects, to and from memory
// and disk. The peers use the types that come natural to them (std::wstring, QString, shared_ptr;
// QDataStream, which knows no references, a table of indices). Everything read is checked. Disk
// rows write to the system's cache, as an application does.
#include "bench/archive/archive_libraries.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <type_traits>
#include <vector>

using namespace archive_bench;

KOR_IMPLEMENT_CLASS(BenchNode, CXObject, 1)

namespace {

// --- the rows

// Writes `data` in the timed loop.
template <class Library, class Medium> void time_writing(benchmark::State &state, auto const &data)
{
    for (auto _ : state) {
        Medium medium;
        medium.write([&](auto &archive) { Library::put(archive, data); });
        benchmark::DoNotOptimize(medium);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
}

// Reads what was written before the loop; done(loaded) checks and releases it.
template <class Library, class Medium>
void time_reading(benchmark::State &state, auto const &data, auto const &done)
{
    Medium medium;
    medium.write([&](auto &archive) { Library::put(archive, data); });
    for (auto _ : state) {
        state.PauseTiming();
        std::remove_cvref_t<decltype(data)> loaded(data.size()); // zeroed: its pages are there
        state.ResumeTiming();
        medium.read([&](auto &archive) { Library::get(archive, loaded); });
        state.PauseTiming();
        if (!done(loaded))
            state.SkipWithError("read something else");
        loaded = {};
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
}

template <class Library, class Medium> void BM_WriteInts(benchmark::State &state)
{
    time_writing<Library, Medium>(state, get_ints());
}

template <class Library, class Medium> void BM_ReadInts(benchmark::State &state)
{
    time_reading<Library, Medium>(
        state, get_ints(), [](auto const &loaded) { return loaded == get_ints(); });
}

template <class Library> std::vector<typename Library::String> const &get_strings()
{
    static std::vector<typename Library::String> const strings = [] {
        std::vector<typename Library::String> values;
        for (auto const &text : get_texts())
            values.push_back(Library::make_string(text));
        return values;
    }();
    return strings;
}

template <class Library, class Medium> void BM_WriteStrings(benchmark::State &state)
{
    time_writing<Library, Medium>(state, get_strings<Library>());
}

template <class Library, class Medium> void BM_ReadStrings(benchmark::State &state)
{
    time_reading<Library, Medium>(state, get_strings<Library>(),
        [](auto const &loaded) { return loaded == get_strings<Library>(); });
}

template <class Library, class Medium> void BM_WriteGraph(benchmark::State &state)
{
    auto nodes = make_nodes<typename Library::Pointer>(Library::make_node);
    time_writing<Library, Medium>(state, nodes);
    Library::free_nodes(nodes);
}

template <class Library, class Medium> void BM_ReadGraph(benchmark::State &state)
{
    auto nodes = make_nodes<typename Library::Pointer>(Library::make_node);
    time_reading<Library, Medium>(state, nodes, [](auto &loaded) {
        bool const right = is_right(loaded);
        Library::free_nodes(loaded);
        return right;
    });
    Library::free_nodes(nodes);
}

// Rows are named after what is done and where, then after who does it.
template <class Library, class Medium>
void add_rows(std::string const &where, std::string const &library)
{
    auto const add = [&](char const *what, void (*run)(benchmark::State &)) {
        benchmark::RegisterBenchmark(("BM_" + (what + where) + "_" + library).c_str(), run)
            ->Unit(benchmark::kMillisecond);
    };
    add("WriteInts", BM_WriteInts<Library, Medium>);
    add("ReadInts", BM_ReadInts<Library, Medium>);
    if constexpr (requires { typename Library::String; }) {
        add("WriteStrings", BM_WriteStrings<Library, Medium>);
        add("ReadStrings", BM_ReadStrings<Library, Medium>);
        add("WriteGraph", BM_WriteGraph<Library, Medium>);
        add("ReadGraph", BM_ReadGraph<Library, Medium>);
    }
}

} // namespace

int main(int argc, char **argv)
{
    add_rows<KorLibrary, KorMemory>("Memory", "CXArchive");
    add_rows<KorBulkLibrary, KorMemory>("Memory", "CXArchiveBulk");
    add_rows<BoostLibrary, BoostMemory>("Memory", "Boost");
    add_rows<CerealLibrary, CerealMemory>("Memory", "Cereal");
    add_rows<QtLibrary, QtMemory>("Memory", "QDataStream");
    add_rows<RawLibrary, RawMemory>("Memory", "Memcpy");
    add_rows<KorLibrary, KorDisk>("Disk", "CXArchive");
    add_rows<KorBulkLibrary, KorDisk>("Disk", "CXArchiveBulk");
    add_rows<BoostLibrary, BoostDisk>("Disk", "Boost");
    add_rows<CerealLibrary, CerealDisk>("Disk", "Cereal");
    add_rows<QtLibrary, QtDisk>("Disk", "QDataStream");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::error_code ignored;
    std::filesystem::remove(get_disk_path(), ignored);
}
