// SPDX-License-Identifier: MIT
// The links of CTreeNode: the only functions that change them. None checks its arguments, none
// allocates, and none needs a stack as deep as the tree.
#pragma once

#include "kortools/data/tree_node.h"

#include <memory>

namespace kortools::data {

struct TreeLinks {
    // `node` has no place; these give it one.
    static void link_first(CTreeNode &parent, CTreeNode &node);
    static void link_last(CTreeNode &parent, CTreeNode &node);
    static void link_after(CTreeNode &sibling, CTreeNode &node); // which has a parent

    static void unlink(CTreeNode &node);            // with its branch; nothing when it has no place
    static void unlink_children(CTreeNode &parent); // each one, from the others too

    // Moves all children behind those of `target`, which lies outside of their branches.
    static void move_children(CTreeNode &target, CTreeNode &source);

    // Children before their parents; each one has no links when its DeleteNode() is called.
    static void delete_branch(CTreeNode &top); // which has no place
    static void delete_children(CTreeNode &parent);

    // The next node of the branch in pre-order, null after the last.
    static CTreeNode *next_in_branch(CTreeNode const &top, CTreeNode &node);
};

// Owns a node that has no place in a tree yet, with its branch.
struct BranchDeleter {
    void operator()(CTreeNode *top) const { TreeLinks::delete_branch(*top); }
};
using Branch = std::unique_ptr<CTreeNode, BranchDeleter>;

} // namespace kortools::data
