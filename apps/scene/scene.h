// SPDX-License-Identifier: MIT
// The document of scoutrix: what was imported from files, as objects that an archive keeps.
//
// Assets of one format, and assets from one folder, share the object that describes it. The scene
// owns everything in it; one thread at a time.
#pragma once

#include "kortools/archive/archive.h"
#include "kortools/core/array.h"
#include "kortools/core/xstring.h"

namespace scoutrix {

using Text = CXTString<wchar_t>;

} // namespace scoutrix

// A folder that files were imported from.
class CSceneFolder : public CXObject {
    KOR_DECLARE_CLASS(CSceneFolder)
public:
    void Serialize(CXArchive &archive) override;

    scoutrix::Text m_path; // absolute, without a trailing separator
};

// A file format.
class CSceneFormat : public CXObject {
    KOR_DECLARE_CLASS(CSceneFormat)
public:
    void Serialize(CXArchive &archive) override;

    scoutrix::Text m_name; // "Portable Network Graphics"
    scoutrix::Text m_kind; // "bitmap" or "mesh"
};

// A file that was imported.
class CSceneAsset : public CXObject {
    KOR_DECLARE_CLASS(CSceneAsset)
public:
    void Serialize(CXArchive &archive) override;

    // What the file holds, in a few words: "1024 x 768, 24 bits". Empty for a plain asset.
    virtual scoutrix::Text Describe() const;

    scoutrix::Text m_name;            // file name with its extension
    unsigned long long m_size = 0;    // bytes
    long long m_modified = 0;         // seconds since 1970-01-01 00:00:00 UTC
    CSceneFolder *m_folder = nullptr; // shared, owned by the scene
    CSceneFormat *m_format = nullptr; // shared, owned by the scene
};

class CSceneBitmap : public CSceneAsset {
    KOR_DECLARE_CLASS(CSceneBitmap)
public:
    void Serialize(CXArchive &archive) override;
    scoutrix::Text Describe() const override;

    unsigned int m_width = 0; // pixels
    unsigned int m_height = 0;
    unsigned short m_bitsPerPixel = 0;
    bool m_topDown = true; // the first row of the file is the top one
};

class CSceneMesh : public CSceneAsset {
    KOR_DECLARE_CLASS(CSceneMesh)
public:
    void Serialize(CXArchive &archive) override;
    scoutrix::Text Describe() const override;

    unsigned long long m_vertices = 0;
    unsigned long long m_normals = 0;
    unsigned long long m_textureCoordinates = 0;
    unsigned long long m_faces = 0;
    double m_minimum[3] = { 0, 0, 0 }; // bounding box of the vertices
    double m_maximum[3] = { 0, 0, 0 };
    CXArray<scoutrix::Text> m_groups; // names of objects and groups, in order of appearance
};

// The document: every asset, in order of import.
class CScene : public CXObject {
    KOR_DECLARE_CLASS(CScene)
public:
    CScene() = default;
    CScene(CScene const &) = delete;
    CScene &operator=(CScene const &) = delete;
    ~CScene() override;

    void Serialize(CXArchive &archive) override;

    // Takes the asset over.
    void Add(CSceneAsset *asset);
    CXArray<CSceneAsset *> const &GetAssets() const { return m_assets; }
    int GetFolderCount() const { return m_folders.GetSize(); }

    // The shared object for a folder or format, made on first use.
    CSceneFolder *GetFolder(scoutrix::Text const &path);
    CSceneFormat *GetFormat(scoutrix::Text const &name, scoutrix::Text const &kind);

private:
    void Forget(); // empties the scene without destroying anything

    // Throws bad index unless everything is held once and assets refer to what the scene holds: a
    // damaged file could say otherwise, and the destructor would destroy an object twice.
    void CheckOwnership() const;

    CXArray<CSceneFolder *> m_folders;
    CXArray<CSceneFormat *> m_formats;
    CXArray<CSceneAsset *> m_assets;
};
