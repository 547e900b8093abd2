// SPDX-License-Identifier: MIT
// The document of scoutrix: a tree of nodes for what was imported from files.
//
//   folder            a folder within another one in the scene is a child of it
//     bitmap, mesh    the files
//       group         the named parts of a mesh
//
// Scenes of version 1, which were lists of assets, are loaded into the same tree. One thread at a
// time.
#pragma once

#include "apps/scene/scene_node.h"
#include "kortools/archive/archive.h"
#include "kortools/core/hash_map.h"
#include "kortools/data/guid_mgr.h"
#include "kortools/data/tree.h"

#include <vector>

namespace scoutrix {

// What an importer finds in a file.
struct SceneGroup {
    Text name;
    unsigned long long faces = 0; // 0: not known
};
struct SceneFile {
    Text folder;            // absolute, without a trailing separator unless it is a root
    Text name;              // with its extension
    CCustomData properties; // kind, format, size ...; not those that the scene gives
    std::vector<SceneGroup> groups;
};

} // namespace scoutrix

class CScene : public CXObject {
    KOR_DECLARE_CLASS(CScene)
public:
    CScene();

    // Throws what the tree throws, and CXArchiveException with the bad-class cause for a node that
    // is none of a scene.
    void Serialize(CXArchive &archive) override;

    // Puts a file into its folder, or renews the properties and groups of one that is there: it
    // keeps its identifier, its name and the user's values.
    CSceneNode *Put(scoutrix::SceneFile const &file);

    // The nodes that a user calls by an identifier, else by a name.
    std::vector<CSceneNode *> Find(scoutrix::Text const &name);

    void Remove(CSceneNode *node); // with its branch

    // Its nodes are CSceneNode objects. For looking and sorting.
    CTree &GetTree() { return m_tree; }
    CTree const &GetTree() const { return m_tree; }

private:
    using PathMap = CHashMap<scoutrix::Text, scoutrix::Text const &, CSceneNode *>;

    CSceneNode *GetFolder(scoutrix::Text const &path);
    CSceneNode *FindPath(scoutrix::Text const &path, bool isFolder);
    CSceneNode *Add(CTreeNode *parent, scoutrix::Text const &name, wchar_t const *kind);
    void PutGroups(CSceneNode *mesh, std::vector<scoutrix::SceneGroup> const &groups);
    void AdoptNodes();
    void IndexPaths();

    CTree m_tree;
    CGuidMgr m_ids;
    unsigned long long m_nextId = 1; // above every identifier that was ever given
    PathMap m_paths;                 // folders and files by propertyPath
};
