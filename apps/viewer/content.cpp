// SPDX-License-Identifier: MIT
#include "apps/viewer/content.h"

#include "apps/common/console.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace viewer {
namespace {

constexpr unsigned long long maximum_pixels = 1ULL << 28; // 1 GiB of them
constexpr std::size_t maximum_triangles = 1U << 26;
constexpr int board_square = 8; // pixels

// The curve of sRGB (IEC 61966-2-1), from light.
unsigned char encode_light(float light)
{
    float const value = std::clamp(light, 0.0F, 1.0F); // not a number becomes 0 below
    float const encoded
        = value <= 0.0031308F ? 12.92F * value : 1.055F * std::pow(value, 1 / 2.4F) - 0.055F;
    return encoded > 0 ? static_cast<unsigned char>(std::lround(255 * encoded))
                       : static_cast<unsigned char>(0);
}

unsigned char get_channel(unsigned char const *sample, IoPluginDepth depth, bool is_alpha)
{
    if (depth == ioDepth8)
        return *sample;
    if (depth == ioDepth16) {
        unsigned short value;
        std::memcpy(&value, sample, sizeof value);
        return static_cast<unsigned char>((value * 255U + 32767U) / 65535U);
    }
    float value;
    std::memcpy(&value, sample, sizeof value);
    if (!is_alpha)
        return encode_light(value);
    return value > 0 ? static_cast<unsigned char>(std::lround(255 * std::min(value, 1.0F)))
                     : static_cast<unsigned char>(0);
}

CRGBColor put_on_board(CRGBColor const &color, unsigned int alpha, int x, int y)
{
    unsigned int const board = ((x / board_square + y / board_square) & 1) != 0 ? 204 : 255;
    CRGBColor result;
    for (int channel = 0; channel < 3; ++channel) {
        result[channel] = static_cast<unsigned char>(
            (color[channel] * alpha + board * (255 - alpha) + 127) / 255);
    }
    return result;
}

unsigned char to_byte(float part)
{
    return part > 0 ? static_cast<unsigned char>(std::lround(255 * std::min(part, 1.0F)))
                    : static_cast<unsigned char>(0);
}

} // namespace

bool Content::OnBitmap(CIoBitmapFormat const &format)
{
    if (static_cast<unsigned long long>(format.m_width) * format.m_height > maximum_pixels)
        kor_apps::fail(L"the bitmap is too large to be shown");
    m_format = format;
    m_picture.size = { static_cast<int>(format.m_width), static_cast<int>(format.m_height) };
    m_picture.pixels.resize(static_cast<std::size_t>(format.m_width) * format.m_height);
    return true;
}

bool Content::OnRows(
    unsigned int first, unsigned int count, unsigned char const *rows, std::size_t stride)
{
    unsigned int const channels = m_format.m_channels;
    bool const has_alpha = channels == 2 || channels == 4;
    bool const is_grey = channels < 3;
    std::size_t const size = m_format.m_depth;
    for (unsigned int row = 0; row < count; ++row, rows += stride) {
        int const y = static_cast<int>(first + row);
        CRGBColor *pixel = m_picture.pixels.data() + std::size_t { first + row } * m_format.m_width;
        unsigned char const *sample = rows;
        for (int x = 0; x < m_picture.size.cx; ++x, sample += channels * size, ++pixel) {
            for (unsigned int i = 0; i < 3; ++i)
                (*pixel)[static_cast<int>(i)]
                    = get_channel(sample + (is_grey ? 0 : i * size), m_format.m_depth, false);
            if (has_alpha) {
                unsigned char const *const alpha = sample + (channels - 1) * size;
                *pixel = put_on_board(*pixel, get_channel(alpha, m_format.m_depth, true), x, y);
            }
        }
    }
    return true;
}

bool Content::OnMaterial(CIoMaterial const &material)
{
    float const *const diffuse = material.m_diffuse;
    m_materials.emplace_back(to_byte(diffuse[0]), to_byte(diffuse[1]), to_byte(diffuse[2]));
    return true;
}

bool Content::OnMesh(CIoMesh const &mesh)
{
    Mesh &copy = m_meshes.emplace_back();
    for (std::size_t i = 0; i + 2 < mesh.m_positions.size(); i += 3) {
        copy.vertices.push_back(
            { mesh.m_positions[i], mesh.m_positions[i + 1], mesh.m_positions[i + 2] });
    }
    CRGBColor color(200, 200, 205);
    if (mesh.m_material >= 0 && static_cast<std::size_t>(mesh.m_material) < m_materials.size())
        color = m_materials[static_cast<std::size_t>(mesh.m_material)];
    std::size_t begin = 0;
    for (unsigned int face = 0; face < mesh.m_faceCount; ++face) {
        unsigned int const corners = mesh.m_faceSizes.empty() ? 3 : mesh.m_faceSizes[face];
        auto const corner = mesh.m_corners.subspan(begin, corners);
        for (unsigned int i = 2; i < corners; ++i)
            copy.triangles.push_back({ { corner[0], corner[i - 1], corner[i] }, color });
        begin += corners;
    }
    return true;
}

bool Content::OnNode(CIoNode const &node)
{
    kor_apps::Matrix matrix;
    std::copy(std::begin(node.m_transform), std::end(node.m_transform), matrix.begin());
    if (node.m_parent >= 0)
        matrix = kor_apps::multiply(m_nodes[static_cast<std::size_t>(node.m_parent)], matrix);
    m_nodes.push_back(matrix);
    for (int const number : node.m_meshes) {
        Show(m_meshes[static_cast<std::size_t>(number)], matrix);
        m_isShown = true;
    }
    return true;
}

// A node may show a mesh as often as it likes, so what comes of it is limited here.
void Content::Show(Mesh const &mesh, kor_apps::Matrix const &matrix)
{
    if (m_model.triangles.size() + mesh.triangles.size() > maximum_triangles
        || m_model.vertices.size() + mesh.vertices.size() > maximum_triangles)
        kor_apps::fail(L"the scene is too large to be shown");
    auto const first = static_cast<unsigned int>(m_model.vertices.size());
    for (kor_apps::Point3 const &vertex : mesh.vertices)
        m_model.vertices.push_back(kor_apps::transform(matrix, vertex));
    for (Model::Triangle triangle : mesh.triangles) {
        for (unsigned int &corner : triangle.corners)
            corner += first;
        m_model.triangles.push_back(triangle);
    }
    for (unsigned int i = 0; mesh.triangles.empty() && i < mesh.vertices.size(); ++i)
        m_model.points.push_back(first + i);
}

Model Content::TakeModel()
{
    if (!m_isShown) { // meshes are all there is
        for (Mesh const &mesh : m_meshes)
            Show(mesh, kor_apps::identity_matrix);
    }
    return std::move(m_model);
}

} // namespace viewer
