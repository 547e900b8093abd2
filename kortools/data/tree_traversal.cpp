// SPDX-License-Identifier: MIT
#include "kortools/data/tree.h"

namespace {

using Callback = TreeTraversalCallback;

bool enter(CTreeNode &node, Callback &callback)
{
    return callback.Visit(&node, node.GetChild() ? Callback::enterParent : Callback::enterLeaf);
}

// Remembers the node it looks for when it is visited, and ends the walk there.
class Search : public Callback {
public:
    Search(CTree *tree, CTreeNode const *wanted, bool by_value)
        : Callback(tree)
        , m_wanted(wanted)
        , m_by_value(by_value)
    {
    }
    bool Visit(CTreeNode *node, int) override
    {
        if (node != m_wanted && !(m_by_value && *node == *m_wanted))
            return true;
        SetFind(node);
        return false;
    }

private:
    CTreeNode const *m_wanted;
    bool m_by_value;
};

} // namespace

TreeTraversalCallback::~TreeTraversalCallback() = default;

bool CTree::NodeExist(TreeTraversalMode mode, CTreeNode *start, CTreeNode const *node, bool byValue)
{
    if (!node)
        return false;
    Search search(this, node, byValue);
    DoTraversal(start, mode, &search);
    return search.GetFind() != nullptr;
}

bool CTree::DoTraversal(CTreeNode *start, TreeTraversalMode mode, Callback *callback)
{
    CTreeNode &from = Start(start);
    if (!callback)
        return true;
    switch (mode) {
    case TreeTraversalMode::descendants:
        return Walk(from, *callback);
    case TreeTraversalMode::branch:
        return enter(from, *callback) && Walk(from, *callback);
    case TreeTraversalMode::children:
        for (CTreeNode *child = from.GetChild(); child; child = child->GetRight()) {
            if (!enter(*child, *callback))
                return false;
        }
        return true;
    case TreeTraversalMode::wrapAround:
        return WalkAround(from, *callback);
    }
    return true;
}

bool CTree::Walk(CTreeNode &start, Callback &callback)
{
    CTreeNode *node = start.GetChild();
    while (node) {
        if (!enter(*node, callback))
            return false;
        if (node->GetChild()) {
            node = node->GetChild();
            continue;
        }
        while (!node->GetRight()) {
            node = node->GetParent();
            if (node == &start)
                return true;
            if (!callback.Visit(node, Callback::climbBack))
                return false;
        }
        node = node->GetRight();
    }
    return true;
}

bool CTree::WalkAround(CTreeNode &start, Callback &callback)
{
    CTreeNode *node = &start;
    for (;;) {
        CTreeNode *next = node->GetChild();
        while (!next && !(next = node->GetRight())) {
            node = node->GetParent();
            if (!node || (node == &m_root && &start == &m_root))
                return true;
            if (node == &m_root)
                next = m_root.GetChild();
            else if (!callback.Visit(node, Callback::climbBack))
                return false;
        }
        if (next == &start)
            return true;
        node = next;
        if (!enter(*node, callback))
            return false;
    }
}
