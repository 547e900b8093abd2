// SPDX-License-Identifier: MIT
// From the importer's scene to the library's records. Materials and meshes keep their numbers.
#include "plugins/models/load_model.h"

#include <algorithm>
#include <assimp/material.h>
#include <assimp/scene.h>
#include <vector>

namespace model_plugin {
namespace {

static_assert(sizeof(aiVector3D) == 3 * sizeof(float), "positions are handed over as they are");

constexpr std::size_t maximum_nodes = 1'000'000;

// The library has a reason of its own for refusing something, which it keeps.
void expect_taken(std::int32_t number)
{
    if (number < 0)
        throw Failure(ioFailed, "what was loaded is refused");
}

void set_color(aiMaterial const &source, char const *key, unsigned int type, unsigned int index,
    float (&target)[3])
{
    aiColor3D color;
    if (source.Get(key, type, index, color) != aiReturn_SUCCESS)
        return;
    target[0] = color.r;
    target[1] = color.g;
    target[2] = color.b;
}

void hand_over_material(IoPluginLoad &request, aiMaterial const &source)
{
    IoPluginMaterial material;
    IO_PLUGIN_INIT(material);
    aiString text;
    if (source.Get(AI_MATKEY_NAME, text) == aiReturn_SUCCESS)
        set_text(material.name, sizeof material.name, text.C_Str());
    float diffuse[3] = { 0.8F, 0.8F, 0.8F };
    set_color(source, AI_MATKEY_COLOR_DIFFUSE, diffuse);
    std::copy_n(diffuse, 3, material.diffuse);
    material.diffuse[3] = 1;
    source.Get(AI_MATKEY_OPACITY, material.diffuse[3]);
    set_color(source, AI_MATKEY_COLOR_SPECULAR, material.specular);
    set_color(source, AI_MATKEY_COLOR_EMISSIVE, material.emissive);
    source.Get(AI_MATKEY_SHININESS, material.shininess);
    for (aiTextureType type : { aiTextureType_BASE_COLOR, aiTextureType_DIFFUSE }) {
        if (!material.texture[0] && source.GetTexture(type, 0, &text) == aiReturn_SUCCESS)
            set_text(material.texture, sizeof material.texture, text.C_Str());
    }
    expect_taken(request.add_material(request.host, &material));
}

// Points and lines, which are faces to the importer, are left out.
struct Faces {
    explicit Faces(aiMesh const &mesh)
    {
        for (unsigned int i = 0; i < mesh.mNumFaces; ++i) {
            aiFace const &face = mesh.mFaces[i];
            if (face.mNumIndices < 3)
                continue;
            corners.insert(corners.end(), face.mIndices, face.mIndices + face.mNumIndices);
            sizes.push_back(face.mNumIndices);
        }
    }
    std::vector<std::uint32_t> corners;
    std::vector<std::uint32_t> sizes;
};

void hand_over_mesh(IoPluginLoad &request, aiMesh const &source)
{
    Faces const faces(source);
    std::vector<float> texture_coordinates;
    if (source.HasTextureCoords(0)) {
        texture_coordinates.reserve(source.mNumVertices * std::size_t { 2 });
        for (unsigned int i = 0; i < source.mNumVertices; ++i) {
            texture_coordinates.push_back(source.mTextureCoords[0][i].x);
            texture_coordinates.push_back(source.mTextureCoords[0][i].y);
        }
    }
    IoPluginMesh mesh;
    IO_PLUGIN_INIT(mesh);
    set_text(mesh.name, sizeof mesh.name, source.mName.C_Str());
    mesh.material = static_cast<std::int32_t>(source.mMaterialIndex);
    mesh.vertex_count = source.mNumVertices;
    mesh.face_count = static_cast<std::uint32_t>(faces.sizes.size());
    mesh.corner_count = static_cast<std::uint32_t>(faces.corners.size());
    mesh.positions = source.mVertices ? &source.mVertices->x : nullptr;
    mesh.normals = source.mNormals ? &source.mNormals->x : nullptr;
    mesh.texture_coordinates = texture_coordinates.empty() ? nullptr : texture_coordinates.data();
    mesh.corners = faces.corners.data();
    mesh.face_sizes = faces.sizes.empty() ? nullptr : faces.sizes.data();
    expect_taken(request.add_mesh(request.host, &mesh));
}

std::int32_t hand_over_node(IoPluginLoad &request, aiNode const &source, std::int32_t parent)
{
    std::vector<std::int32_t> const meshes(source.mMeshes, source.mMeshes + source.mNumMeshes);
    IoPluginNode node;
    IO_PLUGIN_INIT(node);
    set_text(node.name, sizeof node.name, source.mName.C_Str());
    node.parent = parent;
    node.mesh_count = source.mNumMeshes;
    node.meshes = meshes.data();
    std::copy_n(&source.mTransformation.a1, 16, node.transform);
    std::int32_t const number = request.add_node(request.host, &node);
    expect_taken(number);
    return number;
}

// Parents first and without recursion: a file may nest as deep as it likes.
void hand_over_nodes(IoPluginLoad &request, aiNode const *root)
{
    struct Waiting {
        aiNode const *node;
        std::int32_t parent;
    };
    std::vector<Waiting> waiting { { root, -1 } };
    for (std::size_t count = 0; !waiting.empty(); ++count) {
        if (count == maximum_nodes)
            throw Failure(ioUnsupported, "the file has more than a million nodes");
        auto const [node, parent] = waiting.back();
        waiting.pop_back();
        std::int32_t const number = hand_over_node(request, *node, parent);
        for (unsigned int i = node->mNumChildren; i-- > 0;)
            waiting.push_back({ node->mChildren[i], number });
    }
}

} // namespace

void hand_over(IoPluginLoad &request, aiScene const &scene)
{
    for (unsigned int i = 0; i < scene.mNumMaterials; ++i)
        hand_over_material(request, *scene.mMaterials[i]);
    for (unsigned int i = 0; i < scene.mNumMeshes; ++i) {
        hand_over_mesh(request, *scene.mMeshes[i]);
        if (!request.progress(request.host, 0.9 + 0.1 * (i + 1) / scene.mNumMeshes))
            throw Failure(ioCancelled, "cancelled");
    }
    if (scene.mRootNode)
        hand_over_nodes(request, scene.mRootNode);
}

} // namespace model_plugin
