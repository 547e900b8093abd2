// SPDX-License-Identifier: MIT
// What a plug-in hands over of a file, kept so that it can be shown: the pixels of a bitmap, or the
// triangles and points of a scene.
#pragma once

#include "apps/common/transform.h"
#include "kortools/files/plugin_files.h"
#include "kortools/ui/pixels.h"

#include <functional>
#include <vector>

namespace viewer {

using Text = CXTString<wchar_t>;

// In the coordinates of the scene. Points that no face uses are shown as points.
struct Model {
    struct Triangle {
        unsigned int corners[3]; // counter-clockwise, numbers of vertices
        CRGBColor color;
    };
    std::vector<kor_apps::Point3> vertices;
    std::vector<Triangle> triangles;
    std::vector<unsigned int> points; // numbers of vertices
};

class Content : public CIoSink {
public:
    // `progress` is told how far the load is, 0 to 1, and answers whether it is to go on.
    explicit Content(std::function<bool(double)> progress)
        : m_progress(std::move(progress))
    {
    }

    bool OnProgress(double fraction) override { return m_progress(fraction); }
    bool OnMaterial(CIoMaterial const &material) override;
    bool OnMesh(CIoMesh const &mesh) override;
    bool OnNode(CIoNode const &node) override;
    bool OnBitmap(CIoBitmapFormat const &format) override;
    bool OnRows(unsigned int first, unsigned int count, unsigned char const *rows,
        std::size_t stride) override;

    // To be called when everything was handed over. A bitmap is opaque: what shines through is a
    // board of grey squares.
    kortools::ui::Picture TakePicture() { return std::move(m_picture); } // empty: a scene
    Model TakeModel();

private:
    struct Mesh {
        std::vector<kor_apps::Point3> vertices;
        std::vector<Model::Triangle> triangles;
    };

    void Show(Mesh const &mesh, kor_apps::Matrix const &matrix);

    std::function<bool(double)> m_progress;
    CIoBitmapFormat m_format;
    kortools::ui::Picture m_picture;
    std::vector<CRGBColor> m_materials;
    std::vector<Mesh> m_meshes;
    std::vector<kor_apps::Matrix> m_nodes; // to the scene's coordinates
    bool m_isShown = false;                // a node shows a mesh
    Model m_model;
};

} // namespace viewer
