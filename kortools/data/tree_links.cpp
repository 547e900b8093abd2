// SPDX-License-Identifier: MIT
#include "kortools/data/tree_links.h"

namespace kortools::data {

void TreeLinks::link_first(CTreeNode &parent, CTreeNode &node)
{
    node.m_parent = &parent;
    node.m_left = nullptr;
    node.m_right = parent.m_child;
    (parent.m_child ? parent.m_child->m_left : parent.m_lastChild) = &node;
    parent.m_child = &node;
}

void TreeLinks::link_last(CTreeNode &parent, CTreeNode &node)
{
    if (parent.m_lastChild)
        link_after(*parent.m_lastChild, node);
    else
        link_first(parent, node);
}

void TreeLinks::link_after(CTreeNode &sibling, CTreeNode &node)
{
    node.m_parent = sibling.m_parent;
    node.m_left = &sibling;
    node.m_right = sibling.m_right;
    (sibling.m_right ? sibling.m_right->m_left : sibling.m_parent->m_lastChild) = &node;
    sibling.m_right = &node;
}

void TreeLinks::unlink(CTreeNode &node)
{
    if (!node.m_parent)
        return;
    (node.m_left ? node.m_left->m_right : node.m_parent->m_child) = node.m_right;
    (node.m_right ? node.m_right->m_left : node.m_parent->m_lastChild) = node.m_left;
    node.m_parent = node.m_left = node.m_right = nullptr;
}

void TreeLinks::unlink_children(CTreeNode &parent)
{
    while (parent.m_child)
        unlink(*parent.m_child);
}

void TreeLinks::move_children(CTreeNode &target, CTreeNode &source)
{
    CTreeNode *const first = source.m_child;
    if (!first)
        return;
    for (CTreeNode *node = first; node; node = node->m_right)
        node->m_parent = &target;
    first->m_left = target.m_lastChild;
    (target.m_lastChild ? target.m_lastChild->m_right : target.m_child) = first;
    target.m_lastChild = source.m_lastChild;
    source.m_child = source.m_lastChild = nullptr;
}

void TreeLinks::delete_branch(CTreeNode &top)
{
    delete_children(top);
    top.DeleteNode();
}

void TreeLinks::delete_children(CTreeNode &parent)
{
    CTreeNode *node = &parent;
    while (node != &parent || node->m_child) {
        if (node->m_child) {
            node = node->m_child;
            continue;
        }
        CTreeNode *const above = node->m_parent;
        unlink(*node);
        node->DeleteNode();
        node = above;
    }
}

CTreeNode *TreeLinks::next_in_branch(CTreeNode const &top, CTreeNode &node)
{
    if (node.m_child)
        return node.m_child;
    CTreeNode *climbing = &node;
    while (climbing != &top && !climbing->m_right)
        climbing = climbing->m_parent;
    return climbing == &top ? nullptr : climbing->m_right;
}

} // namespace kortools::data
