// SPDX-License-Identifier: MIT
// A plug-in to begin with: loads clouds of points, "x y z" on each line of a .xyz file.
#include <kortools/files/io_plugin.h>

#include <stdio.h>
#include <stdlib.h>

enum { block_size = 64 * 1024, line_size = 256 };

// What one load keeps: loads may run on several threads at once, so nothing is static.
typedef struct Points {
    float *positions;
    size_t count;
    size_t capacity;
    char line[line_size]; // the line that is being read
    size_t length;
} Points;

static bool fail(IoPluginLoad *load, IoPluginResult result, char const *reason)
{
    load->result = result;
    snprintf(load->error, sizeof load->error, "%s", reason);
    return false;
}

static bool grow(Points *points)
{
    if (points->count < points->capacity)
        return true;
    size_t const capacity = points->capacity ? points->capacity * 2 : 1024;
    float *const positions = realloc(points->positions, capacity * 3 * sizeof(float));
    if (!positions)
        return false;
    points->positions = positions;
    points->capacity = capacity;
    return true;
}

static bool take_line(Points *points, IoPluginLoad *load)
{
    points->line[points->length] = '\0';
    points->length = 0;
    float x, y, z;
    int const numbers = sscanf(points->line, "%f %f %f", &x, &y, &z);
    if (numbers == EOF) // an empty line
        return true;
    if (numbers != 3)
        return fail(
            load, points->count ? ioDamaged : ioWrongFormat, "a line without three numbers");
    if (!grow(points))
        return fail(load, ioNoMemory, "memory is exhausted");
    float *const position = points->positions + points->count++ * 3;
    position[0] = x;
    position[1] = y;
    position[2] = z;
    return true;
}

static bool take_block(Points *points, IoPluginLoad *load, char const *block, size_t size)
{
    for (size_t i = 0; i < size; ++i) {
        if (block[i] == '\n') {
            if (!take_line(points, load))
                return false;
        } else if (points->length + 1 < line_size) {
            points->line[points->length++] = block[i];
        } else {
            return fail(load, ioWrongFormat, "a line is too long");
        }
    }
    return true;
}

static bool read_points(Points *points, IoPluginLoad *load, char *block)
{
    uint64_t done = 0;
    while (done < load->file_size) {
        if (!load->progress(load->host, (double)done / (double)load->file_size))
            return fail(load, ioCancelled, "cancelled");
        size_t const size = load->read(load->host, done, block, block_size);
        if (size == 0)
            return fail(load, ioCannotRead, "the file cannot be read");
        if (!take_block(points, load, block, size))
            return false;
        done += size;
    }
    return take_line(points, load);
}

static bool hand_over(Points const *points, IoPluginLoad *load)
{
    IoPluginMesh mesh;
    IO_PLUGIN_INIT(mesh);
    snprintf(mesh.name, sizeof mesh.name, "points");
    mesh.material = -1;
    mesh.vertex_count = (uint32_t)points->count;
    mesh.positions = points->positions;
    return load->add_mesh(load->host, &mesh) >= 0;
}

static bool load_points(IoPluginLoad *load)
{
    Points points = { 0 };
    char *const block = malloc(block_size);
    bool done = block && read_points(&points, load, block) && hand_over(&points, load);
    if (!block)
        fail(load, ioNoMemory, "memory is exhausted");
    free(points.positions);
    free(block);
    return done;
}

static bool hand_out_types(IoPluginTypes *types)
{
    IoPluginType type;
    IO_PLUGIN_INIT(type);
    type.file_class = IO_PLUGIN_CODE('X', 'Y', 'Z', ' ');
    type.properties = IO_PLUGIN_3D | IO_PLUGIN_LOADS;
    snprintf(type.description, sizeof type.description, "Point clouds");
    snprintf(type.extensions, sizeof type.extensions, ".xyz|.pts");
    return types->add(types->host, &type);
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
        return load_points(data);
    case ioModeRelease:
        return true; // nothing is kept between the calls
    default:
        return false;
    }
}
