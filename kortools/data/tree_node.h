// SPDX-License-Identifier: MIT
// CTreeNode: a node of a CTree (see tree.h), which links, moves and stores nodes without knowing
// their contents. Applications derive their own nodes, with a class record each:
//
//   class CLayer : public CTreeNode {
//       KOR_DECLARE_CLASS(CLayer)
//   public:
//       void Serialize(CXArchive &archive) override
//       {
//           CTreeNode::Serialize(archive); // first
//           archive.IsStoring() ? archive << m_name : archive >> m_name;
//       }
//       CTreeNode *CopyFrom(unsigned int) const override { return new CLayer(*this); }
//       CXTString<wchar_t> m_name;
//   };
//   KOR_IMPLEMENT_CLASS(CLayer, CTreeNode, 2)
//
// A node does not own its children: the tree does. Take a node out of its tree before you delete it
// by other means than the tree's.
#pragma once

#include "kortools/archive/runtime_class.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

namespace kortools::data {
struct TreeLinks;
}

// Bits that the application gives a meaning; the library only keeps and stores them.
enum TreeNodeFlag : unsigned int {};

class KORTOOLS_API CTreeNode : public CXObject {
    KOR_DECLARE_CLASS(CTreeNode)
public:
    CTreeNode() = default;
    // What is copied are the flags: a copy has no place in a tree, and an assignment keeps the
    // node's own.
    CTreeNode(CTreeNode const &other);
    CTreeNode &operator=(CTreeNode const &other);
    ~CTreeNode() override;

    // Stores or loads the flags, in the format of docs/tree-format.md. A class with a schema number
    // below that of its record reads the oldest form, which has no version.
    void Serialize(CXArchive &archive) override;

    // Deletes the object, and true. For nodes that do not come from `new`. Called without virtual
    // dispatch on a null pointer it changes nothing.
    virtual bool DeleteNode();

    virtual CXTString<wchar_t> GetDisplayName() const; // empty

    // A copy without links, which the caller owns; null when there is none to be had. `options` is
    // what the caller of the tree's copy functions gave, 0 by default. A class that does not
    // replace this is copied as a new object of the same class with the same flags.
    virtual CTreeNode *CopyFrom(unsigned int options) const;

    // Are the contents equal? Here: class and flags; links never count.
    virtual bool operator==(CTreeNode const &other) const;

    void SetFlag(TreeNodeFlag flag, bool on) // the bits of `flag`; the others stay
    {
        m_flags = on ? m_flags | flag : m_flags & ~static_cast<unsigned int>(flag);
    }
    unsigned int GetFlags() const { return m_flags; }

    // Null where there is none.
    CTreeNode *GetChild() { return m_child; } // the first one
    CTreeNode *GetParent() { return m_parent; }
    CTreeNode *GetLeft() { return m_left; }
    CTreeNode *GetRight() { return m_right; }
    CTreeNode const *GetChild() const { return m_child; }
    CTreeNode const *GetParent() const { return m_parent; }
    CTreeNode const *GetLeft() const { return m_left; }
    CTreeNode const *GetRight() const { return m_right; }

private:
    friend struct kortools::data::TreeLinks;

    // In the documented order, as debuggers and memory dumps show them.
    CTreeNode *m_child = nullptr;
    CTreeNode *m_parent = nullptr;
    CTreeNode *m_left = nullptr;
    CTreeNode *m_right = nullptr;
    unsigned int m_flags = 0;

    CTreeNode *m_lastChild = nullptr; // so that appending takes constant time
};
