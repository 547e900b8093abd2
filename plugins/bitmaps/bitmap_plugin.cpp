// SPDX-License-Identifier: MIT
#include "plugins/bitmaps/bitmap_plugin.h"

#include <cstdio>
#include <new>

namespace bitmap_plugin {
namespace {

constexpr FormatInfo formats[] = {
    { Format::Png, IO_PLUGIN_CODE('P', 'N', 'G', ' '), "Portable Network Graphics", ".png", true },
    { Format::Jpeg, IO_PLUGIN_CODE('J', 'P', 'E', 'G'), "JPEG files", ".jpg|.jpeg|.jpe", true },
    { Format::Tga, IO_PLUGIN_CODE('T', 'G', 'A', ' '), "Targa files", ".tga|.vda|.icb|.vst", true },
    { Format::Bmp, IO_PLUGIN_CODE('B', 'M', 'P', ' '), "Windows Bitmap", ".bmp|.dib", true },
    { Format::Hdr, IO_PLUGIN_CODE('H', 'D', 'R', ' '), "Radiance HDR files", ".hdr|.rgbe", true },
    { Format::Gif, IO_PLUGIN_CODE('G', 'I', 'F', ' '), "GIF files", ".gif", false },
    { Format::Psd, IO_PLUGIN_CODE('P', 'S', 'D', ' '), "Layered documents", ".psd", false },
    { Format::Pnm, IO_PLUGIN_CODE('P', 'N', 'M', ' '), "Portable pixmaps", ".pnm|.ppm|.pgm",
        false },
    { Format::Pic, IO_PLUGIN_CODE('P', 'I', 'C', ' '), "Pic softimage files", ".pic", false },
};

bool hand_out_types(IoPluginTypes &types)
{
    for (FormatInfo const &info : formats) {
        IoPluginType type;
        IO_PLUGIN_INIT(type);
        type.file_class = info.file_class;
        type.properties
            = IO_PLUGIN_BITMAP | IO_PLUGIN_LOADS | (info.can_save ? IO_PLUGIN_SAVES : 0);
        type.loader = type.saver = IO_PLUGIN_CODE('S', 'T', 'B', 'I');
        std::snprintf(type.description, sizeof type.description, "%s", info.description);
        std::snprintf(type.extensions, sizeof type.extensions, "%s", info.extensions);
        types.add(types.host, &type);
    }
    return true;
}

// No exception may leave the entry point.
template <class Request> bool answer(Request &request, bool (*work)(Request &))
{
    try {
        return work(request);
    } catch (std::bad_alloc const &) {
        return fail(request, ioNoMemory, "memory is exhausted");
    } catch (...) {
        return fail(request, ioFailed, "the picture could not be processed");
    }
}

} // namespace

std::span<FormatInfo const> get_formats()
{
    return formats;
}

Format find_format(std::uint32_t file_class)
{
    for (FormatInfo const &info : formats) {
        if (info.file_class == file_class)
            return info.format;
    }
    return Format::Unknown;
}

} // namespace bitmap_plugin

unsigned int BrantisGetPluginVersion()
{
    return IO_PLUGIN_VERSION;
}

bool InitBitmapParser(IoPluginMode mode, void *data)
{
    switch (mode) {
    case ioModeTypes:
        return bitmap_plugin::hand_out_types(*static_cast<IoPluginTypes *>(data));
    case ioModeLoad:
        return bitmap_plugin::answer(*static_cast<IoPluginLoad *>(data), bitmap_plugin::load);
    case ioModeSave:
        return bitmap_plugin::answer(*static_cast<IoPluginSave *>(data), bitmap_plugin::save);
    case ioModeRelease:
        return true;
    }
    return false;
}
