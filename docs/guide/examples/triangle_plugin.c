// SPDX-License-Identifier: MIT
// Loads a .tri file: nine numbers, the corners of a triangle.
#include <kortools/files/io_plugin.h>

#include <stdio.h>

static bool hand_out_types(IoPluginTypes *types)
{
    IoPluginType type;
    IO_PLUGIN_INIT(type);
    type.file_class = IO_PLUGIN_CODE('T', 'R', 'I', ' ');
    type.properties = IO_PLUGIN_3D | IO_PLUGIN_LOADS;
    snprintf(type.description, sizeof type.description, "Triangles");
    snprintf(type.extensions, sizeof type.extensions, ".tri");
    return types->add(types->host, &type);
}

static bool load_triangle(IoPluginLoad *load)
{
    char text[256] = { 0 };
    load->read(load->host, 0, text, sizeof text - 1);
    float p[9];
    if (sscanf(text, "%f %f %f %f %f %f %f %f %f", p, p + 1, p + 2, p + 3, p + 4, p + 5, p + 6,
            p + 7, p + 8)
        != 9) {
        load->result = ioWrongFormat;
        snprintf(load->error, sizeof load->error, "there are no nine numbers");
        return false;
    }
    uint32_t const corners[] = { 0, 1, 2 };
    IoPluginMesh mesh;
    IO_PLUGIN_INIT(mesh);
    mesh.material = -1;
    mesh.vertex_count = 3;
    mesh.positions = p; // ours again when the call returns
    mesh.face_count = 1;
    mesh.corner_count = 3;
    mesh.corners = corners;
    return load->add_mesh(load->host, &mesh) >= 0;
}

unsigned int BrantisGetPluginVersion(void)
{
    return IO_PLUGIN_VERSION;
}

bool Init3DParser(IoPluginMode mode, void *data)
{
    switch (mode) {
    case ioModeTypes:
        return hand_out_types(data);
    case ioModeLoad:
        return load_triangle(data);
    case ioModeRelease:
        return true; // nothing is kept between the calls
    default:
        return false;
    }
}
