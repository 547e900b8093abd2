// SPDX-License-Identifier: MIT
// The archive beside boost.serialization (binary), cereal (binary), QDataStream and, as the limit,
// memcpy: ten million integers, a million strings, a graph of a million objects, to and from memory
// and disk. The peers use the types that come natural to them (std::wstring, QString, shared_ptr;
// QDataStream, which knows no references, a table of indices). Everything read is checked. Disk
// rows write to the system's cache, as an application does.
#include "kortools/archive/archive.h"
#include "kortools/archive/file.h"
#include "kortools/archive/mem_file.h"

#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QHash>
#include <QString>
#include <benchmark/benchmark.h>
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/serialization/string.hpp>
#include <cereal/archives/binary.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/string.hpp>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr int int_count = 10'000'000;
constexpr int string_count = 1'000'000;
constexpr int object_count = 1'000'000;

std::string const &get_disk_path()
{
    static std::string const path
        = (std::filesystem::temp_directory_path() / "kortools-archive-bench.bin").string();
    return path;
}

// --- the data. A node refers to two earlier ones, so no library recurses deeply.

std::vector<int> const &get_ints()
{
    static std::vector<int> const ints = [] {
        std::mt19937 random(1);
        std::vector<int> values(int_count);
        for (int &value : values)
            value = static_cast<int>(random());
        return values;
    }();
    return ints;
}

std::vector<std::wstring> const &get_texts()
{
    static std::vector<std::wstring> const texts = [] {
        std::mt19937 random(2);
        std::vector<std::wstring> values(string_count);
        for (auto &value : values) {
            value.resize(4 + random() % 37);
            for (wchar_t &ch : value)
                ch = static_cast<wchar_t>(random() % 32 ? L'a' + random() % 26 : 0xE9);
        }
        return values;
    }();
    return texts;
}

struct Link {
    int m_first, m_second;
};
Link link_of(int node)
{
    return { node / 2, static_cast<int>(node * 7919LL % (node + 1)) };
}

template <class Pointer> using Nodes = std::vector<Pointer>;

template <class Pointer, class Make> Nodes<Pointer> make_nodes(Make const &make)
{
    Nodes<Pointer> nodes;
    for (int i = 0; i < object_count; ++i) {
        nodes.push_back(make());
        nodes.back()->m_id = i;
        nodes.back()->m_weight = i * 0.5;
        nodes.back()->m_first = nodes[static_cast<std::size_t>(link_of(i).m_first)];
        nodes.back()->m_second = nodes[static_cast<std::size_t>(link_of(i).m_second)];
    }
    return nodes;
}

template <class Pointer> bool is_right(Nodes<Pointer> const &nodes)
{
    for (int i = 0; i < object_count; i += 997) {
        auto const &node = *nodes[static_cast<std::size_t>(i)];
        if (node.m_id != i || node.m_first != nodes[static_cast<std::size_t>(link_of(i).m_first)]
            || node.m_second != nodes[static_cast<std::size_t>(link_of(i).m_second)])
            return false;
    }
    return true;
}

} // namespace

// --- the archive

class BenchNode : public CXObject {
    KOR_DECLARE_CLASS(BenchNode)
public:
    void Serialize(CXArchive &archive) override
    {
        if (archive.IsStoring())
            archive << m_id << m_weight << m_first << m_second;
        else
            archive >> m_id >> m_weight >> m_first >> m_second;
    }
    int m_id = 0;
    double m_weight = 0;
    BenchNode *m_first = nullptr;
    BenchNode *m_second = nullptr;
};
KOR_IMPLEMENT_CLASS(BenchNode, CXObject, 1)

namespace {

struct KorMemory {
    CXMemFile m_file;
    template <class Work> void write(Work const &work)
    {
        CXArchive archive(&m_file, CXArchive::store);
        work(archive);
        archive.Close();
    }
    template <class Work> void read(Work const &work)
    {
        m_file.Seek(0, CXFile::begin);
        CXArchive archive(&m_file, CXArchive::load);
        work(archive);
    }
};

struct KorDisk {
    std::wstring m_path = std::filesystem::path(get_disk_path()).wstring();
    template <class Work> void write(Work const &work)
    {
        CXFile file(m_path.c_str(), CXFile::modeCreate | CXFile::modeWrite);
        CXArchive archive(&file, CXArchive::store, 65536);
        work(archive);
        archive.Close();
    }
    template <class Work> void read(Work const &work)
    {
        CXFile file(m_path.c_str(), CXFile::modeRead);
        CXArchive archive(&file, CXArchive::load, 65536);
        work(archive);
    }
};

struct KorLibrary {
    using String = CXTString<wchar_t>;
    using Pointer = BenchNode *;
    static String make_string(std::wstring const &text) { return text.c_str(); }
    static Pointer make_node() { return new BenchNode; }
    static void free_nodes(Nodes<Pointer> &nodes)
    {
        for (Pointer const node : nodes)
            delete node;
    }
    static void put(CXArchive &archive, auto const &values)
    {
        for (auto const &value : values)
            archive << value;
    }
    static void get(CXArchive &archive, auto &values)
    {
        for (auto &value : values)
            archive >> value;
    }
};

// The same integers, through the functions for many values at once.
struct KorBulkLibrary {
    static void put(CXArchive &archive, std::vector<int> const &values)
    {
        archive.WriteValues(values.data(), values.size());
    }
    static void get(CXArchive &archive, std::vector<int> &values)
    {
        archive.ReadValues(values.data(), values.size());
    }
};

// --- boost and cereal

template <class Out, class In> struct StreamMemory {
    std::stringstream m_stream;
    template <class Work> void write(Work const &work)
    {
        Out archive(m_stream);
        work(archive);
    }
    template <class Work> void read(Work const &work)
    {
        m_stream.clear();
        m_stream.seekg(0);
        In archive(m_stream);
        work(archive);
    }
};

template <class Out, class In> struct StreamDisk {
    template <class Work> void write(Work const &work)
    {
        std::ofstream stream(get_disk_path(), std::ios::binary);
        Out archive(stream);
        work(archive);
    }
    template <class Work> void read(Work const &work)
    {
        std::ifstream stream(get_disk_path(), std::ios::binary);
        In archive(stream);
        work(archive);
    }
};

template <class Pointer_> struct PeerNode {
    int m_id = 0;
    double m_weight = 0;
    Pointer_ m_first {};
    Pointer_ m_second {};
};

struct BoostNode : PeerNode<BoostNode *> {
    void serialize(auto &archive, unsigned int) { archive &m_id &m_weight &m_first &m_second; }
};

struct BoostLibrary {
    using String = std::wstring;
    using Pointer = BoostNode *;
    static String const &make_string(std::wstring const &text) { return text; }
    static Pointer make_node() { return new BoostNode; }
    static void free_nodes(Nodes<Pointer> &nodes)
    {
        for (Pointer const node : nodes)
            delete node;
    }
    static void put(boost::archive::binary_oarchive &archive, auto const &values)
    {
        for (auto const &value : values)
            archive << value;
    }
    static void get(boost::archive::binary_iarchive &archive, auto &values)
    {
        for (auto &value : values)
            archive >> value;
    }
};
using BoostMemory = StreamMemory<boost::archive::binary_oarchive, boost::archive::binary_iarchive>;
using BoostDisk = StreamDisk<boost::archive::binary_oarchive, boost::archive::binary_iarchive>;

struct CerealNode : PeerNode<std::shared_ptr<CerealNode>> {
    void serialize(auto &archive) { archive(m_id, m_weight, m_first, m_second); }
};

struct CerealLibrary {
    using String = std::wstring;
    using Pointer = std::shared_ptr<CerealNode>;
    static String const &make_string(std::wstring const &text) { return text; }
    static Pointer make_node() { return std::make_shared<CerealNode>(); }
    static void free_nodes(Nodes<Pointer> &nodes)
    {
        for (auto const &node : nodes)
            node->m_first = node->m_second = nullptr;
    }
    static void put(cereal::BinaryOutputArchive &archive, auto const &values)
    {
        for (auto const &value : values)
            archive(value);
    }
    static void get(cereal::BinaryInputArchive &archive, auto &values)
    {
        for (auto &value : values)
            archive(value);
    }
};
using CerealMemory = StreamMemory<cereal::BinaryOutputArchive, cereal::BinaryInputArchive>;
using CerealDisk = StreamDisk<cereal::BinaryOutputArchive, cereal::BinaryInputArchive>;

// --- QDataStream

struct QtMemory {
    QByteArray m_bytes;
    template <class Work> void write(Work const &work)
    {
        QDataStream stream(&m_bytes, QIODevice::WriteOnly);
        stream.setByteOrder(QDataStream::LittleEndian);
        work(stream);
    }
    template <class Work> void read(Work const &work)
    {
        QDataStream stream(m_bytes);
        stream.setByteOrder(QDataStream::LittleEndian);
        work(stream);
    }
};

struct QtDisk {
    template <class Work> void write(Work const &work)
    {
        QFile file(QString::fromStdString(get_disk_path()));
        file.open(QIODevice::WriteOnly);
        QDataStream stream(&file);
        work(stream);
    }
    template <class Work> void read(Work const &work)
    {
        QFile file(QString::fromStdString(get_disk_path()));
        file.open(QIODevice::ReadOnly);
        QDataStream stream(&file);
        work(stream);
    }
};

struct QtNode : PeerNode<QtNode *> { };

struct QtLibrary {
    using String = QString;
    using Pointer = QtNode *;
    static String make_string(std::wstring const &text) { return QString::fromStdWString(text); }
    static Pointer make_node() { return new QtNode; }
    static void free_nodes(Nodes<Pointer> &nodes)
    {
        for (Pointer const node : nodes)
            delete node;
    }
    static void put(QDataStream &stream, auto const &values)
    {
        for (auto const &value : values)
            stream << value;
    }
    static void get(QDataStream &stream, auto &values)
    {
        for (auto &value : values)
            stream >> value;
    }
    static void put(QDataStream &stream, Nodes<Pointer> const &nodes)
    {
        QHash<QtNode const *, int> indices;
        for (QtNode const *const node : nodes) {
            indices.insert(node, static_cast<int>(indices.size()));
            stream << node->m_id << node->m_weight << indices[node->m_first]
                   << indices[node->m_second];
        }
    }
    static void get(QDataStream &stream, Nodes<Pointer> &nodes)
    {
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            int first, second;
            nodes[i] = new QtNode;
            stream >> nodes[i]->m_id >> nodes[i]->m_weight >> first >> second;
            nodes[i]->m_first = nodes[static_cast<std::size_t>(first)];
            nodes[i]->m_second = nodes[static_cast<std::size_t>(second)];
        }
    }
};

// --- memcpy

struct RawMemory {
    std::vector<int> m_copy;
    template <class Work> void write(Work const &work) { work(m_copy); }
    template <class Work> void read(Work const &work) { work(m_copy); }
};

struct RawLibrary {
    static void put(std::vector<int> &copy, std::vector<int> const &values) { copy = values; }
    static void get(std::vector<int> const &copy, std::vector<int> &values)
    {
        std::memcpy(values.data(), copy.data(), copy.size() * sizeof(int));
    }
};

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
