// SPDX-License-Identifier: MIT
// The interface between the library and plug-ins that load and save files. For C and C++, and the
// only header that a plug-in needs: nothing has to be linked. docs/plugins.md has a guide.
//
// A plug-in is a dynamic library that exports BrantisGetPluginVersion() and one or both of the
// entry points InitBitmapParser() and Init3DParser(). An entry point is called with a mode and a
// record:
//
//   ioModeTypes    IoPluginTypes  once, first: says which types of files there are
//   ioModeLoad     IoPluginLoad   reads one file and hands over what is in it
//   ioModeSave     IoPluginSave   writes one file
//   ioModeRelease  null           once, last: frees what the plug-in keeps
//
// Memory: whoever allocates frees. What a record points to has to be there during the call it is
// given to, on both sides, and not longer. Texts are UTF-8 and end with a zero within their arrays.
//
// Threads: the entry point is called by any thread, for loading and saving also by several at the
// same time; for types and release by one, with no other call under way. The functions of a record
// are called by the thread that was called with it, and before the entry point returns.
//
// Errors: the entry point returns false and says in its record what went wrong. No exception may
// leave it. What a plug-in hands over is checked; a fault ends the request, not the process.
//
// Versions: each record begins with its size and the version of its meaning. Records grow at their
// ends only, so a size above the one known here is fine, and so are fields that are unknown. Set
// both with IO_PLUGIN_INIT, which leaves everything else zero, in those that you fill.
#pragma once

#include "kortools/export.h"
#include "kortools/files/io_plugin_mode.h"

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#define IO_PLUGIN_VERSION 0x50000U // what BrantisGetPluginVersion() returns
#define IO_PLUGIN_RECORDS 1U       // the version in the records below

// Begins a record: all zero, but for its size and version.
#define IO_PLUGIN_INIT(record)                                                                     \
    (memset(&(record), 0, sizeof(record)), (record).size = (uint32_t)sizeof(record),               \
        (record).version = IO_PLUGIN_RECORDS)

// Four ASCII characters as a number: IO_PLUGIN_CODE('O', 'B', 'J', ' ').
#define IO_PLUGIN_CODE(a, b, c, d)                                                                 \
    ((uint32_t)(a) << 24 | (uint32_t)(b) << 16 | (uint32_t)(c) << 8 | (uint32_t)(d))

// Properties of a type: one kind, and what can be done with it.
#define IO_PLUGIN_BITMAP 0x1000U
#define IO_PLUGIN_3D 0x4000U
#define IO_PLUGIN_LOADS 0x1U
#define IO_PLUGIN_SAVES 0x2U // only of bitmaps

// Sizes of the texts in records, in bytes with their zeros.
#define IO_PLUGIN_NAME_SIZE 256
#define IO_PLUGIN_PATH_SIZE 1024
#define IO_PLUGIN_ERROR_SIZE 512

// What became of a request. A plug-in that returns false and leaves the result at ioDone has
// failed with ioFailed.
#ifdef __cplusplus
enum IoPluginResult : unsigned int {
#else
typedef uint32_t IoPluginResult;
enum {
#endif
    ioDone = 0,
    ioWrongFormat = 1, // not a file of this type; another type with the extension may be tried
    ioDamaged = 2,     // cut, or contradicts itself
    ioUnsupported = 3, // of the type, but of a form that the plug-in does not know
    ioCannotRead = 4,  // the file, or one that belongs to it
    ioCannotWrite = 5,
    ioCancelled = 6, // progress() returned false
    ioNoMemory = 7,
    ioFailed = 8,
    ioNoPlugin = 100,    // given by the library: no plug-in has registered the extension
    ioFaultyPlugin = 101 // given by the library: what was handed over makes no sense
};

// --- Types

typedef struct IoPluginType {
    uint32_t size;
    uint32_t version;
    uint32_t file_class; // IO_PLUGIN_CODE of printable characters, one type each
    uint32_t properties; // IO_PLUGIN_BITMAP or IO_PLUGIN_3D as the entry point, and capabilities
    uint32_t loader;     // code of the component that loads the type; 0: file_class
    uint32_t saver;
    char description[IO_PLUGIN_NAME_SIZE]; // for file dialogs: "Wavefront files"
    char extensions[IO_PLUGIN_NAME_SIZE];  // with dots, main one first: ".obj|.objx"
} IoPluginType;

// Of ioModeTypes. The plug-in calls `add` for each of its types.
typedef struct IoPluginTypes {
    // Of the record, as in every other.
    uint32_t size;
    uint32_t version;
    void *host; // first argument of `add`
    // False when the type is refused, as one that is faulty.
    bool (*add)(void *host, IoPluginType const *type);
} IoPluginTypes;

// --- Scenes: numbers count from 0, in the order in which things were added

typedef struct IoPluginMaterial {
    uint32_t size;
    uint32_t version;
    char name[IO_PLUGIN_NAME_SIZE];
    float diffuse[4]; // red, green, blue and opacity, 0 to 1
    float specular[3];
    float emissive[3];
    float shininess; // exponent, 0: dull
    char
        texture[IO_PLUGIN_PATH_SIZE]; // image of the diffuse colour, as the file names it; or empty
} IoPluginMaterial;

// Vertices and faces. Without faces the mesh is a cloud of points.
typedef struct IoPluginMesh {
    uint32_t size;
    uint32_t version;
    char name[IO_PLUGIN_NAME_SIZE];
    int32_t material;      // number of one that was added, or -1
    uint32_t vertex_count; // at least 1
    uint32_t face_count;
    uint32_t corner_count;            // of all faces together
    float const *positions;           // x, y, z of each vertex, finite
    float const *normals;             // x, y, z of each vertex, or null
    float const *texture_coordinates; // u, v of each vertex, v upwards; or null
    uint32_t const *corners;          // numbers of vertices, face by face, counter-clockwise
    uint32_t const *face_sizes;       // corners of each face, at least 3; null: triangles
} IoPluginMesh;

typedef struct IoPluginNode {
    uint32_t size;
    uint32_t version;
    char name[IO_PLUGIN_NAME_SIZE];
    int32_t parent;        // number of a node that was added, or -1
    uint32_t mesh_count;   // meshes that are shown at the node
    int32_t const *meshes; // numbers of meshes that were added
    double transform[16];  // to the parent's coordinates: four rows, for column vectors; finite
} IoPluginNode;

// --- Bitmaps

#ifdef __cplusplus
enum IoPluginDepth : unsigned int {
#else
typedef uint32_t IoPluginDepth;
enum {
#endif
    ioDepth8 = 1,    // uint8_t, 0 to 255
    ioDepth16 = 2,   // uint16_t of the processor's byte order, 0 to 65535
    ioDepthFloat = 4 // float, linear light, 1 is white
};

typedef struct IoPluginBitmap {
    uint32_t size;
    uint32_t version;
    uint32_t width; // pixels, at least 1
    uint32_t height;
    uint32_t channels;   // 1 grey, 2 grey and alpha, 3 red green blue, 4 and alpha
    IoPluginDepth depth; // of a channel, which is also its size in bytes
    uint32_t file_bits;  // of a pixel in the file, 0: not known
} IoPluginBitmap;

// --- Requests

// Of ioModeLoad. A scene is handed over with its materials and meshes before what refers to them; a
// bitmap with begin_bitmap() and then all its rows, in any order. Every function may end the
// request by what it returns; the plug-in then cleans up and returns false.
typedef struct IoPluginLoad {
    // Of the record.
    uint32_t size;
    uint32_t version;
    uint32_t file_class;   // of the type
    IoPluginResult result; // the plug-in's answer when it returns false
    uint64_t file_size;    // bytes
    char const *path;      // absolute, in the system's form; for names and for companion files
    void *host;            // first argument of the functions below

    // Reads from the file at `offset`; the number of bytes, fewer than `size` only at the end.
    size_t (*read)(void *host, uint64_t offset, void *target, size_t size);
    // How far it is, 0 to 1. False: cancelled. To be called at least every 50 ms.
    bool (*progress)(void *host, double fraction);

    // The number of what was added; -1: stop.
    int32_t (*add_material)(void *host, IoPluginMaterial const *material);
    int32_t (*add_mesh)(void *host, IoPluginMesh const *mesh);
    int32_t (*add_node)(void *host, IoPluginNode const *node);

    // False: stop. Rows are those of the picture from the top; `stride` is bytes from one to the
    // next, at least width * channels * depth.
    bool (*begin_bitmap)(void *host, IoPluginBitmap const *bitmap);
    bool (*add_rows)(void *host, uint32_t first, uint32_t count, void const *rows, size_t stride);

    char error[IO_PLUGIN_ERROR_SIZE]; // why it returns false, lower case without full stop
} IoPluginLoad;

// Of ioModeSave: the bitmap is to be written as a file of the type.
typedef struct IoPluginSave {
    // As in the record for loading.
    uint32_t size;
    uint32_t version;
    uint32_t file_class;
    IoPluginResult result;
    uint32_t quality;  // 1 to 100 where the type has a choice; 0: the plug-in's
    uint32_t reserved; // 0
    char const *path;  // where the file will be in the end; it is written by write() only
    void *host;        // first argument of the functions below

    // Appends to the file. False: it cannot be written, stop.
    bool (*write)(void *host, void const *data, size_t size);
    bool (*progress)(void *host, double fraction); // as for loading

    IoPluginBitmap const *bitmap; // the form of the rows
    void const *rows;             // from the top
    size_t stride;                // bytes from one row to the next

    char error[IO_PLUGIN_ERROR_SIZE]; // as for loading
} IoPluginSave;

// --- What a plug-in exports

#ifdef __cplusplus
extern "C" {
#endif
KORTOOLS_PLUGIN_API unsigned int BrantisGetPluginVersion(void); // IO_PLUGIN_VERSION
// The entry points. False: it has not done so, or does not know the mode.
KORTOOLS_PLUGIN_API bool InitBitmapParser(IoPluginMode mode, void *data);
KORTOOLS_PLUGIN_API bool Init3DParser(IoPluginMode mode, void *data);
#ifdef __cplusplus
}
#endif
