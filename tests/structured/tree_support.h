// SPDX-License-Identifier: MIT
// What the tests of the tree share: nodes that are counted, and a model of a tree made of vectors.
// For one source of a program only, because it registers classes.
#pragma once

#include "kortools/data/tree.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

class NumberNode : public CTreeNode {
    KOR_DECLARE_CLASS(NumberNode)
public:
    explicit NumberNode(int number = 0)
        : m_number(number)
    {
        ++s_alive;
    }
    NumberNode(NumberNode const &other)
        : CTreeNode(other)
        , m_number(other.m_number)
    {
        ++s_alive;
    }
    NumberNode &operator=(NumberNode const &) = default;
    ~NumberNode() override { --s_alive; }

    void Serialize(CXArchive &archive) override
    {
        CTreeNode::Serialize(archive);
        archive.IsStoring() ? archive << m_number : archive >> m_number;
    }
    CTreeNode *CopyFrom(unsigned int options) const override // fails at the number `options`
    {
        return options != 0 && m_number == static_cast<int>(options) ? nullptr
                                                                     : new NumberNode(*this);
    }
    bool operator==(CTreeNode const &other) const override
    {
        auto const *const node = dynamic_cast<NumberNode const *>(&other);
        return node && node->m_number == m_number;
    }

    int m_number;
    static inline int s_alive = 0;
};
KOR_IMPLEMENT_CLASS(NumberNode, CTreeNode, 1)

namespace kor_test {

inline int number_of(CTreeNode const *node)
{
    auto const *const number = dynamic_cast<NumberNode const *>(node);
    return number ? number->m_number : -1;
}

// Numbers by their parent's; 0 is the root.
struct TreeModel {
    std::vector<std::vector<int>> children { {} };
    std::vector<int> parent { -1 };

    std::vector<int> &siblings(int of)
    {
        return children[static_cast<std::size_t>(parent[static_cast<std::size_t>(of)])];
    }
    std::vector<int> const &below(int top) const { return children[static_cast<std::size_t>(top)]; }
    int parent_of(int number) const { return parent[static_cast<std::size_t>(number)]; }
    bool has_below(int top, int number) const
    {
        return number >= 0 && (number == top || has_below(top, parent_of(number)));
    }
    int index_of(int number)
    {
        auto const &row = siblings(number);
        return static_cast<int>(std::find(row.begin(), row.end(), number) - row.begin());
    }
    void insert(int above, int index, int number)
    {
        auto &row = children[static_cast<std::size_t>(above)];
        row.insert(row.begin() + index, number);
        parent[static_cast<std::size_t>(number)] = above;
    }
    int add(int above, bool at_end)
    {
        auto const number = static_cast<int>(children.size());
        children.emplace_back();
        parent.push_back(-1);
        insert(above, at_end ? static_cast<int>(below(above).size()) : 0, number);
        return number;
    }
    void remove(int number)
    {
        std::erase(siblings(number), number);
        parent[static_cast<std::size_t>(number)] = -1;
    }

    using Events = std::vector<std::pair<int, int>>;
    std::pair<int, int> entry(int number) const
    {
        return { number, below(number).empty() ? 1 : 3 };
    }
    void walk(int top, Events &events) const
    {
        for (int const child : below(top)) {
            events.push_back(entry(child));
            walk(child, events);
            if (!below(child).empty())
                events.emplace_back(child, 2);
        }
    }
    Events traverse(int start, int mode) const
    {
        Events events;
        if (mode == 3) {
            for (int const child : below(start))
                events.push_back(entry(child));
            return events;
        }
        if (mode == 2)
            events.push_back(entry(start));
        walk(mode == 4 ? 0 : start, events);
        if (mode == 4 && start != 0) {
            auto const found = std::find(events.begin(), events.end(), entry(start));
            std::rotate(events.begin(), found, events.end());
            events.erase(events.begin());
        }
        return events;
    }
    std::vector<int> numbers(int top) const // in pre-order
    {
        Events events;
        walk(top, events);
        std::vector<int> result;
        for (auto const &[number, code] : events) {
            if (code != 2)
                result.push_back(number);
        }
        return result;
    }
};

// All four links of all nodes below.
inline testing::AssertionResult agrees(CTreeNode const *node, TreeModel const &model, int number)
{
    CTreeNode const *left = nullptr;
    CTreeNode const *child = node->GetChild();
    for (int const expected : model.below(number)) {
        if (number_of(child) != expected || child->GetParent() != node || child->GetLeft() != left)
            return testing::AssertionFailure() << "at child " << expected << " of " << number;
        if (auto const below = agrees(child, model, expected); !below)
            return below;
        left = child;
        child = child->GetRight();
    }
    if (child)
        return testing::AssertionFailure() << "too many children of " << number;
    return testing::AssertionSuccess();
}

// A tree and its model; nodes[number] is the node, null when deleted.
struct TreePair {
    explicit TreePair(unsigned seed, int count = 0)
        : random(seed)
    {
        for (int i = 0; i < count; ++i)
            add(pick(), one_of(2) == 0);
    }
    int one_of(std::size_t count) { return static_cast<int>(random() % count); }
    int pick() // a number of the tree, or 0
    {
        std::vector<int> all = model.numbers(0);
        all.push_back(0);
        return all[random() % all.size()];
    }
    CTreeNode *node(int number) { return nodes[static_cast<std::size_t>(number)]; }
    void add(int above, bool at_end)
    {
        int const number = model.add(above, at_end);
        nodes.push_back(new NumberNode(number));
        EXPECT_TRUE(tree.AddChild(node(above), nodes.back(), at_end));
    }

    std::mt19937 random;
    CTree tree;
    TreeModel model;
    std::vector<CTreeNode *> nodes { nullptr }; // null stands for the root
};

} // namespace kor_test
