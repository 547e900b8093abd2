// SPDX-License-Identifier: MIT
// Pictures in the formats that stb reads and writes: which ones, and the two requests.
#pragma once

#include "kortools/files/io_plugin.h"

#include <cstdint>
#include <span>

namespace bitmap_plugin {

enum class Format { Png, Jpeg, Tga, Bmp, Hdr, Gif, Psd, Pnm, Pic, Unknown };

struct FormatInfo {
    Format format;
    std::uint32_t file_class;
    char const *description;
    char const *extensions;
    bool can_save;
};
std::span<FormatInfo const> get_formats();
Format find_format(std::uint32_t file_class);

bool load(IoPluginLoad &request);
bool save(IoPluginSave &request);

// For `return fail(request, ioDamaged, "the file is cut");`.
template <class Request> bool fail(Request &request, IoPluginResult result, char const *error)
{
    request.result = result;
    std::size_t length = 0;
    for (; error && error[length] && length + 1 < sizeof request.error; ++length)
        request.error[length] = error[length];
    request.error[length] = '\0';
    return false;
}

} // namespace bitmap_plugin
