// SPDX-License-Identifier: MIT
// A plug-in for io_plugins_test that hands out types with every fault beside good ones, and lets
// the test watch its end. For bitmaps it throws.
#include "kortools/files/io_plugin.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>

extern "C" KORTOOLS_PLUGIN_API void WatchRelease(void (*watch)());

namespace {

void (*s_watch)() = nullptr;

IoPluginType make_type(char const *extensions, std::uint32_t file_class)
{
    IoPluginType type;
    IO_PLUGIN_INIT(type);
    type.file_class = file_class;
    type.properties = IO_PLUGIN_3D | IO_PLUGIN_LOADS;
    std::snprintf(type.description, sizeof type.description, "Test files");
    std::snprintf(type.extensions, sizeof type.extensions, "%s", extensions);
    return type;
}

void hand_out(IoPluginTypes &types, void (*spoil)(IoPluginType &type))
{
    static std::uint32_t s_number = 0;
    IoPluginType type = make_type(".faulty", 0x46303030 + ++s_number); // F001, F002 ...
    spoil(type);
    types.add(types.host, &type);
}

bool hand_out_types(IoPluginTypes &types)
{
    IoPluginType const good = make_type(".tio|.tioz", IO_PLUGIN_CODE('T', 'I', 'O', '1'));
    IoPluginType const other = make_type(".filtered", IO_PLUGIN_CODE('T', 'I', 'O', '2'));
    types.add(types.host, &good);
    types.add(types.host, &other);
    types.add(types.host, &good); // again
    types.add(types.host, nullptr);
    types.add(nullptr, &good);
    hand_out(types, [](IoPluginType &type) { type.size = 0; });
    hand_out(types, [](IoPluginType &type) { type.version = 0; });
    hand_out(types, [](IoPluginType &type) { type.properties = IO_PLUGIN_BITMAP | 1; });
    hand_out(types, [](IoPluginType &type) { type.properties = IO_PLUGIN_3D | 0x8000 | 1; });
    hand_out(types, [](IoPluginType &type) { type.properties = IO_PLUGIN_3D; });
    hand_out(types, [](IoPluginType &type) { type.properties |= IO_PLUGIN_SAVES; });
    hand_out(types, [](IoPluginType &type) { type.file_class = 0; });
    hand_out(types, [](IoPluginType &type) { type.loader = 5; });
    hand_out(types, [](IoPluginType &type) { type.description[0] = '\0'; });
    hand_out(types,
        [](IoPluginType &type) { std::memset(type.description, 'd', sizeof type.description); });
    hand_out(types,
        [](IoPluginType &type) { std::memset(type.extensions, '.', sizeof type.extensions); });
    for (char const *list : { "", ".", "faulty", ".faulty|", ".faulty||.x", ".faulty.x", ".a/b" }) {
        IoPluginType const type = make_type(list, IO_PLUGIN_CODE('F', 'E', 'X', 'T'));
        types.add(types.host, &type);
    }
    return true;
}

bool load(IoPluginLoad &load)
{
    float const positions[3] = {};
    IoPluginMesh mesh;
    IO_PLUGIN_INIT(mesh);
    mesh.material = -1;
    mesh.vertex_count = 1;
    mesh.positions = positions;
    return load.progress(load.host, 0) && load.add_mesh(load.host, &mesh) == 0;
}

} // namespace

void WatchRelease(void (*watch)())
{
    s_watch = watch;
}

unsigned int BrantisGetPluginVersion()
{
    return IO_PLUGIN_VERSION;
}

bool InitBitmapParser(IoPluginMode, void *)
{
    throw 1;
}

bool Init3DParser(IoPluginMode mode, void *data)
{
    if (mode == ioModeTypes)
        return hand_out_types(*static_cast<IoPluginTypes *>(data));
    if (mode == ioModeLoad)
        return load(*static_cast<IoPluginLoad *>(data));
    if (mode == ioModeRelease && s_watch)
        s_watch();
    return true;
}
