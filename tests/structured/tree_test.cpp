// SPDX-License-Identifier: MIT
#include "tests/structured/tree_support.h"

#include <iterator>

using kor_test::agrees;
using kor_test::number_of;
using kor_test::TreeModel;
using kor_test::TreePair;

namespace {

void change_at_random(TreePair &pair)
{
    TreeModel &model = pair.model;
    int const a = pair.pick();
    int const b = pair.pick();
    bool const at_end = pair.one_of(2) == 0;
    switch (pair.one_of(8)) {
    case 0: { // move
        bool const allowed = a != 0 && !model.has_below(a, b);
        ASSERT_EQ(pair.tree.MoveNode(pair.node(b), pair.node(a), at_end), allowed);
        if (allowed) {
            model.remove(a);
            model.insert(b, at_end ? static_cast<int>(model.below(b).size()) : 0, a);
        }
        break;
    }
    case 1: { // move behind
        int const after = b != 0 || model.below(0).empty() ? b : model.below(0).front();
        bool const allowed = a != 0 && !model.has_below(a, after);
        ASSERT_EQ(pair.tree.MoveRight(pair.node(b), pair.node(a)), allowed);
        if (allowed) {
            model.remove(a);
            model.insert(model.parent_of(after), model.index_of(after) + 1, a);
        }
        break;
    }
    case 2: { // take out, with the branch, and put back
        if (a == 0)
            break;
        int const index = model.index_of(a);
        int const left = index > 0 ? model.siblings(a)[static_cast<std::size_t>(index - 1)] : -1;
        CTreeNode *const parent = pair.node(a)->GetParent();
        CTreeNode *const before = pair.tree.RemoveNode(pair.node(a));
        ASSERT_EQ(before, left > 0 ? pair.node(left) : parent);
        ASSERT_TRUE(!pair.node(a)->GetParent() && !pair.node(a)->GetRight());
        model.remove(a);
        ASSERT_TRUE(agrees(pair.node(a), model, a));
        model.insert(0, 0, a);
        ASSERT_TRUE(pair.tree.AddChild(nullptr, pair.node(a), false));
        break;
    }
    case 3: // delete
        ASSERT_EQ(pair.tree.DeleteNode(pair.node(a)), a != 0);
        if (a != 0)
            model.remove(a);
        break;
    case 4: { // replace by a new node
        int const fresh = model.add(0, true);
        pair.nodes.push_back(new NumberNode(fresh));
        bool const moves = pair.one_of(2) == 0;
        if (!pair.tree.ReplaceNode(pair.node(a), pair.nodes.back(), moves)) {
            ASSERT_EQ(a, 0);
            pair.tree.AddChild(nullptr, pair.nodes.back(), true);
            break;
        }
        model.remove(fresh);
        model.insert(model.parent_of(a), model.index_of(a) + 1, fresh);
        model.remove(a);
        for (int const child : std::vector<int>(moves ? model.below(a) : std::vector<int>())) {
            model.remove(child);
            model.insert(fresh, static_cast<int>(model.below(fresh).size()), child);
        }
        pair.tree.DeleteNode(pair.node(a));
        break;
    }
    default:
        pair.add(a, at_end);
    }
}

TEST(Tree, AgreesWithAModelUnderRandomChanges)
{
    int const before = NumberNode::s_alive;
    for (unsigned seed = 1; seed <= 20; ++seed) {
        TreePair pair(seed);
        for (int step = 0; step < 400; ++step) {
            change_at_random(pair);
            ASSERT_TRUE(agrees(pair.tree.GetRoot(), pair.model, 0)) << seed << ", step " << step;
        }
        ASSERT_EQ(NumberNode::s_alive - before, pair.tree.GetChildNbr(nullptr, false));
    }
    EXPECT_EQ(NumberNode::s_alive, before);
}

class Recorder : public TreeTraversalCallback {
public:
    explicit Recorder(std::size_t most)
        : m_most(most)
    {
    }
    bool Visit(CTreeNode *node, int code) override
    {
        m_events.emplace_back(std::max(0, number_of(node)), code); // the root has no number
        return m_events.size() < m_most;
    }
    std::size_t m_most;
    TreeModel::Events m_events;
};

TEST(Tree, TraversalsVisitWhatTheModelSays)
{
    for (unsigned seed = 1; seed <= 30; ++seed) {
        TreePair pair(seed, static_cast<int>(seed) - 1);
        std::vector<int> starts = pair.model.numbers(0);
        starts.push_back(0);
        for (int const start : starts) {
            for (int number = 1; number <= 4; ++number) {
                auto const mode = static_cast<TreeTraversalMode>(number);
                auto expected = pair.model.traverse(start, number);
                Recorder all(~std::size_t { 0 });
                ASSERT_TRUE(pair.tree.DoTraversal(pair.node(start), mode, &all));
                ASSERT_EQ(all.m_events, expected) << "mode " << number << " from " << start;
                for (int const wanted : starts) {
                    bool const found = std::ranges::any_of(
                        expected, [=](auto const &event) { return event.first == wanted; });
                    ASSERT_EQ(pair.tree.NodeExist(mode, pair.node(start),
                                  wanted == 0 ? pair.tree.GetRoot() : pair.node(wanted)),
                        found);
                }
                if (expected.empty())
                    continue;
                expected.resize(1 + pair.random() % expected.size());
                Recorder part(expected.size());
                ASSERT_FALSE(pair.tree.DoTraversal(pair.node(start), mode, &part));
                ASSERT_EQ(part.m_events, expected);
            }
        }
    }
}

TEST(Tree, QueriesAgreeWithTheModel)
{
    TreePair pair(5, 40);
    TreeModel const &model = pair.model;
    for (int a = 0; a <= 40; ++a) {
        std::vector<int> numbers;
        CTreeNode *const stop = a == 0 ? pair.tree.GetRoot() : pair.node(a);
        for (CTreeNode *node = stop->GetChild(); node; node = pair.tree.GetNextNode(node, stop))
            numbers.push_back(number_of(node));
        ASSERT_EQ(numbers, model.numbers(a));
        ASSERT_EQ(pair.tree.GetChildNbr(pair.node(a), false), std::ssize(numbers));
        ASSERT_EQ(pair.tree.GetChildNbr(pair.node(a), true), std::ssize(model.below(a)));
        ASSERT_EQ(number_of(pair.tree.GetFirstNode(pair.node(a))),
            numbers.empty() ? -1 : numbers.front());
        int depth = 0;
        for (int up = a; up != 0; up = model.parent_of(up))
            ++depth;
        ASSERT_EQ(CTree::GetDepth(pair.node(a)), depth);
        for (int b = 1; a != 0 && b <= 40; ++b) {
            bool const common = model.has_below(model.parent_of(a), model.parent_of(b));
            ASSERT_EQ(CTree::HasCommonParent(pair.node(a), pair.node(b)),
                common ? pair.node(a)->GetParent() : nullptr);
        }
    }
}

//  1 - 2, 3 - 4;  5
TEST(Tree, TheNextNodeStopsAtTheBoundOnlyWhereItWouldReturnItOrClimbsToIt)
{
    TreePair pair(1);
    for (int const above : { 0, 1, 1, 3, 0 })
        pair.add(above, true);
    constexpr int cases[][3] = { { 1, 1, 2 }, { 2, 2, 3 }, // node, bound, next: child and sibling
        { 4, 4, -1 }, { 1, 2, -1 }, { 2, 3, -1 }, { 4, 5, -1 }, // it would be the bound
        { 4, 3, -1 }, { 4, 2, -1 },                             // climbs to it, to its parent
        { 4, 0, 5 }, { 5, 0, -1 }, { 5, 1, -1 } };
    for (auto const &[node, bound, next] : cases)
        EXPECT_EQ(number_of(pair.tree.GetNextNode(pair.node(node), pair.node(bound))), next)
            << node << ' ' << bound;
    EXPECT_EQ(number_of(pair.tree.GetNextNode(nullptr)), 1);
}

TEST(Tree, CopiesAreWholeOrNothing)
{
    TreePair pair(9, 60);
    CTree copy;
    ASSERT_TRUE(copy.CopyChilds(nullptr, pair.tree.GetRoot()));
    int const alive = NumberNode::s_alive;
    EXPECT_FALSE(copy.CopyChilds(nullptr, pair.tree.GetRoot(), 60)); // node 60 refuses
    EXPECT_EQ(CTree::CopyBranch(pair.node(60), 60), nullptr);
    EXPECT_EQ(CTree::CopyBranch(nullptr), nullptr);
    EXPECT_EQ(NumberNode::s_alive, alive);
    EXPECT_TRUE(agrees(copy.GetRoot(), pair.model, 0));
    ASSERT_TRUE(copy.CopyChilds(copy.GetFirstNode(), copy.GetRoot())); // into its own branch
    EXPECT_EQ(copy.GetChildNbr(nullptr, false), 120);
    // A class that does not say how is copied as a new object with the same flags.
    CTreeNode plain;
    plain.SetFlag(TreeNodeFlag { 6 }, true);
    plain.SetFlag(TreeNodeFlag { 2 }, false);
    CTreeNode *const plain_copy = CTree::CopyNode(&plain);
    EXPECT_TRUE(plain_copy->GetFlags() == 4 && *plain_copy == plain);
    plain_copy->DeleteNode();
}

TEST(Tree, DeletedNodesCanBeCollected)
{
    TreePair pair(3, 50);
    TreeModel &model = pair.model;
    int const top = model.below(0).front();
    std::vector<int> expected { top };
    std::ranges::copy(model.numbers(top), std::back_inserter(expected));
    CXArray<CTreeNode *> deleted;
    ASSERT_TRUE(pair.tree.DeleteNode(pair.node(top), &deleted));
    model.remove(top);
    EXPECT_TRUE(agrees(pair.node(top), model, top));
    std::ranges::copy(model.numbers(0), std::back_inserter(expected));
    pair.tree.DeleteAll(true, &deleted);
    EXPECT_TRUE(pair.tree.IsEmpty());
    std::vector<int> found;
    for (CTreeNode *const node : deleted) {
        found.push_back(number_of(node));
        node->DeleteNode();
    }
    EXPECT_EQ(found, expected);
    NumberNode kept(1);
    pair.tree.AddChild(nullptr, &kept, true);
    pair.tree.DeleteAll(false);
    EXPECT_TRUE(pair.tree.IsEmpty() && !kept.GetParent());
}

int compare_by_tens(void *user, void const *a, void const *b)
{
    ++*static_cast<int *>(user);
    return number_of(*static_cast<CTreeNode *const *>(a)) / 10
        - number_of(*static_cast<CTreeNode *const *>(b)) / 10;
}

TEST(Tree, SortingKeepsTheOrderOfEqualNodes)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        TreePair pair(seed, static_cast<int>(seed) * 10);
        auto const sort_model = [&](int number) {
            std::ranges::stable_sort(pair.model.children[static_cast<std::size_t>(number)], {},
                [](int each) { return each / 10; });
        };
        int calls = 0;
        pair.tree.Sort(nullptr, compare_by_tens, &calls, false);
        sort_model(0);
        ASSERT_TRUE(agrees(pair.tree.GetRoot(), pair.model, 0));
        int const top = pair.model.below(0).front();
        pair.tree.Sort(pair.node(top), compare_by_tens, &calls, true);
        sort_model(top);
        for (int const number : pair.model.numbers(top))
            sort_model(number);
        ASSERT_TRUE(agrees(pair.tree.GetRoot(), pair.model, 0));
    }
}

TEST(Tree, ACallbackThatContradictsItselfOrThrowsLosesNoNode)
{
    TreePair pair(2);
    for (int i = 0; i < 200; ++i)
        pair.add(0, true);
    auto const throwing = [](void *user, void const *, void const *) {
        return --*static_cast<int *>(user) == 0 ? throw 1 : 1;
    };
    int calls = 100;
    EXPECT_THROW(pair.tree.Sort(nullptr, throwing, &calls, true), int);
    EXPECT_TRUE(agrees(pair.tree.GetRoot(), pair.model, 0));
    auto const random = [](void *user, void const *, void const *) {
        return static_cast<int>((*static_cast<std::mt19937 *>(user))() % 3) - 1;
    };
    pair.tree.Sort(nullptr, random, &pair.random, true);
    EXPECT_EQ(pair.tree.GetChildNbr(nullptr, true), 200);
}

TEST(Tree, WhatWouldMoveTheRootOrMakeACircleChangesNothing)
{
    TreePair pair(1);
    pair.add(0, true);
    pair.add(1, true);
    CTree &tree = pair.tree;
    EXPECT_FALSE(tree.AddChild(pair.node(2), pair.node(1), true));
    EXPECT_FALSE(tree.AddChild(nullptr, tree.GetRoot(), true));
    EXPECT_FALSE(tree.AddChild(nullptr, nullptr, true));
    EXPECT_FALSE(tree.MoveRight(tree.GetRoot(), pair.node(2)));
    EXPECT_FALSE(tree.ReplaceNode(pair.node(1), pair.node(2)));
    EXPECT_FALSE(tree.ReplaceNode(tree.GetRoot(), pair.node(2)));
    EXPECT_TRUE(!tree.DeleteNode(tree.GetRoot()) && !CTree::RemoveNode(tree.GetRoot()));
    EXPECT_TRUE(agrees(tree.GetRoot(), pair.model, 0));
}

} // namespace
