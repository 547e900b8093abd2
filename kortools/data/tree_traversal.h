// SPDX-License-Identifier: MIT
// How CTree::DoTraversal() walks, and what it calls.
#pragma once

#include "kortools/export.h"

class CTree;
class CTreeNode;

enum class TreeTraversalMode : unsigned int {
    descendants = 1, // of the start, in pre-order; the start itself is not visited
    branch = 2,      // the start and then its descendants; the start is not visited when left
    children = 3,    // of the start only
    wrapAround = 4   // all nodes but the root, from behind the start on and around to it
};

class KORTOOLS_API TreeTraversalCallback {
public:
    enum VisitCode : int {
        enterLeaf = 1,   // a node without children
        climbBack = 2,   // a node again, after its children
        enterParent = 3, // a node with children
    };

    explicit TreeTraversalCallback(CTree *tree = nullptr)
        : m_tree(tree)
    {
    }
    TreeTraversalCallback(TreeTraversalCallback const &) = default;
    TreeTraversalCallback &operator=(TreeTraversalCallback const &) = default;
    virtual ~TreeTraversalCallback();

    // False ends the walk. `code` is a VisitCode. May change the nodes' contents, but not the links
    // of the tree.
    virtual bool Visit(CTreeNode *node, int code) = 0;

    CTree *GetTree() const { return m_tree; }
    CTreeNode *GetFind() const { return m_find; } // what a search found, at first null
    void SetFind(CTreeNode *node) { m_find = node; }

private:
    CTree *m_tree;
    CTreeNode *m_find = nullptr;
};
