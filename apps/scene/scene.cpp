// SPDX-License-Identifier: MIT
#include "apps/scene/scene.h"

#include "kortools/archive/exception.h"

#include <algorithm>
#include <unordered_set>

KOR_IMPLEMENT_CLASS(CSceneFolder, CXObject, 1)
KOR_IMPLEMENT_CLASS(CSceneFormat, CXObject, 1)
KOR_IMPLEMENT_CLASS(CSceneAsset, CXObject, 1)
KOR_IMPLEMENT_CLASS(CSceneBitmap, CSceneAsset, 1)
KOR_IMPLEMENT_CLASS(CSceneMesh, CSceneAsset, 1)
KOR_IMPLEMENT_CLASS(CScene, CXObject, 1)

void CSceneFolder::Serialize(CXArchive &archive)
{
    if (archive.IsStoring())
        archive << m_path;
    else
        archive >> m_path;
}

void CSceneFormat::Serialize(CXArchive &archive)
{
    if (archive.IsStoring())
        archive << m_name << m_kind;
    else
        archive >> m_name >> m_kind;
}

void CSceneAsset::Serialize(CXArchive &archive)
{
    if (archive.IsStoring())
        archive << m_name << m_size << m_modified << m_folder << m_format;
    else
        archive >> m_name >> m_size >> m_modified >> m_folder >> m_format;
}

scoutrix::Text CSceneAsset::Describe() const
{
    return {};
}

void CSceneBitmap::Serialize(CXArchive &archive)
{
    CSceneAsset::Serialize(archive);
    if (archive.IsStoring())
        archive << m_width << m_height << m_bitsPerPixel << m_topDown;
    else
        archive >> m_width >> m_height >> m_bitsPerPixel >> m_topDown;
}

scoutrix::Text CSceneBitmap::Describe() const
{
    scoutrix::Text text;
    text.Format(L"%u x %u, %u bits", m_width, m_height, static_cast<unsigned>(m_bitsPerPixel));
    return text;
}

void CSceneMesh::Serialize(CXArchive &archive)
{
    CSceneAsset::Serialize(archive);
    if (archive.IsStoring()) {
        archive << m_vertices << m_normals << m_textureCoordinates << m_faces;
        for (int axis = 0; axis < 3; ++axis)
            archive << m_minimum[axis] << m_maximum[axis];
    } else {
        archive >> m_vertices >> m_normals >> m_textureCoordinates >> m_faces;
        for (int axis = 0; axis < 3; ++axis)
            archive >> m_minimum[axis] >> m_maximum[axis];
    }
    m_groups.Serialize(archive);
}

scoutrix::Text CSceneMesh::Describe() const
{
    scoutrix::Text text;
    text.Format(L"%I64u vertices, %I64u faces", m_vertices, m_faces);
    if (m_groups.GetSize() > 0)
        text.AppendFormat(L", %d groups", m_groups.GetSize());
    return text;
}

CScene::~CScene()
{
    for (CSceneAsset *const asset : m_assets)
        delete asset;
    for (CSceneFolder *const folder : m_folders)
        delete folder;
    for (CSceneFormat *const format : m_formats)
        delete format;
}

void CScene::Serialize(CXArchive &archive)
{
    try {
        m_folders.Serialize(archive);
        m_formats.Serialize(archive);
        m_assets.Serialize(archive);
        if (archive.IsLoading())
            CheckOwnership();
    } catch (...) {
        // What was loaded until now belongs to whoever handles the failure of the archive.
        if (archive.IsLoading())
            Forget();
        throw;
    }
}

void CScene::Forget()
{
    m_folders.RemoveAll();
    m_formats.RemoveAll();
    m_assets.RemoveAll();
}

void CScene::CheckOwnership() const
{
    std::unordered_set<CXObject const *> owned { nullptr };
    auto const add = [&owned](auto const &objects) {
        return std::all_of(objects.begin(), objects.end(),
            [&owned](CXObject const *object) { return owned.insert(object).second; });
    };
    auto const is_owned
        = [&owned](CXObject const *object) { return owned.find(object) != owned.end(); };
    bool good = add(m_folders) && add(m_formats);
    good = good && std::all_of(m_assets.begin(), m_assets.end(), [&](CSceneAsset const *asset) {
        return asset != nullptr && is_owned(asset->m_folder) && is_owned(asset->m_format);
    });
    if (!good || !add(m_assets))
        CXArchiveException::Throw(CXArchiveException::badIndex);
}

void CScene::Add(CSceneAsset *asset)
{
    m_assets.Add(asset);
}

CSceneFolder *CScene::GetFolder(scoutrix::Text const &path)
{
    for (CSceneFolder *const folder : m_folders) {
        if (folder->m_path == path)
            return folder;
    }
    auto *const folder = new CSceneFolder;
    folder->m_path = path;
    m_folders.Add(folder);
    return folder;
}

CSceneFormat *CScene::GetFormat(scoutrix::Text const &name, scoutrix::Text const &kind)
{
    for (CSceneFormat *const format : m_formats) {
        if (format->m_name == name)
            return format;
    }
    auto *const format = new CSceneFormat;
    format->m_name = name;
    format->m_kind = kind;
    m_formats.Add(format);
    return format;
}
