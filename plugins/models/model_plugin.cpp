// SPDX-License-Identifier: MIT
#include "plugins/models/load_model.h"

#include <assimp/Importer.hpp>
#include <new>

namespace model_plugin {
namespace {

struct FormatInfo {
    std::uint32_t file_class;
    char const *description;
    char const *extensions;
};

// Those of assimp's formats that people exchange; each is offered if its importer is there.
constexpr FormatInfo formats[] = {
    { IO_PLUGIN_CODE('O', 'B', 'J', ' '), "Wavefront files", ".obj" },
    { IO_PLUGIN_CODE('S', 'T', 'L', ' '), "Stereolithography files", ".stl" },
    { IO_PLUGIN_CODE('P', 'L', 'Y', ' '), "Polygon files", ".ply" },
    { IO_PLUGIN_CODE('G', 'L', 'T', 'F'), "glTF files", ".gltf|.glb|.vrm" },
    { IO_PLUGIN_CODE('F', 'B', 'X', ' '), "FBX files", ".fbx" },
    { IO_PLUGIN_CODE('3', 'D', 'S', ' '), "3D Studio files", ".3ds|.prj" },
    { IO_PLUGIN_CODE('A', 'S', 'E', ' '), "3D Studio text files", ".ase|.ask" },
    { IO_PLUGIN_CODE('D', 'A', 'E', ' '), "Collada files", ".dae|.zae" },
    { IO_PLUGIN_CODE('B', 'L', 'N', 'D'), "Blender files", ".blend" },
    { IO_PLUGIN_CODE('D', 'X', 'F', ' '), "Drawing exchange files", ".dxf" },
    { IO_PLUGIN_CODE('3', 'M', 'F', ' '), "3D manufacturing files", ".3mf" },
    { IO_PLUGIN_CODE('L', 'W', 'O', ' '), "LightWave objects", ".lwo|.lxo" },
    { IO_PLUGIN_CODE('L', 'W', 'S', ' '), "LightWave scenes", ".lws|.mot" },
    { IO_PLUGIN_CODE('D', 'X', 'X', ' '), "DirectX models", ".x" },
    { IO_PLUGIN_CODE('O', 'F', 'F', ' '), "Object files", ".off" },
    { IO_PLUGIN_CODE('A', 'C', '3', 'D'), "AC3D files", ".ac|.ac3d" },
    { IO_PLUGIN_CODE('M', 'S', '3', 'D'), "MilkShape 3D files", ".ms3d" },
    { IO_PLUGIN_CODE('M', 'D', '2', ' '), "Quake II models", ".md2" },
    { IO_PLUGIN_CODE('M', 'D', '3', ' '), "Quake III models", ".md3" },
    { IO_PLUGIN_CODE('X', '3', 'D', ' '), "X3D files", ".x3d|.x3db" },
    { IO_PLUGIN_CODE('A', 'M', 'F', ' '), "Additive manufacturing files", ".amf" },
};

bool has_importer(Assimp::Importer const &importer, char const *extensions)
{
    std::string const list = extensions;
    return importer.IsExtensionSupported(list.substr(0, list.find('|')));
}

bool hand_out_types(IoPluginTypes &types)
{
    Assimp::Importer const importer;
    for (FormatInfo const &info : formats) {
        if (!has_importer(importer, info.extensions))
            continue;
        IoPluginType type;
        IO_PLUGIN_INIT(type);
        type.file_class = info.file_class;
        type.properties = IO_PLUGIN_3D | IO_PLUGIN_LOADS;
        type.loader = IO_PLUGIN_CODE('A', 'S', 'I', 'M');
        set_text(type.description, sizeof type.description, info.description);
        set_text(type.extensions, sizeof type.extensions, info.extensions);
        types.add(types.host, &type);
    }
    return true;
}

bool fail(IoPluginLoad &request, IoPluginResult result, char const *reason)
{
    request.result = result;
    set_text(request.error, sizeof request.error, reason);
    return false;
}

bool answer_load(IoPluginLoad &request)
{
    try {
        load(request);
        return true;
    } catch (Failure const &failure) {
        return fail(request, failure.get_result(), failure.what());
    } catch (std::bad_alloc const &) {
        return fail(request, ioNoMemory, "memory is exhausted");
    } catch (std::exception const &error) {
        return fail(request, ioDamaged, error.what());
    }
}

} // namespace
} // namespace model_plugin

unsigned int BrantisGetPluginVersion()
{
    return IO_PLUGIN_VERSION;
}

bool Init3DParser(IoPluginMode mode, void *data)
{
    switch (mode) {
    case ioModeTypes:
        return model_plugin::hand_out_types(*static_cast<IoPluginTypes *>(data));
    case ioModeLoad:
        return model_plugin::answer_load(*static_cast<IoPluginLoad *>(data));
    case ioModeRelease:
        return true;
    default:
        return false;
    }
}
