// SPDX-License-Identifier: MIT
// The tree's format, see docs/tree-format.md. The tree writes and reads its nodes' class records
// and has each node write or read only itself, so that neither is ever as deep as the tree.
#include "kortools/archive/exception.h"
#include "kortools/archive/file.h"
#include "kortools/data/custom_data.h"
#include "kortools/data/tree.h"
#include "kortools/data/tree_links.h"

using kortools::data::Branch;
using kortools::data::TreeLinks;

namespace {

constexpr unsigned int tree_schema = 2;

enum Tag : unsigned int {
    end_of_list = 0,
    with_children = 1,
    without_children = 2,
    new_node = 3,
    root_node = 4,
};

constexpr unsigned int node_version = 3;
constexpr unsigned int version_with_data = 2;
constexpr unsigned int first_schema_with_version = 2;

[[noreturn]] void throw_bad_index(CXArchive const &archive)
{
    CXFile const *const file = archive.GetFile();
    CXArchiveException::Throw(
        CXArchiveException::badIndex, file ? file->GetFilePath() : CXTString<wchar_t>());
}

unsigned int read_tag(CXArchive &archive)
{
    unsigned int tag;
    archive >> tag;
    return tag;
}

void store_node(CXArchive &archive, CTreeNode const &node)
{
    archive << static_cast<unsigned int>(new_node);
    archive.WriteClass(node.GetRuntimeClassDescriptor());
    const_cast<CTreeNode &>(node).Serialize(archive); // does not change a node that is stored
}

// Reads a class record and the node itself.
Branch load_node(CXArchive &archive)
{
    CXRuntimeClass const *const node_class
        = archive.ReadClass(CTreeNode::GetThisRuntimeClassDescriptor());
    Branch node(static_cast<CTreeNode *>(node_class->CreateObject()));
    if (!node)
        CXArchiveException::Throw(CXArchiveException::badClass, archive.GetFile()->GetFilePath());
    node->Serialize(archive);
    return node;
}

} // namespace

void CTreeNode::Serialize(CXArchive &archive)
{
    if (archive.IsStoring()) {
        archive << node_version << m_flags;
        return;
    }
    // Applications number their own classes as they like, so a class that still has a low number
    // wrote a version, too; only one that has moved on since has data from before the versions.
    unsigned int const schema = archive.GetObjectSchema();
    bool const has_version
        = schema >= first_schema_with_version || schema == GetRuntimeClassDescriptor()->GetSchema();
    unsigned int version = 0;
    if (has_version)
        archive >> version;
    archive >> m_flags;
    if (version == version_with_data) {
        CCustomData dropped;
        dropped.Serialize(archive);
    }
}

void CTree::Serialize(CXArchive &archive)
{
    try {
        archive.IsStoring() ? Store(archive) : Load(archive);
    } catch (CXException *exception) {
        if (!m_silent)
            exception->ReportError();
        throw;
    }
    XDeleteThreadException();
}

void CTree::Store(CXArchive &archive)
{
    archive.WriteClass(GetThisRuntimeClassDescriptor());
    archive << static_cast<unsigned int>(root_node);
    CTreeNode const *node = &m_root; // has just been written
    for (;;) {
        if (node->GetChild()) {
            archive << static_cast<unsigned int>(with_children);
            node = node->GetChild();
        } else {
            archive << static_cast<unsigned int>(without_children);
            while (node != &m_root && !node->GetRight()) {
                archive << static_cast<unsigned int>(end_of_list);
                node = node->GetParent();
            }
            if (node == &m_root)
                break;
            node = node->GetRight();
        }
        store_node(archive, *node);
    }
    archive << static_cast<unsigned int>(end_of_list);
}

void CTree::Load(CXArchive &archive)
{
    DeleteAll();
    unsigned int schema = 0;
    archive.ReadClass(GetThisRuntimeClassDescriptor(), &schema);
    if (schema != tree_schema)
        throw_bad_index(archive);
    try {
        LoadNodes(archive);
    } catch (...) {
        DeleteAll();
        throw;
    }
}

// Each round reads what follows a node: whether it has children, then the ends of the lists it is
// the last node of, then the next node.
void CTree::LoadNodes(CXArchive &archive)
{
    if (read_tag(archive) != root_node)
        throw_bad_index(archive);
    CTreeNode *node = &m_root;
    for (;;) {
        unsigned int const children = read_tag(archive);
        if (children != with_children && children != without_children)
            throw_bad_index(archive);
        CTreeNode *parent = children == with_children ? node : node->GetParent();
        unsigned int tag = read_tag(archive);
        for (; tag == end_of_list && parent; tag = read_tag(archive))
            parent = parent->GetParent(); // null: the list that holds the root
        if (tag == end_of_list)
            return;
        if (tag != new_node || !parent)
            throw_bad_index(archive);
        node = load_node(archive).release();
        TreeLinks::link_last(*parent, *node);
    }
}
