// SPDX-License-Identifier: MIT
// A plug-in in C++: a .cubes file has one character per cube.
#include <kortools/files/io_plugin.h>

#include <cstdio>
#include <new>
#include <vector>

namespace {

bool add_type(IoPluginTypes const &types)
{
    IoPluginType type;
    IO_PLUGIN_INIT(type);
    type.file_class = IO_PLUGIN_CODE('C', 'U', 'B', 'E');
    type.properties = IO_PLUGIN_3D | IO_PLUGIN_LOADS;
    std::snprintf(type.description, sizeof type.description, "Rows of cubes");
    std::snprintf(type.extensions, sizeof type.extensions, ".cubes");
    return types.add(types.host, &type);
}

// The corners of unit cubes along the x axis, one step apart.
bool load(IoPluginLoad &request)
try {
    std::vector<float> positions;
    for (unsigned long long cube = 0; cube < request.file_size; ++cube)
        for (unsigned int corner = 0; corner < 8; ++corner)
            for (float const number :
                { float(cube * 2 + (corner & 1)), float(corner >> 1 & 1), float(corner >> 2) })
                positions.push_back(number);
    IoPluginMesh mesh;
    IO_PLUGIN_INIT(mesh);
    mesh.material = -1;
    mesh.vertex_count = static_cast<uint32_t>(positions.size() / 3);
    mesh.positions = positions.data();
    return request.add_mesh(request.host, &mesh) >= 0;
} catch (std::bad_alloc const &) {
    request.result = ioNoMemory;
    return false;
}

} // namespace

unsigned int BrantisGetPluginVersion()
{
    return IO_PLUGIN_VERSION;
}

bool Init3DParser(IoPluginMode mode, void *data)
{
    switch (mode) {
    case ioModeTypes:
        return add_type(*static_cast<IoPluginTypes *>(data));
    case ioModeLoad:
        return load(*static_cast<IoPluginLoad *>(data));
    case ioModeRelease:
        return true;
    default:
        return false;
    }
}
