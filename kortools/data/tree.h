// SPDX-License-Identifier: MIT
// CTree: a hierarchy of CTreeNode objects, whose contents it does not know.
//
// The tree owns its nodes, and a root without data of its own, whose children are the top-level
// nodes. Wherever an operation takes a parent or a start, null means the root. The root cannot be
// moved, copied into a place, replaced or deleted: what would do so changes nothing and returns
// false or null. So does what would put a node into its own branch.
//
// Nothing recurses as deep as the tree is: a chain of a million nodes is as good as a list of them.
// Used by one thread at a time.
//
//   CTree tree;
//   auto *const group = new CLayer;
//   tree.AddChild(nullptr, group, true);
//   tree.AddChild(group, new CLayer, true);
//   for (CTreeNode *node = tree.GetFirstNode(nullptr); node; node = tree.GetNextNode(node))
//       show(node->GetDisplayName());
//   tree.Serialize(archive);
#pragma once

#include "kortools/archive/archive.h"
#include "kortools/core/array.h"
#include "kortools/data/tree_node.h"
#include "kortools/data/tree_traversal.h"
#include "kortools/export.h"

class KORTOOLS_API CTree : public CXObject {
    KOR_DECLARE_CLASS(CTree)
public:
    // Negative, 0 or positive as `a` comes before, beside or after `b`, which point to pointers to
    // the nodes.
    using CompareFunction = int (*)(void *user, void const *a, void const *b);

    CTree();
    CTree(CTree const &) = delete;
    CTree &operator=(CTree const &) = delete;
    ~CTree() override; // deletes the nodes

    // Stores the tree, or replaces it by the one that is loaded; docs/tree-format.md has the
    // format. A failure is shown to the user, unless the tree is silent, and thrown on: what the
    // archive and the nodes throw, CXArchiveException with the bad-index cause for another schema
    // of the class or a tag that does not belong there, CXFileException for a damaged block in a
    // node of the old version. After a failure to load the tree is empty.
    void Serialize(CXArchive &archive) override;

    void SetSilent(bool silent) { m_silent = silent; }

    // --- links. Null for a null node, and where there is none.

    CTreeNode *GetRoot() { return &m_root; }
    CTreeNode const *GetConstRoot() const { return &m_root; }
    bool IsEmpty() const { return m_root.GetChild() == nullptr; }

    static CTreeNode *GetParent(CTreeNode *node) { return node ? node->GetParent() : nullptr; }
    static CTreeNode *GetChild(CTreeNode *node) { return node ? node->GetChild() : nullptr; }
    static CTreeNode *GetLeft(CTreeNode *node) { return node ? node->GetLeft() : nullptr; }
    static CTreeNode *GetRight(CTreeNode *node) { return node ? node->GetRight() : nullptr; }
    static CTreeNode const *GetConstParent(CTreeNode const *node)
    {
        return node ? node->GetParent() : nullptr;
    }
    static CTreeNode const *GetConstChild(CTreeNode const *node)
    {
        return node ? node->GetChild() : nullptr;
    }
    static CTreeNode const *GetConstLeft(CTreeNode const *node)
    {
        return node ? node->GetLeft() : nullptr;
    }
    static CTreeNode const *GetConstRight(CTreeNode const *node)
    {
        return node ? node->GetRight() : nullptr;
    }

    // The first child.
    CTreeNode *GetFirstNode(CTreeNode *node = nullptr) { return Start(node).GetChild(); }
    CTreeNode const *GetConstFirstNode(CTreeNode const *node = nullptr) const
    {
        return (node ? node : &m_root)->GetChild();
    }

    // The next node in pre-order: the first child, else the next sibling, else that of the nearest
    // ancestor which has one. Null instead of `stopAt`, when climbing comes to `stopAt`, its parent
    // or the root, and at the end. GetNextNode(node, top) walks the branch of `top`; one step from
    // `top` itself may also lead to its next sibling.
    CTreeNode *GetNextNode(CTreeNode *node, CTreeNode const *stopAt = nullptr);
    CTreeNode const *GetConstNextNode(
        CTreeNode const *node, CTreeNode const *stopAt = nullptr) const;

    // --- queries

    static int GetDepth(CTreeNode const *node); // 0 for the root and for null, 1 below the root

    // The parent of `a` when it is an ancestor of `b`, else null.
    static CTreeNode *HasCommonParent(CTreeNode *a, CTreeNode *b);
    static CTreeNode const *HasCommonParent(CTreeNode const *a, CTreeNode const *b);

    // The number of children, or of all descendants.
    int GetChildNbr(CTreeNode const *node, bool directOnly) const;

    // Is `node` visited by a walk of that mode? With `byValue`, any node that equals it will do.
    bool NodeExist(
        TreeTraversalMode mode, CTreeNode *start, CTreeNode const *node, bool byValue = false);

    // Calls the callback for each node; false when it ended the walk.
    //
    //   mode         visits, each on entering            and when climbing back
    //   descendants  all below `start`                   yes, not into `start`
    //   branch       `start` and all below               yes, not into `start`
    //   children     the children of `start`             no
    //   wrapAround   from `start`, without it, to the    yes, also into `start`; not into nodes
    //                end of the tree, then from the      that were entered after the end of the
    //                beginning to `start`                tree and have `start` below them
    //
    // The root is visited by `branch` only, as its start. On a branch outside of the tree,
    // wrapAround ends at the branch's end.
    bool DoTraversal(CTreeNode *start, TreeTraversalMode mode, TreeTraversalCallback *callback);

    // --- changes. A node that has a place leaves it first, with its branch.

    // Puts a new node, which the tree owns from now on, before the children of `parent` or behind
    // them.
    bool AddChild(CTreeNode *parent, CTreeNode *node, bool atEnd);

    // Makes `node` the next sibling of `after`; null is the root's first child. In an empty tree
    // the node becomes that child.
    bool MoveRight(CTreeNode *after, CTreeNode *node);

    bool MoveNode(CTreeNode *parent, CTreeNode *node, bool atEnd = true); // AddChild's other name

    // Takes a node out of the tree; with its branch it belongs to the caller then. Returns its
    // previous sibling, else its parent, else null.
    static CTreeNode *RemoveNode(CTreeNode *node);

    // Deletes a node with its branch. With `deleted`, the nodes are not freed but appended to the
    // array, parents first, and belong to the caller; the branch keeps its inner links.
    bool DeleteNode(CTreeNode *node, CXArray<CTreeNode *> *deleted = nullptr);

    // Empties the tree, as DeleteNode() does for each node. Without `freeNodes` they are only let
    // go of, because somebody else owns them.
    void DeleteAll(bool freeNodes = true, CXArray<CTreeNode *> *deleted = nullptr);

    // Puts `newNode` in the place of `oldNode`, which belongs to the caller then. With
    // `moveChildren` it takes over the other's children, behind its own. False, too, when one lies
    // in the other's branch.
    bool ReplaceNode(CTreeNode *oldNode, CTreeNode *newNode, bool moveChildren = true);

    // Copies by the nodes' CopyFrom(options): a node or a branch, which belongs to the caller, or
    // the branches of all children, which are appended to the children of `target`. When a node
    // cannot be copied, nothing is, and the result is null or false.
    static CTreeNode *CopyNode(CTreeNode const *node, unsigned int options = 0);
    static CTreeNode *CopyBranch(CTreeNode const *node, unsigned int options = 0);
    bool CopyChilds(CTreeNode *target, CTreeNode const *source, unsigned int options = 0);

    // Sorts the children of `parent`, and of all nodes below with `recursive`. Nodes that compare
    // equal keep their order. When the callback throws, the children it was called for stay as they
    // were.
    void Sort(CTreeNode *parent, CompareFunction compare, void *user, bool recursive);

private:
    CTreeNode &Start(CTreeNode *node) { return node ? *node : m_root; }
    bool CanMove(CTreeNode const *node, CTreeNode const &parent) const;
    bool Walk(CTreeNode &start, TreeTraversalCallback &callback);
    bool WalkAround(CTreeNode &start, TreeTraversalCallback &callback);
    void Store(CXArchive &archive);
    void Load(CXArchive &archive);
    void LoadNodes(CXArchive &archive);

    bool m_silent = false;
    CTreeNode m_root;
};
