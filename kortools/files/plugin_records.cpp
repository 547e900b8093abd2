// SPDX-License-Identifier: MIT
#include "kortools/files/plugin_records.h"

#include "kortools/core/conversion.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace kortools::files {
namespace {

// Far more than any picture has, so that row numbers and counts of bytes cannot overflow.
constexpr unsigned int maximum_side = 1U << 24; // pixels

constexpr unsigned int maximum_count = std::numeric_limits<int>::max();

template <std::size_t Size> std::string_view view_of(char const (&array)[Size])
{
    return { array, Size };
}

template <class Record> Fault check_head(Record const *record, char const *what)
{
    std::string const name = what;
    if (!record)
        return "there is no " + name;
    if (record->version != IO_PLUGIN_RECORDS)
        return "the " + name + " is of version " + std::to_string(record->version) + ", not "
            + std::to_string(IO_PLUGIN_RECORDS);
    if (record->size < sizeof(Record))
        return "the " + name + " has " + std::to_string(record->size) + " bytes instead of "
            + std::to_string(sizeof(Record));
    return std::nullopt;
}

template <std::size_t Size>
Fault take_text(char const (&array)[Size], char const *what, CXTString<wchar_t> &result)
{
    if (view_of(array).find('\0') == std::string_view::npos)
        return std::string(what) + " does not end";
    result = to_wide_text(view_of(array));
    return std::nullopt;
}

bool are_finite(auto const &numbers)
{
    return std::ranges::all_of(numbers, [](auto number) { return std::isfinite(number); });
}

bool is_code(unsigned int code)
{
    for (int shift = 0; shift < 32; shift += 8) {
        unsigned int const ch = code >> shift & 0xFF;
        if (ch < 0x20 || ch > 0x7E)
            return false;
    }
    return true;
}

// Extensions with their dots, none of them empty or with characters that names do not have.
bool is_extension_list(CXTString<wchar_t> const &list)
{
    std::wstring_view rest = list.GetView();
    for (;;) {
        std::wstring_view const extension = rest.substr(0, rest.find(L'|'));
        if (extension.size() < 2 || extension.front() != L'.'
            || extension.find_first_of(L"\\/:*?\"<> ") != std::wstring_view::npos
            || extension.find(L'.', 1) != std::wstring_view::npos)
            return false;
        if (extension.size() == rest.size())
            return true;
        rest.remove_prefix(extension.size() + 1);
    }
}

Fault check_properties(unsigned int properties, unsigned int kind)
{
    constexpr unsigned int capabilities = 0xFFF;
    if ((properties & ~capabilities) != kind)
        return "its kind is not that of the entry point";
    if (!(properties & (fileCanLoad | fileCanSave)))
        return "it can be neither loaded nor saved";
    if (kind == fileKind3D && (properties & fileCanSave))
        return "scenes cannot be saved by plug-ins";
    return std::nullopt;
}

std::string missing(char const *what, int number, int count)
{
    return std::string(what) + ' ' + std::to_string(number) + " of " + std::to_string(count);
}

Fault check_reference(int number, int count, char const *what)
{
    if (number >= -1 && number < count)
        return std::nullopt;
    return missing(what, number, count);
}

// The corners of all faces together must be those that there are.
Fault check_faces(IoPluginMesh const &mesh)
{
    if (mesh.face_count == 0 && mesh.corner_count == 0)
        return std::nullopt;
    unsigned long long corners = 3ULL * mesh.face_count;
    if (mesh.face_sizes) {
        corners = 0;
        for (unsigned int size : std::span(mesh.face_sizes, mesh.face_count)) {
            if (size < 3)
                return "a face of the mesh has " + std::to_string(size) + " corners";
            corners += size;
        }
    }
    if (corners != mesh.corner_count)
        return "the mesh has " + std::to_string(mesh.corner_count) + " corners, its faces "
            + std::to_string(corners);
    if (!mesh.corners)
        return "the mesh has no corners";
    for (unsigned int corner : std::span(mesh.corners, mesh.corner_count)) {
        if (corner >= mesh.vertex_count)
            return "a face refers to vertex " + std::to_string(corner) + " of "
                + std::to_string(mesh.vertex_count);
    }
    return std::nullopt;
}

Fault check_vertices(IoPluginMesh const &mesh)
{
    if (mesh.vertex_count == 0 || !mesh.positions)
        return "the mesh has no vertices";
    if (std::max({ mesh.vertex_count, mesh.face_count, mesh.corner_count }) > maximum_count)
        return "the mesh has more than 2147483647 vertices, faces or corners";
    if (!are_finite(std::span(mesh.positions, mesh.vertex_count * std::size_t { 3 })))
        return "a position of the mesh is not finite";
    return std::nullopt;
}

template <class T> std::span<T const> span_of(T const *data, std::size_t count)
{
    return data ? std::span(data, count) : std::span<T const>();
}

} // namespace

CXTString<wchar_t> to_wide_text(std::string_view array)
{
    CXTString<wchar_t> result;
    core::convert_text(array.substr(0, array.find('\0')), xEncodingUTF8, result);
    return result;
}

std::string to_code_text(unsigned int code)
{
    if (!is_code(code))
        return std::to_string(code);
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += static_cast<char>(code >> shift & 0xFF);
    return text;
}

Fault take_type(IoPluginType const *type, unsigned int kind, CFileExt &result)
{
    if (Fault fault = check_head(type, "type"))
        return fault;
    if (Fault fault = check_properties(type->properties, kind))
        return fault;
    unsigned int const loader = type->loader ? type->loader : type->file_class;
    unsigned int const saver = type->saver ? type->saver : type->file_class;
    if (!is_code(type->file_class) || !is_code(loader) || !is_code(saver))
        return "its codes are not four characters";
    if (Fault fault = take_text(type->description, "its description", result.m_description))
        return fault;
    if (Fault fault = take_text(type->extensions, "its list of extensions", result.m_extensions))
        return fault;
    if (result.m_description.IsEmpty())
        return "it has no description";
    if (!is_extension_list(result.m_extensions))
        return "its extensions are not of the form .abc|.def";
    result.m_class = type->file_class;
    result.m_properties = type->properties;
    result.m_loader = type->properties & fileCanLoad ? loader : fileNoComponent;
    result.m_saver = type->properties & fileCanSave ? saver : fileNoComponent;
    return std::nullopt;
}

Fault take_material(IoPluginMaterial const *material, CIoMaterial &result)
{
    if (Fault fault = check_head(material, "material"))
        return fault;
    if (Fault fault = take_text(material->name, "the material's name", result.m_name))
        return fault;
    if (Fault fault = take_text(material->texture, "the material's texture", result.m_texture))
        return fault;
    if (!are_finite(material->diffuse) || !are_finite(material->specular)
        || !are_finite(material->emissive) || !std::isfinite(material->shininess))
        return "a number of the material is not finite";
    std::ranges::copy(material->diffuse, result.m_diffuse);
    std::ranges::copy(material->specular, result.m_specular);
    std::ranges::copy(material->emissive, result.m_emissive);
    result.m_shininess = material->shininess;
    return std::nullopt;
}

Fault take_mesh(IoPluginMesh const *mesh, SceneCounts const &counts, CIoMesh &result)
{
    if (Fault fault = check_head(mesh, "mesh"))
        return fault;
    if (Fault fault = take_text(mesh->name, "the mesh's name", result.m_name))
        return fault;
    if (Fault fault
        = check_reference(mesh->material, counts.materials, "the mesh refers to material"))
        return fault;
    if (Fault fault = check_vertices(*mesh))
        return fault;
    if (Fault fault = check_faces(*mesh))
        return fault;
    std::size_t const vertices = mesh->vertex_count;
    result.m_material = mesh->material;
    result.m_vertexCount = mesh->vertex_count;
    result.m_faceCount = mesh->face_count;
    result.m_positions = { mesh->positions, vertices * 3 };
    result.m_normals = span_of(mesh->normals, vertices * 3);
    result.m_textureCoordinates = span_of(mesh->texture_coordinates, vertices * 2);
    result.m_corners = span_of(mesh->corners, mesh->corner_count);
    result.m_faceSizes = span_of(mesh->face_sizes, mesh->face_count);
    return std::nullopt;
}

Fault take_node(IoPluginNode const *node, SceneCounts const &counts, CIoNode &result)
{
    if (Fault fault = check_head(node, "node"))
        return fault;
    if (Fault fault = take_text(node->name, "the node's name", result.m_name))
        return fault;
    if (Fault fault = check_reference(node->parent, counts.nodes, "the node's parent is number"))
        return fault;
    if (node->mesh_count > maximum_count || (node->mesh_count > 0 && !node->meshes))
        return "the node has " + std::to_string(node->mesh_count) + " meshes and no numbers";
    result.m_meshes = { node->meshes, node->mesh_count };
    for (int mesh : result.m_meshes) {
        if (mesh < 0 || mesh >= counts.meshes)
            return missing("the node refers to mesh", mesh, counts.meshes);
    }
    if (!are_finite(node->transform))
        return "the node's transform is not finite";
    result.m_parent = node->parent;
    std::ranges::copy(node->transform, result.m_transform);
    return std::nullopt;
}

Fault take_bitmap(IoPluginBitmap const *bitmap, CIoBitmapFormat &result)
{
    if (Fault fault = check_head(bitmap, "bitmap"))
        return fault;
    std::string const size = std::to_string(bitmap->width) + " x " + std::to_string(bitmap->height);
    if (bitmap->width == 0 || bitmap->height == 0 || bitmap->width > maximum_side
        || bitmap->height > maximum_side)
        return "the bitmap has " + size + " pixels";
    if (bitmap->channels < 1 || bitmap->channels > 4)
        return "the bitmap has " + std::to_string(bitmap->channels) + " channels";
    auto const depth = static_cast<unsigned int>(bitmap->depth);
    if (depth != ioDepth8 && depth != ioDepth16 && depth != ioDepthFloat)
        return "the bitmap's depth is " + std::to_string(depth);
    result = { bitmap->width, bitmap->height, bitmap->channels, bitmap->depth, bitmap->file_bits };
    return std::nullopt;
}

} // namespace kortools::files
