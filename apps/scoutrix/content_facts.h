// SPDX-License-Identifier: MIT
// Keeps of what a plug-in hands over what a scene keeps of a file: counts, extents, names, the mean
// colour. Geometry and pixels pass by.
#pragma once

#include "apps/common/transform.h"
#include "apps/scoutrix/document.h"
#include "kortools/files/plugin_files.h"

#include <array>
#include <vector>

namespace scoutrix {

class ContentFacts : public CIoSink {
public:
    // The document learns how far the load is. Its thread's cancellation ends it.
    explicit ContentFacts(Document &document)
        : m_document(document)
    {
    }

    bool OnProgress(double fraction) override;
    bool OnMaterial(CIoMaterial const &material) override;
    bool OnMesh(CIoMesh const &mesh) override;
    bool OnNode(CIoNode const &node) override;
    bool OnBitmap(CIoBitmapFormat const &format) override;
    bool OnRows(unsigned int first, unsigned int count, unsigned char const *rows,
        std::size_t stride) override;

    // Kind and counts; to be called when everything was handed over.
    void Store(SceneFile &file) const;

private:
    using Matrix = kor_apps::Matrix;
    using Point = kor_apps::Point3;

    struct Box {
        Point low {};
        Point high {};
        bool empty = true;

        void Add(Point const &point);
        Point GetCorner(unsigned int number) const; // 0 to 7
    };

    struct Mesh {
        Text name;
        unsigned long long faces = 0;
        Box box; // in its own coordinates
    };

    void StoreBitmap(CCustomData &properties) const;
    void StoreMesh(SceneFile &file) const;

    Document &m_document;
    unsigned long long m_vertices = 0;
    unsigned long long m_normals = 0;
    unsigned long long m_textureCoordinates = 0;
    unsigned long long m_faces = 0;
    unsigned long long m_materials = 0;
    std::vector<Mesh> m_meshes;
    std::vector<Matrix> m_nodes; // from each node's coordinates to the scene's
    Box m_shown;                 // the boxes of the meshes that nodes show
    std::vector<SceneGroup> m_groups;
    CIoBitmapFormat m_format;
    std::array<double, 4> m_sums {}; // of each channel, white is 1
};

} // namespace scoutrix
