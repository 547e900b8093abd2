// SPDX-License-Identifier: MIT
// The tree's format, against an encoder that is independent of the library; damaged and deep trees.
#include "tests/archive/archive_encoder.h"
#include "tests/archive/archive_support.h"
#include "tests/structured/tree_support.h"

using kor_test::agrees;
using kor_test::ArchiveEncoder;
using kor_test::load_bytes;
using kor_test::number_of;
using kor_test::store_bytes;
using kor_test::TreeModel;
using kor_test::TreePair;

class TransientNode : public CTreeNode {
    KOR_DECLARE_CLASS(TransientNode)
};
KOR_IMPLEMENT_CLASS(TransientNode, CTreeNode, 2 | CXRuntimeClass::not_serializable)

class AbstractNode : public CTreeNode {
    KOR_DECLARE_CLASS(AbstractNode)
};
KOR_IMPLEMENT_ABSTRACT_CLASS(AbstractNode, CTreeNode, 2)

class NoNode : public CXObject {
    KOR_DECLARE_CLASS(NoNode)
};
KOR_IMPLEMENT_CLASS(NoNode, CXObject, 2)

namespace {

std::string store(CTree &tree)
{
    return store_bytes([&](CXArchive &archive) { tree.Serialize(archive); });
}

void encode_children(ArchiveEncoder &bytes, TreeModel const &model, int parent, bool &first)
{
    bytes.u32(model.below(parent).empty() ? 2 : 1);
    for (int const number : model.below(parent)) {
        bytes.u32(3);
        std::exchange(first, false) ? bytes.new_class("NumberNode", 1) : bytes.old_class(2);
        bytes.u32(3).u32(static_cast<unsigned>(number) * 16).u32(static_cast<unsigned>(number));
        encode_children(bytes, model, number, first);
    }
    if (!model.below(parent).empty())
        bytes.u32(0);
}

TEST(TreeArchive, BytesAreThoseOfTheFormatAndReadBack)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        TreePair pair(seed, static_cast<int>(seed) * 2 - 2);
        for (int number = 1; number < std::ssize(pair.nodes); ++number)
            pair.node(number)->SetFlag(static_cast<TreeNodeFlag>(number * 16), true);
        ArchiveEncoder expected;
        expected.new_class("CTree", 2).u32(4);
        bool first = true;
        encode_children(expected, pair.model, 0, first);
        expected.u32(0);
        XSetThreadException(new CXUserException);
        ASSERT_EQ(store(pair.tree), expected.bytes()) << "seed " << seed;
        ASSERT_EQ(XGetThreadException(), nullptr);

        load_bytes(expected.bytes(), [&](CXArchive &archive) {
            CTree loaded;
            loaded.AddChild(nullptr, new NumberNode(1000), true); // makes way
            loaded.Serialize(archive);
            ASSERT_TRUE(agrees(loaded.GetRoot(), pair.model, 0));
            ASSERT_EQ(store(loaded), expected.bytes()); // the flags, too
        });
    }
}

// The example of docs/tree-format.md.
TEST(TreeArchive, TheExampleOfTheDocumentIsTrue)
{
    char const example[] = "\xFF\xFF\x02\0\x05\0CTree\x04\0\0\0\x01\0\0\0"
                           "\x03\0\0\0\xFF\xFF\x02\0\x09\0CTreeNode\x03\0\0\0\x10\0\0\0\x01\0\0\0"
                           "\x03\0\0\0\x02\x80\x03\0\0\0\0\0\0\0\x02\0\0\0"
                           "\0\0\0\0"
                           "\x03\0\0\0\x02\x80\x03\0\0\0\x01\0\0\0\x02\0\0\0"
                           "\0\0\0\0\0\0\0\0";
    CTree tree;
    auto *const first = new CTreeNode;
    auto *const second = new CTreeNode;
    first->SetFlag(TreeNodeFlag { 0x10 }, true);
    second->SetFlag(TreeNodeFlag { 1 }, true);
    tree.AddChild(nullptr, first, true);
    tree.AddChild(first, new CTreeNode, true);
    tree.AddChild(nullptr, second, true);
    EXPECT_EQ(store(tree), std::string(example, sizeof example - 1));
}

// A tree of one node: class record, what the node itself holds, the rest.
std::string one_node(std::string_view name, unsigned schema, ArchiveEncoder const &body)
{
    ArchiveEncoder bytes;
    bytes.new_class("CTree", 2).u32(4).u32(1).u32(3).new_class(name, schema);
    return bytes.raw(body.bytes()).u32(2).u32(0).u32(0).bytes();
}

TEST(TreeArchive, NodesOfOlderVersionsAreRead)
{
    using Encoder = ArchiveEncoder;
    std::pair<unsigned, Encoder> const forms[] = { { 1, Encoder().u32(0x77) },
        { 3, Encoder().u32(1).u32(0x77) }, { 2, Encoder().u32(2).u32(0x77).u32(0x43555335).u32(0) },
        { 2, Encoder().u32(2).u32(0x77).u32(0x43555355).u32(16).u32(1).u32(4).u32(0).u32(8) } };
    for (auto const &[schema, body] : forms) {
        load_bytes(one_node("CTreeNode", schema, body), [&](CXArchive &archive) {
            CTree tree;
            tree.Serialize(archive);
            ASSERT_EQ(tree.GetChildNbr(nullptr, false), 1);
            EXPECT_EQ(tree.GetFirstNode()->GetFlags(), 0x77U);
            EXPECT_EQ(archive.GetBytesLeft(), 0U);
        });
    }
}

// Fails with an exception of the library, and leaves no node.
void expect_refusal(std::string_view bytes, int cause = CXArchiveException::none)
{
    int const before = NumberNode::s_alive;
    load_bytes(bytes, [&](CXArchive &archive) {
        CTree tree;
        tree.SetSilent(true);
        tree.AddChild(nullptr, new NumberNode, true);
        try {
            tree.Serialize(archive);
            ADD_FAILURE() << "accepted";
        } catch (CXArchiveException *exception) {
            if (cause != CXArchiveException::none) {
                EXPECT_EQ(exception->GetCause(), cause);
            }
            exception->Delete();
        } catch (CXFileException *exception) {
            EXPECT_EQ(cause, CXArchiveException::none);
            exception->Delete();
        }
        ASSERT_TRUE(tree.IsEmpty());
        ASSERT_EQ(NumberNode::s_alive, before);
        ASSERT_EQ(XGetThreadException(), nullptr);
    });
}

TEST(TreeArchive, DamagedTreesAreRefusedAndLeaveNothing)
{
    TreePair pair(4, 12);
    std::string const whole = store(pair.tree);
    for (std::size_t size = 0; size < whole.size(); ++size)
        expect_refusal(std::string_view(whole).substr(0, size), CXArchiveException::endOfFile);

    ArchiveEncoder const body = ArchiveEncoder().u32(3).u32(0);
    using E = CXArchiveException;
    expect_refusal(one_node("NoNode", 2, body), E::badClass);
    expect_refusal(one_node("AbstractNode", 2, body), E::badClass);
    expect_refusal(one_node("Unknown", 2, body), E::badClass);
    expect_refusal(one_node("CTree", 2, body), E::badClass);
    expect_refusal(one_node("TransientNode", 2, body), E::genericException);
    expect_refusal(one_node("CTreeNode", 2, ArchiveEncoder().u32(2).u32(0).u32(0x43555336)));
    expect_refusal(
        one_node("CTreeNode", 2, ArchiveEncoder().u32(2).u32(0).u32(0x43555335).u32(0x7FFFFFFF)));

    auto const head = [] { return ArchiveEncoder().new_class("CTree", 2); };
    for (unsigned const schema : { 1, 3 })
        expect_refusal(
            ArchiveEncoder().new_class("CTree", schema).u32(4).u32(2).u32(0).bytes(), E::badIndex);
    expect_refusal(ArchiveEncoder().new_class("CTreeNode", 2).u32(4).bytes(), E::badClass);
    for (ArchiveEncoder const &bytes : { head().u32(0).u32(0), head().u32(4).u32(0).u32(0),
             head().u32(4).u32(2).u32(4).u32(2).u32(0),
             head().u32(4).u32(1).u32(4).u32(2).u32(0).u32(0),
             head().u32(4).u32(2).u32(3).u16(0x8001),
             head().u32(4).u32(1).u32(3).u16(0), // a null object
             head().u32(4).u32(1).u32(7) })
        expect_refusal(bytes.bytes(), E::badIndex);
}

TEST(TreeArchive, AChainOfAMillionNodesIsNothingSpecial)
{
    constexpr int count = 1000000;
    CTree tree;
    CTreeNode *last = nullptr;
    for (int i = 0; i < count; ++i) {
        auto *const node = new NumberNode(i);
        tree.AddChild(last, node, i % 2 == 0);
        last = node;
    }
    EXPECT_EQ(CTree::GetDepth(last), count);
    EXPECT_EQ(tree.GetChildNbr(nullptr, false), count);
    EXPECT_TRUE(tree.NodeExist(TreeTraversalMode::wrapAround, last, tree.GetFirstNode()));
    tree.Sort(
        nullptr, [](void *, void const *, void const *) { return 0; }, nullptr, true);
    std::string const bytes = store(tree);
    tree.DeleteAll();
    EXPECT_EQ(NumberNode::s_alive, 0);
    CXMemFile file(reinterpret_cast<unsigned char const *>(bytes.data()), bytes.size());
    CXArchive in(&file, CXArchive::load);
    CTree loaded;
    loaded.Serialize(in);
    CTree copy;
    ASSERT_TRUE(copy.CopyChilds(nullptr, loaded.GetRoot()));
    loaded.DeleteAll();
    int number = 0;
    for (CTreeNode *node = copy.GetFirstNode(); node; node = copy.GetNextNode(node))
        ASSERT_EQ(number_of(node), number++);
    EXPECT_EQ(number, count);

    // Cut: the million is freed again.
    expect_refusal(std::string_view(bytes).substr(0, bytes.size() - 1));
}

} // namespace
