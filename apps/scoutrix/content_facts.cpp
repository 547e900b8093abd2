// SPDX-License-Identifier: MIT
#include "apps/scoutrix/content_facts.h"

#include "kortools/app/thread_registry.h"

#include <algorithm>
#include <cstring>

namespace scoutrix {
namespace {

constexpr std::size_t maximum_groups = 1000; // kept of a file

// Adds the samples of a row to the sums of their channels.
template <class Sample>
void add_row(unsigned char const *row, CIoBitmapFormat const &format, double white,
    std::array<double, 4> &sums)
{
    for (unsigned int x = 0; x < format.m_width; ++x) {
        for (unsigned int channel = 0; channel < format.m_channels; ++channel) {
            Sample sample;
            std::memcpy(&sample, row, sizeof sample); // not aligned
            sums[channel] += static_cast<double>(sample) / white;
            row += sizeof sample;
        }
    }
}

void add_group(std::vector<SceneGroup> &groups, Text const &name, unsigned long long faces)
{
    if (!name.IsEmpty() && groups.size() < maximum_groups)
        groups.push_back({ name, faces });
}

} // namespace

void ContentFacts::Box::Add(Point const &point)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        low[axis] = empty ? point[axis] : std::min(low[axis], point[axis]);
        high[axis] = empty ? point[axis] : std::max(high[axis], point[axis]);
    }
    empty = false;
}

ContentFacts::Point ContentFacts::Box::GetCorner(unsigned int number) const
{
    Point corner {};
    for (unsigned int axis = 0; axis < 3; ++axis)
        corner[axis] = (number >> axis & 1) != 0 ? high[axis] : low[axis];
    return corner;
}

bool ContentFacts::OnProgress(double fraction)
{
    m_document.done
        = static_cast<unsigned long long>(fraction * static_cast<double>(m_document.size));
    return !ShouldCancelThread(0);
}

bool ContentFacts::OnMaterial(CIoMaterial const &)
{
    ++m_materials;
    return true;
}

bool ContentFacts::OnMesh(CIoMesh const &mesh)
{
    Mesh facts { mesh.m_name, mesh.m_faceCount, {} };
    for (std::size_t i = 0; i + 2 < mesh.m_positions.size(); i += 3)
        facts.box.Add({ mesh.m_positions[i], mesh.m_positions[i + 1], mesh.m_positions[i + 2] });
    m_vertices += mesh.m_vertexCount;
    m_faces += mesh.m_faceCount;
    m_normals += mesh.m_normals.size() / 3;
    m_textureCoordinates += mesh.m_textureCoordinates.size() / 2;
    m_meshes.push_back(std::move(facts));
    return true;
}

// The box of a mesh that is turned is that of its turned box, so a little large.
bool ContentFacts::OnNode(CIoNode const &node)
{
    Matrix matrix;
    std::copy(std::begin(node.m_transform), std::end(node.m_transform), matrix.begin());
    if (node.m_parent >= 0)
        matrix = kor_apps::multiply(m_nodes[static_cast<std::size_t>(node.m_parent)], matrix);
    m_nodes.push_back(matrix);
    unsigned long long faces = 0;
    for (int const number : node.m_meshes) {
        Mesh const &mesh = m_meshes[static_cast<std::size_t>(number)];
        faces += mesh.faces;
        for (unsigned int corner = 0; corner < 8; ++corner)
            m_shown.Add(kor_apps::transform(matrix, mesh.box.GetCorner(corner)));
    }
    if (!node.m_meshes.empty())
        add_group(m_groups, node.m_name, faces);
    return true;
}

bool ContentFacts::OnBitmap(CIoBitmapFormat const &format)
{
    m_format = format;
    return true;
}

bool ContentFacts::OnRows(
    unsigned int, unsigned int count, unsigned char const *rows, std::size_t stride)
{
    for (unsigned int row = 0; row < count; ++row, rows += stride) {
        if (m_format.m_depth == ioDepth8)
            add_row<unsigned char>(rows, m_format, 0xFF, m_sums);
        else if (m_format.m_depth == ioDepth16)
            add_row<unsigned short>(rows, m_format, 0xFFFF, m_sums);
        else
            add_row<float>(rows, m_format, 1, m_sums);
    }
    return !ShouldCancelThread(0);
}

void ContentFacts::Store(SceneFile &file) const
{
    bool const bitmap = m_format.m_width > 0;
    file.properties.SetString(propertyKind, bitmap ? L"bitmap" : L"mesh");
    if (bitmap)
        StoreBitmap(file.properties);
    else
        StoreMesh(file);
}

void ContentFacts::StoreBitmap(CCustomData &properties) const
{
    unsigned int const bits = m_format.m_channels * m_format.m_depth * 8;
    properties.SetUInt(propertyWidth, m_format.m_width);
    properties.SetUInt(propertyHeight, m_format.m_height);
    properties.SetUInt(propertyBits, m_format.m_fileBits > 0 ? m_format.m_fileBits : bits);
    properties.SetUInt(propertyChannels, m_format.m_channels);
    std::array<double, 4> mean = m_sums;
    for (double &channel : mean)
        channel /= static_cast<double>(m_format.m_width) * m_format.m_height;
    properties.SetArray(propertyMean, mean.data(), m_format.m_channels, sizeof(double));
}

void ContentFacts::StoreMesh(SceneFile &file) const
{
    CCustomData &properties = file.properties;
    properties.SetULongInt(propertyVertices, m_vertices);
    properties.SetULongInt(propertyNormals, m_normals);
    properties.SetULongInt(propertyTexture, m_textureCoordinates);
    properties.SetULongInt(propertyFaces, m_faces);
    properties.SetULongInt(propertyMeshes, m_meshes.size());
    properties.SetULongInt(propertyMaterials, m_materials);
    Box shown = m_shown;
    file.groups = m_groups;
    if (shown.empty) { // no node shows a mesh: they are all there is
        for (Mesh const &mesh : m_meshes) {
            shown.Add(mesh.box.low);
            shown.Add(mesh.box.high);
            add_group(file.groups, mesh.name, mesh.faces);
        }
    }
    properties.SetArray(propertyMinimum, shown.low.data(), 3, sizeof(double));
    properties.SetArray(propertyMaximum, shown.high.data(), 3, sizeof(double));
}

} // namespace scoutrix
