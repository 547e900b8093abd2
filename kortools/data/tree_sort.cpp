// SPDX-License-Identifier: MIT
// A merge sort of our own: it keeps the order of equal nodes, and reads and writes nothing but the
// nodes whatever a callback answers, while those of the standard library may leave the array when
// it contradicts itself.
#include "kortools/data/tree.h"

#include "kortools/data/tree_links.h"

#include <algorithm>

using kortools::data::TreeLinks;

namespace {

class NodeSorter {
public:
    NodeSorter(CTree::CompareFunction compare, void *user)
        : m_compare(compare)
        , m_user(user)
    {
    }
    void sort_children(CTreeNode &parent);

private:
    bool is_after(CTreeNode *const &a, CTreeNode *const &b) const
    {
        return m_compare(m_user, &a, &b) > 0;
    }
    void merge(int first, int middle, int last);

    CTree::CompareFunction m_compare;
    void *m_user;
    CXArray<CTreeNode *> m_nodes;
    CXArray<CTreeNode *> m_merged;
};

// Merges two sorted runs of m_nodes into m_merged.
void NodeSorter::merge(int first, int middle, int last)
{
    CTreeNode **const nodes = m_nodes.GetData();
    CTreeNode **target = m_merged.GetData() + first;
    CTreeNode **left = nodes + first;
    CTreeNode **right = nodes + middle;
    CTreeNode **const left_end = right;
    CTreeNode **const right_end = nodes + last;
    if (left != left_end && right != right_end && is_after(left_end[-1], *right)) {
        while (left != left_end && right != right_end)
            *target++ = is_after(*left, *right) ? *right++ : *left++;
    }
    target = std::copy(left, left_end, target);
    std::copy(right, right_end, target);
}

void NodeSorter::sort_children(CTreeNode &parent)
{
    m_nodes.RemoveAll();
    for (CTreeNode *child = parent.GetChild(); child; child = child->GetRight())
        m_nodes.Add(child, CXArray<CTreeNode *>::grow_double);
    int const count = m_nodes.GetSize();
    if (count < 2)
        return;
    m_merged.SetSize(count);
    for (long long width = 1; width < count; width *= 2) {
        for (long long first = 0; first < count; first += 2 * width) {
            auto const at = [&](long long index) {
                return static_cast<int>(std::min<long long>(index, count));
            };
            merge(at(first), at(first + width), at(first + 2 * width));
        }
        std::copy(m_merged.begin(), m_merged.end(), m_nodes.begin());
    }
    TreeLinks::unlink_children(parent);
    for (CTreeNode *const child : m_nodes)
        TreeLinks::link_last(parent, *child);
}

} // namespace

void CTree::Sort(CTreeNode *parent, CompareFunction compare, void *user, bool recursive)
{
    if (!compare)
        return;
    CTreeNode &top = Start(parent);
    NodeSorter sorter(compare, user);
    CTreeNode *node = &top;
    do
        sorter.sort_children(*node);
    while (recursive && (node = TreeLinks::next_in_branch(top, *node)) != nullptr);
}
