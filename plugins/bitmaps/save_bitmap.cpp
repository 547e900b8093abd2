// SPDX-License-Identifier: MIT
// Pictures are written with 8 bits per channel, but for HDR files, which hold floats. In between,
// 8 and 16 bits stand for light to the power of 1 / 2.2, as the image library takes them.
#include "plugins/bitmaps/bitmap_plugin.h"
#include "plugins/bitmaps/write_memory.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stb/stb_image_write.h>
#include <vector>

namespace bitmap_plugin {
namespace {

constexpr int default_quality = 90;
constexpr double gamma = 2.2;

struct Pixels {
    IoPluginSave const &request;
    IoPluginBitmap const &bitmap = *request.bitmap;
    std::size_t row_length = std::size_t { bitmap.width } * bitmap.channels; // values

    bool is_alpha(std::size_t column) const
    {
        return bitmap.channels % 2 == 0 && column % bitmap.channels == bitmap.channels - 1;
    }

    // A value of the picture as light, 1 is white; alpha is not light and has no gamma.
    double light(std::size_t row, std::size_t column) const
    {
        auto const *const bytes
            = static_cast<unsigned char const *>(request.rows) + row * request.stride;
        if (bitmap.depth == ioDepthFloat) {
            float value;
            std::memcpy(&value, bytes + column * sizeof value, sizeof value);
            return value;
        }
        double value = bytes[column] / 255.0;
        if (bitmap.depth == ioDepth16) {
            std::uint16_t wide;
            std::memcpy(&wide, bytes + column * sizeof wide, sizeof wide);
            value = wide / 65535.0;
        }
        return is_alpha(column) ? value : std::pow(value, gamma);
    }
};

std::vector<unsigned char> to_bytes(Pixels const &pixels)
{
    std::vector<unsigned char> result(pixels.row_length * pixels.bitmap.height);
    auto target = result.begin();
    for (std::size_t row = 0; row < pixels.bitmap.height; ++row) {
        if (pixels.bitmap.depth == ioDepth8) { // as they are
            auto const *const bytes = static_cast<unsigned char const *>(pixels.request.rows);
            target = std::copy_n(bytes + row * pixels.request.stride, pixels.row_length, target);
            continue;
        }
        for (std::size_t column = 0; column < pixels.row_length; ++column) {
            double const light = std::clamp(pixels.light(row, column), 0.0, 1.0);
            double const value = pixels.is_alpha(column) ? light : std::pow(light, 1 / gamma);
            // What is not a number fails the comparison, and is black.
            *target++ = value > 0 ? static_cast<unsigned char>(value * 255 + 0.5) : 0;
        }
    }
    return result;
}

std::vector<float> to_floats(Pixels const &pixels)
{
    std::vector<float> result;
    result.reserve(pixels.row_length * pixels.bitmap.height);
    for (std::size_t row = 0; row < pixels.bitmap.height; ++row) {
        for (std::size_t column = 0; column < pixels.row_length; ++column)
            result.push_back(static_cast<float>(pixels.light(row, column)));
    }
    return result;
}

// Where the image library's output goes; what comes after a failure is dropped.
struct Output {
    IoPluginSave &request;
    bool is_good = true;

    static void write(void *output, void *data, int size)
    {
        auto &self = *static_cast<Output *>(output);
        self.is_good = self.is_good && size >= 0
            && self.request.write(self.request.host, data, static_cast<std::size_t>(size));
    }
};

} // namespace

bool save(IoPluginSave &request)
{
    IoPluginBitmap const &bitmap = *request.bitmap;
    Pixels const pixels { request };
    Output output { request };
    int const width = static_cast<int>(bitmap.width);
    int const height = static_cast<int>(bitmap.height);
    int const channels = static_cast<int>(bitmap.channels);
    Format const format = find_format(request.file_class);
    if (pixels.row_length * bitmap.height > 0x3FFFFFFF) // the image library counts in int
        return fail(request, ioUnsupported, "the picture is too large");
    if (!request.progress(request.host, 0))
        return fail(request, ioCancelled, "cancelled");

    WriteMemory const memory;
    std::vector<unsigned char> bytes;
    if (format != Format::Hdr)
        bytes = to_bytes(pixels);
    int done = 0;
    switch (format) {
    case Format::Png:
        done = stbi_write_png_to_func(
            Output::write, &output, width, height, channels, bytes.data(), width * channels);
        break;
    case Format::Bmp:
        done
            = stbi_write_bmp_to_func(Output::write, &output, width, height, channels, bytes.data());
        break;
    case Format::Tga:
        done
            = stbi_write_tga_to_func(Output::write, &output, width, height, channels, bytes.data());
        break;
    case Format::Jpeg: {
        int const quality = request.quality ? static_cast<int>(request.quality) : default_quality;
        done = stbi_write_jpg_to_func(
            Output::write, &output, width, height, channels, bytes.data(), quality);
        break;
    }
    case Format::Hdr:
        done = stbi_write_hdr_to_func(
            Output::write, &output, width, height, channels, to_floats(pixels).data());
        break;
    default:
        return fail(request, ioUnsupported, "files of this type are not written");
    }
    if (!output.is_good)
        return fail(request, ioCannotWrite, "the file cannot be written");
    return done ? request.progress(request.host, 1)
                : fail(request, ioFailed, "the picture could not be encoded");
}

} // namespace bitmap_plugin
