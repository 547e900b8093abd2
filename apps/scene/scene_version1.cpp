// SPDX-License-Identifier: MIT
#include "apps/scene/scene_version1.h"

#include "apps/scene/scene.h"
#include "kortools/archive/exception.h"
#include "kortools/core/array.h"

#include <algorithm>
#include <unordered_set>

using scoutrix::SceneFile;
using scoutrix::Text;

// The classes of the file. They are only loaded: scenes are written in the present form.
class CSceneFolder : public CXObject {
    KOR_DECLARE_CLASS(CSceneFolder)
public:
    void Serialize(CXArchive &archive) override { archive >> m_path; }

    Text m_path;
};

class CSceneFormat : public CXObject {
    KOR_DECLARE_CLASS(CSceneFormat)
public:
    void Serialize(CXArchive &archive) override { archive >> m_name >> m_kind; }

    Text m_name;
    Text m_kind;
};

class CSceneAsset : public CXObject {
    KOR_DECLARE_CLASS(CSceneAsset)
public:
    void Serialize(CXArchive &archive) override
    {
        archive >> m_name >> m_size >> m_modified >> m_folder >> m_format;
    }
    virtual void Describe(SceneFile &file) const
    {
        file.folder = m_folder->m_path;
        file.name = m_name;
        file.properties.SetString(scoutrix::propertyKind, m_format->m_kind);
        file.properties.SetString(scoutrix::propertyFormat, m_format->m_name);
        file.properties.SetULongInt(scoutrix::propertySize, m_size);
        file.properties.SetXTime(scoutrix::propertyModified, CXTime(m_modified));
    }

    Text m_name;
    unsigned long long m_size = 0; // bytes
    long long m_modified = 0;      // seconds since 1970 UTC
    CSceneFolder *m_folder = nullptr;
    CSceneFormat *m_format = nullptr;
};

class CSceneBitmap : public CSceneAsset {
    KOR_DECLARE_CLASS(CSceneBitmap)
public:
    void Serialize(CXArchive &archive) override
    {
        CSceneAsset::Serialize(archive);
        archive >> m_width >> m_height >> m_bits >> m_topDown;
    }
    void Describe(SceneFile &file) const override
    {
        CSceneAsset::Describe(file);
        file.properties.SetUInt(scoutrix::propertyWidth, m_width);
        file.properties.SetUInt(scoutrix::propertyHeight, m_height);
        file.properties.SetUInt(scoutrix::propertyBits, m_bits);
        file.properties.SetBool(scoutrix::propertyTopDown, m_topDown);
    }

    unsigned int m_width = 0;
    unsigned int m_height = 0;
    unsigned short m_bits = 0;
    bool m_topDown = true;
};

class CSceneMesh : public CSceneAsset {
    KOR_DECLARE_CLASS(CSceneMesh)
public:
    void Serialize(CXArchive &archive) override
    {
        CSceneAsset::Serialize(archive);
        archive >> m_vertices >> m_normals >> m_texture >> m_faces;
        for (int axis = 0; axis < 3; ++axis)
            archive >> m_minimum[axis] >> m_maximum[axis];
        m_groups.Serialize(archive);
    }
    void Describe(SceneFile &file) const override
    {
        CSceneAsset::Describe(file);
        file.properties.SetULongInt(scoutrix::propertyVertices, m_vertices);
        file.properties.SetULongInt(scoutrix::propertyNormals, m_normals);
        file.properties.SetULongInt(scoutrix::propertyTexture, m_texture);
        file.properties.SetULongInt(scoutrix::propertyFaces, m_faces);
        file.properties.SetArray(scoutrix::propertyMinimum, m_minimum, 3, sizeof(double));
        file.properties.SetArray(scoutrix::propertyMaximum, m_maximum, 3, sizeof(double));
        for (Text const &group : m_groups)
            file.groups.push_back({ group });
    }

    unsigned long long m_vertices = 0;
    unsigned long long m_normals = 0;
    unsigned long long m_texture = 0;
    unsigned long long m_faces = 0;
    double m_minimum[3] = { 0, 0, 0 };
    double m_maximum[3] = { 0, 0, 0 };
    CXArray<Text> m_groups;
};

KOR_IMPLEMENT_CLASS(CSceneFolder, CXObject, 1)
KOR_IMPLEMENT_CLASS(CSceneFormat, CXObject, 1)
KOR_IMPLEMENT_CLASS(CSceneAsset, CXObject, 1)
KOR_IMPLEMENT_CLASS(CSceneBitmap, CSceneAsset, 1)
KOR_IMPLEMENT_CLASS(CSceneMesh, CSceneAsset, 1)

namespace scoutrix {

void load_version1(CXArchive &archive, CScene &scene)
{
    CXArray<CSceneFolder *> folders;
    CXArray<CSceneFormat *> formats;
    CXArray<CSceneAsset *> assets;
    folders.Serialize(archive);
    formats.Serialize(archive);
    assets.Serialize(archive);
    // A damaged file could hold an object twice, or refer to one that it does not hold.
    std::unordered_set<CXObject *> objects;
    bool good = true;
    auto const add = [&](CXObject *object) { good = good && objects.insert(object).second; };
    std::for_each(folders.begin(), folders.end(), add);
    std::for_each(formats.begin(), formats.end(), add);
    for (CSceneAsset *const asset : assets) {
        good = good && asset != nullptr && objects.count(asset->m_folder) > 0
            && objects.count(asset->m_format) > 0;
        add(asset);
    }
    if (!good || objects.count(nullptr) > 0)
        CXArchiveException::Throw(CXArchiveException::badIndex);
    for (CSceneAsset const *const asset : assets) {
        SceneFile file;
        asset->Describe(file);
        scene.Put(file);
    }
    // Last, because whatever was thrown until here leaves the objects to the archive's owner.
    for (CXObject *const object : objects)
        delete object;
}

} // namespace scoutrix
