// SPDX-License-Identifier: MIT
// What the archive's benchmark writes and reads, and how each library does it. A library has a type
// for its data (Library) and one for where they go (Medium).
#pragma once

#include "kortools/archive/archive.h"
#include "kortools/archive/file.h"
#include "kortools/archive/mem_file.h"

#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QHash>
#include <QString>
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

namespace archive_bench {

constexpr int int_count = 10'000'000;
constexpr int string_count = 1'000'000;
constexpr int object_count = 1'000'000;

inline std::string const &get_disk_path()
{
    static std::string const path
        = (std::filesystem::temp_directory_path() / "kortools-archive-bench.bin").string();
    return path;
}

// --- the data. A node refers to two earlier ones, so no library recurses deeply.

inline std::vector<int> const &get_ints()
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

inline std::vector<std::wstring> const &get_texts()
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
inline Link link_of(int node)
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

} // namespace archive_bench

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
namespace archive_bench {

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

} // namespace archive_bench
