// SPDX-License-Identifier: MIT
// What plug-ins hand over, as the library takes it: each record is checked, then converted. Nothing
// in a record is believed but the extent of the arrays that its pointers name.
#pragma once

#include "kortools/files/plugin_files.h"

#include <optional>
#include <string>
#include <string_view>

namespace kortools::files {

// What is wrong with a record: "the mesh has no vertices".
using Fault = std::optional<std::string>;

// How many there are of what a scene's records refer to by number.
struct SceneCounts {
    int materials = 0;
    int meshes = 0;
    int nodes = 0;
};

// Fill `result`, or say what is wrong. A null record is one of the faults.
Fault take_type(IoPluginType const *type, unsigned int kind, CFileExt &result);
Fault take_material(IoPluginMaterial const *material, CIoMaterial &result);
Fault take_mesh(IoPluginMesh const *mesh, SceneCounts const &counts, CIoMesh &result);
Fault take_node(IoPluginNode const *node, SceneCounts const &counts, CIoNode &result);
Fault take_bitmap(IoPluginBitmap const *bitmap, CIoBitmapFormat &result);

// Text in an array of a plug-in, which may not end within it.
CXTString<wchar_t> to_wide_text(std::string_view array);

// "ABC " of a code, and a number when it has other characters.
std::string to_code_text(unsigned int code);

} // namespace kortools::files
