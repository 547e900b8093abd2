// SPDX-License-Identifier: MIT
// A tree of a million nodes beside one of vectors of unique_ptr: built from the top, walked and
// counted, stored and loaded; beside QStandardItem, too, which has no form of its own for storing a
// tree. The peers' recursion is as deep as their trees, which are flat enough for it here: each
// node has eight children.
#include "kortools/archive/mem_file.h"
#include "kortools/data/tree.h"

#include <QStandardItem>
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

class BenchNode : public CTreeNode {
    KOR_DECLARE_CLASS(BenchNode)
public:
    explicit BenchNode(int number = 0)
        : m_number(number)
    {
    }
    void Serialize(CXArchive &archive) override
    {
        CTreeNode::Serialize(archive);
        archive.IsStoring() ? archive << m_number : archive >> m_number;
    }
    int m_number;
};
KOR_IMPLEMENT_CLASS(BenchNode, CTreeNode, 2)

namespace {

constexpr int node_count = 1000000;
constexpr int width = 8;

struct KorTree {
    CTree tree;

    void build()
    {
        std::vector<CTreeNode *> nodes { nullptr };
        for (int i = 1; i <= node_count; ++i) {
            nodes.push_back(new BenchNode(i));
            tree.AddChild(nodes[static_cast<std::size_t>((i - 1) / width)], nodes.back(), true);
        }
    }
    long long sum()
    {
        long long result = 0;
        for (CTreeNode *node = tree.GetFirstNode(); node; node = tree.GetNextNode(node))
            result += static_cast<BenchNode *>(node)->m_number;
        return result;
    }
    int count() { return tree.GetChildNbr(nullptr, false); }
    void store(CXMemFile &file)
    {
        CXArchive archive(&file, CXArchive::store);
        tree.Serialize(archive);
        archive.Close();
    }
    void load(CXMemFile &file)
    {
        file.Seek(0, CXFile::begin);
        CXArchive archive(&file, CXArchive::load);
        tree.Serialize(archive);
    }
};

struct VectorTree {
    struct Node {
        int number = 0;
        unsigned flags = 0;
        std::vector<std::unique_ptr<Node>> children;
    };
    Node root;

    void build()
    {
        std::vector<Node *> nodes { &root };
        for (int i = 1; i <= node_count; ++i) {
            auto node = std::make_unique<Node>();
            node->number = i;
            nodes.push_back(node.get());
            nodes[static_cast<std::size_t>((i - 1) / width)]->children.push_back(std::move(node));
        }
    }
    static long long sum_below(Node const &node)
    {
        long long result = node.number;
        for (auto const &child : node.children)
            result += sum_below(*child);
        return result;
    }
    static int count_below(Node const &node)
    {
        int result = 0;
        for (auto const &child : node.children)
            result += 1 + count_below(*child);
        return result;
    }
    long long sum() { return sum_below(root); }
    int count() { return count_below(root); }

    static void store_node(CXArchive &archive, Node const &node)
    {
        archive << node.number << node.flags << static_cast<unsigned>(node.children.size());
        for (auto const &child : node.children)
            store_node(archive, *child);
    }
    static void load_node(CXArchive &archive, Node &node)
    {
        unsigned count;
        archive >> node.number >> node.flags >> count;
        node.children.clear();
        for (unsigned i = 0; i < count; ++i)
            load_node(archive, *node.children.emplace_back(std::make_unique<Node>()));
    }
    void store(CXMemFile &file)
    {
        CXArchive archive(&file, CXArchive::store);
        store_node(archive, root);
        archive.Close();
    }
    void load(CXMemFile &file)
    {
        file.Seek(0, CXFile::begin);
        CXArchive archive(&file, CXArchive::load);
        load_node(archive, root);
    }
};

struct QtTree {
    struct Item : QStandardItem {
        int number = 0;
    };
    Item root;

    void build()
    {
        std::vector<Item *> items { &root };
        for (int i = 1; i <= node_count; ++i) {
            items.push_back(new Item);
            items.back()->number = i;
            items[static_cast<std::size_t>((i - 1) / width)]->appendRow(items.back());
        }
    }
    static long long sum_below(QStandardItem const *item)
    {
        long long result = static_cast<Item const *>(item)->number;
        for (int row = 0; row < item->rowCount(); ++row)
            result += sum_below(item->child(row));
        return result;
    }
    static int count_below(QStandardItem const *item)
    {
        int result = item->rowCount();
        for (int row = 0; row < item->rowCount(); ++row)
            result += count_below(item->child(row));
        return result;
    }
    long long sum() { return sum_below(&root); }
    int count() { return count_below(&root); }
};

constexpr long long expected_sum = static_cast<long long>(node_count) * (node_count + 1) / 2;

void finish(benchmark::State &state, bool right)
{
    state.SetItemsProcessed(state.iterations() * node_count);
    if (!right)
        state.SkipWithError("wrong result");
}

// With the freeing of the nodes.
template <class Tree> void BM_Build(benchmark::State &state)
{
    bool right = true;
    for (auto _ : state) {
        Tree tree;
        tree.build();
        right = right && tree.count() == node_count;
    }
    finish(state, right);
}

template <class Tree> void BM_Walk(benchmark::State &state)
{
    Tree tree;
    tree.build();
    bool right = true;
    for (auto _ : state)
        right = right && tree.sum() == expected_sum;
    finish(state, right);
}

template <class Tree> void BM_Count(benchmark::State &state)
{
    Tree tree;
    tree.build();
    bool right = true;
    for (auto _ : state)
        right = right && tree.count() == node_count;
    finish(state, right);
}

template <class Tree> void BM_Save(benchmark::State &state)
{
    Tree tree;
    tree.build();
    for (auto _ : state) {
        CXMemFile file(1 << 20);
        tree.store(file);
        benchmark::DoNotOptimize(file.GetBuffer());
    }
    finish(state, true);
}

template <class Tree> void BM_Load(benchmark::State &state)
{
    Tree tree;
    tree.build();
    CXMemFile file(1 << 20);
    tree.store(file);
    for (auto _ : state) {
        Tree loaded;
        loaded.load(file);
        benchmark::DoNotOptimize(&loaded);
    }
    Tree loaded;
    loaded.load(file);
    finish(state, loaded.sum() == expected_sum);
}

BENCHMARK(BM_Build<KorTree>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Build<VectorTree>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Build<QtTree>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Walk<KorTree>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Walk<VectorTree>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Walk<QtTree>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Count<KorTree>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Count<VectorTree>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Count<QtTree>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Save<KorTree>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Save<VectorTree>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Load<KorTree>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Load<VectorTree>)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
