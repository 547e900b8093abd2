// SPDX-License-Identifier: MIT
#include "apps/scene/scene.h"

#include "apps/scene/scene_version1.h"
#include "kortools/archive/exception.h"

#include <algorithm>

KOR_IMPLEMENT_CLASS(CScene, CXObject, 2 | CXRuntimeClass::versionable_schema)

using scoutrix::Text;

namespace {

constexpr unsigned int id_class = 0; // of the identifiers; there is one only

bool is_inside(Text const &path, Text const &folder)
{
    int const length = folder.GetLength();
    return length > 0 && path.GetLength() > length && path.Left(length) == folder
        && (folder[length - 1] == L'\\' || path[length] == L'\\');
}

Text join(Text const &folder, Text const &name)
{
    bool const root = !folder.IsEmpty() && folder[folder.GetLength() - 1] == L'\\';
    return root ? folder + name : folder + L"\\" + name;
}

Text last_part(Text const &path)
{
    Text const name = path.Mid(path.ReverseFind(L'\\') + 1);
    return name.IsEmpty() ? path : name;
}

CSceneNode *as_node(CTreeNode *node)
{
    return static_cast<CSceneNode *>(node);
}

} // namespace

CScene::CScene()
    : m_ids(1)
{
    m_tree.SetSilent(true); // the host says itself what went wrong
}

void CScene::Serialize(CXArchive &archive)
{
    if (archive.IsStoring()) {
        archive << m_nextId;
        m_tree.Serialize(archive);
        return;
    }
    unsigned int const schema = archive.GetObjectSchema();
    if (schema == 1) {
        scoutrix::load_version1(archive, *this);
        return;
    }
    if (schema != GetThisRuntimeClassDescriptor()->GetSchema())
        CXArchiveException::Throw(CXArchiveException::badSchema);
    archive >> m_nextId;
    m_tree.Serialize(archive);
    AdoptNodes();
}

// A damaged file may have nodes of other classes, and without identifiers or with the same one.
void CScene::AdoptNodes()
{
    std::vector<CSceneNode *> nameless;
    for (CTreeNode *node = m_tree.GetFirstNode(); node != nullptr;
         node = m_tree.GetNextNode(node)) {
        if (!node->IsKindOf(CSceneNode::GetThisRuntimeClassDescriptor()))
            CXArchiveException::Throw(CXArchiveException::badClass);
        unsigned long long const wanted = as_node(node)->GetNumber(scoutrix::propertyId);
        if (wanted == 0 || wanted >= CGuidMgr::fresh - 1) {
            nameless.push_back(as_node(node));
            continue;
        }
        unsigned long long const id = m_ids.GetNewGuid(wanted, id_class);
        as_node(node)->GetProperties().SetULongInt(scoutrix::propertyId, id);
        m_nextId = std::max(m_nextId, id + 1);
    }
    m_ids.SetClassBaseValue(id_class, m_nextId);
    for (CSceneNode *const node : nameless) {
        unsigned long long const id = m_ids.GetNewGuid(CGuidMgr::fresh, id_class);
        node->GetProperties().SetULongInt(scoutrix::propertyId, id);
        m_nextId = id + 1;
    }
    IndexPaths();
}

void CScene::IndexPaths()
{
    m_paths = PathMap();
    for (CTreeNode *node = m_tree.GetFirstNode(); node != nullptr;
         node = m_tree.GetNextNode(node)) {
        Text const path = as_node(node)->GetText(scoutrix::propertyPath);
        if (!path.IsEmpty())
            m_paths.Insert(path, as_node(node));
    }
}

CSceneNode *CScene::Add(CTreeNode *parent, Text const &name, wchar_t const *kind)
{
    unsigned long long const id = m_ids.GetNewGuid(CGuidMgr::fresh, id_class);
    m_nextId = id + 1;
    auto *const node = new CSceneNode;
    m_tree.AddChild(parent, node, true);
    CCustomData &properties = node->GetProperties();
    properties.SetULongInt(scoutrix::propertyId, id);
    properties.SetString(scoutrix::propertyName, name);
    properties.SetString(scoutrix::propertyKind, kind);
    return node;
}

CSceneNode *CScene::FindPath(Text const &path, bool isFolder)
{
    CSceneNode **const found = m_paths.Find(path);
    return found != nullptr && (*found)->IsKind(L"folder") == isFolder ? *found : nullptr;
}

CSceneNode *CScene::GetFolder(Text const &path)
{
    if (CSceneNode *const folder = FindPath(path, true))
        return folder;
    CSceneNode *parent = nullptr; // the nearest folder above
    for (int end = path.ReverseFind(L'\\'); end >= 0 && parent == nullptr;
         end = end == 0 ? -1 : path.ReverseFind(L'\\', end - 1)) {
        parent = FindPath(path.Left(end), true);
        if (parent == nullptr)
            parent = FindPath(path.Left(end + 1), true); // a root has its separator
    }
    CSceneNode *const folder = Add(parent, last_part(path), L"folder");
    folder->GetProperties().SetString(scoutrix::propertyPath, path);
    m_paths.Insert(path, folder);
    // Folders that lay beside it until now, and are within it.
    for (CTreeNode *node = m_tree.GetFirstNode(parent); node != folder;) {
        CTreeNode *const next = node->GetRight();
        if (as_node(node)->IsKind(L"folder")
            && is_inside(as_node(node)->GetText(scoutrix::propertyPath), path))
            m_tree.MoveNode(folder, node);
        node = next;
    }
    return folder;
}

CSceneNode *CScene::Put(scoutrix::SceneFile const &file)
{
    CSceneNode *const folder = GetFolder(file.folder);
    Text const path = join(file.folder, file.name);
    CSceneNode *node = FindPath(path, false);
    if (node == nullptr) {
        node = Add(folder, file.name, L"");
        m_paths.Insert(path, node);
    }
    CCustomData renewed(file.properties);
    for (unsigned int const kept :
        { scoutrix::propertyId, scoutrix::propertyName, scoutrix::propertyUserValues })
        renewed.CopyID(&node->GetProperties(), kept);
    renewed.SetString(scoutrix::propertyPath, path);
    node->GetProperties() = renewed;
    PutGroups(node, file.groups);
    return node;
}

// Groups that are still there keep their nodes.
void CScene::PutGroups(CSceneNode *mesh, std::vector<scoutrix::SceneGroup> const &groups)
{
    std::vector<CSceneNode *> former;
    for (CTreeNode *node = mesh->GetChild(); node != nullptr; node = node->GetRight())
        former.push_back(as_node(node));
    for (scoutrix::SceneGroup const &group : groups) {
        auto const found = std::find_if(former.begin(), former.end(), [&](CSceneNode const *each) {
            return each->GetText(scoutrix::propertyPart) == group.name;
        });
        CSceneNode *node = nullptr;
        if (found == former.end()) {
            node = Add(mesh, group.name, L"group");
            node->GetProperties().SetString(scoutrix::propertyPart, group.name);
        } else {
            node = *found;
            former.erase(found);
        }
        node->GetProperties().RemoveCustom(scoutrix::propertyFaces);
        if (group.faces > 0)
            node->GetProperties().SetULongInt(scoutrix::propertyFaces, group.faces);
    }
    for (CSceneNode *const node : former)
        Remove(node);
}

std::vector<CSceneNode *> CScene::Find(Text const &name)
{
    std::vector<CSceneNode *> named;
    for (CTreeNode *node = m_tree.GetFirstNode(); node != nullptr;
         node = m_tree.GetNextNode(node)) {
        if (as_node(node)->FormatProperty(scoutrix::propertyId) == name)
            return { as_node(node) };
        if (node->GetDisplayName() == name)
            named.push_back(as_node(node));
    }
    return named;
}

void CScene::Remove(CSceneNode *node)
{
    CXArray<CTreeNode *> removed;
    m_tree.DeleteNode(node, &removed);
    for (CTreeNode *const each : removed) {
        m_ids.ReleaseGuid(as_node(each)->GetNumber(scoutrix::propertyId));
        Text const path = as_node(each)->GetText(scoutrix::propertyPath);
        CSceneNode **const found = m_paths.Find(path);
        if (found != nullptr && *found == each)
            m_paths.Remove(path);
        each->DeleteNode();
    }
}
