// SPDX-License-Identifier: MIT
#include "kortools/data/tree.h"

#include "kortools/data/tree_links.h"

#include <memory>
#include <utility>

using kortools::data::Branch;
using kortools::data::TreeLinks;

static constexpr unsigned int tree_schema = 2 | CXRuntimeClass::versionable_schema;

KOR_IMPLEMENT_CLASS(CTree, CXObject, tree_schema)

namespace {

// Appends the nodes of the branch, but not `top` itself; all or none.
void collect_below(CTreeNode &top, CXArray<CTreeNode *> &nodes)
{
    int const old_size = nodes.GetSize();
    try {
        for (CTreeNode *node = &top; (node = TreeLinks::next_in_branch(top, *node)) != nullptr;)
            nodes.Add(node);
    } catch (...) {
        nodes.SetSize(old_size);
        throw;
    }
}

} // namespace

CTree::CTree() = default;

CTree::~CTree()
{
    DeleteAll();
}

// --- queries

CTreeNode *CTree::GetNextNode(CTreeNode *node, CTreeNode const *stopAt)
{
    return const_cast<CTreeNode *>(std::as_const(*this).GetConstNextNode(node, stopAt));
}

CTreeNode const *CTree::GetConstNextNode(CTreeNode const *node, CTreeNode const *stopAt) const
{
    auto const unless_stop
        = [stopAt](CTreeNode const *next) { return next == stopAt ? nullptr : next; };
    if (!node)
        node = &m_root;
    if (node->GetChild())
        return unless_stop(node->GetChild());
    CTreeNode const *const stop_parent = GetConstParent(stopAt);
    while (!node->GetRight()) {
        node = node->GetParent();
        if (!node || node == stopAt || node == stop_parent)
            return nullptr;
    }
    return unless_stop(node->GetRight());
}

int CTree::GetDepth(CTreeNode const *node)
{
    int depth = 0;
    for (; node && node->GetParent(); node = node->GetParent())
        ++depth;
    return depth;
}

CTreeNode *CTree::HasCommonParent(CTreeNode *a, CTreeNode *b)
{
    return const_cast<CTreeNode *>(
        HasCommonParent(static_cast<CTreeNode const *>(a), static_cast<CTreeNode const *>(b)));
}

CTreeNode const *CTree::HasCommonParent(CTreeNode const *a, CTreeNode const *b)
{
    CTreeNode const *const wanted = GetConstParent(a);
    CTreeNode const *parent = GetConstParent(b);
    while (parent && parent != wanted)
        parent = parent->GetParent();
    return wanted ? parent : nullptr;
}

int CTree::GetChildNbr(CTreeNode const *node, bool directOnly) const
{
    auto &top = const_cast<CTreeNode &>(node ? *node : m_root);
    int count = 0;
    if (directOnly) {
        for (CTreeNode const *child = top.GetChild(); child; child = child->GetRight())
            ++count;
    } else {
        for (CTreeNode *each = &top; (each = TreeLinks::next_in_branch(top, *each)) != nullptr;)
            ++count;
    }
    return count;
}

// --- changes

// May `node` be put below `parent`? Not into its own branch.
bool CTree::CanMove(CTreeNode const *node, CTreeNode const &parent) const
{
    if (!node || node == &m_root || node == &parent)
        return false;
    if (!node->GetChild())
        return true;
    CTreeNode const *ancestor = &parent;
    while (ancestor && ancestor != node)
        ancestor = ancestor->GetParent();
    return !ancestor;
}

bool CTree::AddChild(CTreeNode *parent, CTreeNode *node, bool atEnd)
{
    CTreeNode &above = Start(parent);
    if (!CanMove(node, above))
        return false;
    TreeLinks::unlink(*node);
    atEnd ? TreeLinks::link_last(above, *node) : TreeLinks::link_first(above, *node);
    return true;
}

bool CTree::MoveNode(CTreeNode *parent, CTreeNode *node, bool atEnd)
{
    return AddChild(parent, node, atEnd);
}

bool CTree::MoveRight(CTreeNode *after, CTreeNode *node)
{
    if (!after)
        after = m_root.GetChild();
    if (!after)
        return AddChild(nullptr, node, true);
    if (after == node || !after->GetParent() || !CanMove(node, *after->GetParent()))
        return false;
    TreeLinks::unlink(*node);
    TreeLinks::link_after(*after, *node);
    return true;
}

CTreeNode *CTree::RemoveNode(CTreeNode *node)
{
    if (!node)
        return nullptr;
    CTreeNode *const before = node->GetLeft() ? node->GetLeft() : node->GetParent();
    TreeLinks::unlink(*node);
    return before;
}

bool CTree::DeleteNode(CTreeNode *node, CXArray<CTreeNode *> *deleted)
{
    if (!node || node == &m_root)
        return false;
    if (!deleted) {
        TreeLinks::unlink(*node);
        TreeLinks::delete_branch(*node);
        return true;
    }
    int const top_index = deleted->Add(node);
    try {
        collect_below(*node, *deleted);
    } catch (...) {
        deleted->SetSize(top_index);
        throw;
    }
    TreeLinks::unlink(*node);
    return true;
}

void CTree::DeleteAll(bool freeNodes, CXArray<CTreeNode *> *deleted)
{
    if (deleted)
        collect_below(m_root, *deleted);
    if (deleted || !freeNodes)
        TreeLinks::unlink_children(m_root);
    else
        TreeLinks::delete_children(m_root);
}

bool CTree::ReplaceNode(CTreeNode *oldNode, CTreeNode *newNode, bool moveChildren)
{
    if (!oldNode || !oldNode->GetParent() || !newNode)
        return false;
    if (!CanMove(newNode, *oldNode) || !CanMove(oldNode, *newNode))
        return false;
    TreeLinks::unlink(*newNode);
    TreeLinks::link_after(*oldNode, *newNode);
    TreeLinks::unlink(*oldNode);
    if (moveChildren)
        TreeLinks::move_children(*newNode, *oldNode);
    return true;
}

// --- copies

CTreeNode *CTree::CopyNode(CTreeNode const *node, unsigned int options)
{
    return node ? node->CopyFrom(options) : nullptr;
}

// Two pointers run through the two branches side by side.
CTreeNode *CTree::CopyBranch(CTreeNode const *node, unsigned int options)
{
    Branch copy(CopyNode(node, options));
    CTreeNode const *source = copy ? node : nullptr;
    CTreeNode *target = copy.get(); // the copy of `source`
    while (source) {
        if (source->GetChild()) {
            source = source->GetChild();
        } else {
            while (source != node && !source->GetRight()) {
                source = source->GetParent();
                target = target->GetParent();
            }
            if (source == node)
                break;
            source = source->GetRight();
            target = target->GetParent();
        }
        CTreeNode *const child = source->CopyFrom(options);
        if (!child)
            return nullptr;
        TreeLinks::link_last(*target, *child);
        target = child;
    }
    return copy.release();
}

bool CTree::CopyChilds(CTreeNode *target, CTreeNode const *source, unsigned int options)
{
    CTree copies; // first: the target may lie in the source's branch
    for (CTreeNode const *child = Start(const_cast<CTreeNode *>(source)).GetChild(); child;
         child = child->GetRight()) {
        CTreeNode *const copy = CopyBranch(child, options);
        if (!copy)
            return false;
        TreeLinks::link_last(copies.m_root, *copy);
    }
    TreeLinks::move_children(Start(target), copies.m_root);
    return true;
}
