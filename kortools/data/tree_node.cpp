// SPDX-License-Identifier: MIT
#include "kortools/data/tree_node.h"

static constexpr unsigned int node_schema = 2 | CXRuntimeClass::versionable_schema;

KOR_IMPLEMENT_CLASS(CTreeNode, CXObject, node_schema)

CTreeNode::CTreeNode(CTreeNode const &other)
    : CXObject(other)
    , m_flags(other.m_flags)
{
}

CTreeNode &CTreeNode::operator=(CTreeNode const &other)
{
    m_flags = other.m_flags;
    return *this;
}

CTreeNode::~CTreeNode() = default;

bool CTreeNode::DeleteNode()
{
    delete this; // the language makes this nothing on a null pointer
    return true;
}

CXTString<wchar_t> CTreeNode::GetDisplayName() const
{
    return {};
}

CTreeNode *CTreeNode::CopyFrom(unsigned int) const
{
    auto *const copy = static_cast<CTreeNode *>(GetRuntimeClassDescriptor()->CreateObject());
    if (copy)
        copy->m_flags = m_flags;
    return copy;
}

bool CTreeNode::operator==(CTreeNode const &other) const
{
    return GetRuntimeClassDescriptor() == other.GetRuntimeClassDescriptor()
        && m_flags == other.m_flags;
}
