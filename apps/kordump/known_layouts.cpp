// SPDX-License-Identifier: MIT
#include "apps/kordump/layout.h"

namespace kordump {

std::string_view const known_layouts = R"(
class CTreeNode 0
    flags               u32
class CTreeNode 1
    flags               u32
class CTreeNode 2
    version             u32
    flags               u32
    data                node_data
class CSceneFolder 1
    path                string
class CSceneFormat 1
    name                string
    kind                string
class CSceneAsset 1
    name                string
    size                u64
    modified            time
    folder              object
    format              object
class CSceneBitmap 1 : CSceneAsset
    width               u32
    height              u32
    bits_per_pixel      u16
    top_down            bool
class CSceneMesh 1 : CSceneAsset
    vertices            u64
    normals             u64
    texture_coordinates u64
    faces               u64
    minimum_x           f64
    maximum_x           f64
    minimum_y           f64
    maximum_y           f64
    minimum_z           f64
    maximum_z           f64
    groups              string[]
class CScene 1
    folders             object[]
    formats             object[]
    assets              object[]
class CSceneNode 2 : CTreeNode
    properties          custom_data
class CScene 2
    next_id             u64
    tree                tree
)";

} // namespace kordump
