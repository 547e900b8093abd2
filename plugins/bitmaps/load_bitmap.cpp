// SPDX-License-Identifier: MIT
// The image library takes a file that ends too early for one with zeros behind it, which some of
// its decoders then read for ever. Here every byte passes through ByteSource, which notices a read
// behind the end, gives what is no good data in any format, and so has the picture refused.
#include "plugins/bitmaps/bitmap_plugin.h"
#include "plugins/bitmaps/byte_source.h"
#include "plugins/bitmaps/jpeg_check.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stb/stb_image.h>
#include <string_view>
#include <vector>

namespace bitmap_plugin {
namespace {

constexpr std::uint64_t maximum_pixels = 1U << 28; // more than any file that should fit in memory

struct FreePixels {
    void operator()(void *pixels) const { stbi_image_free(pixels); }
};

// The format by the first bytes. Targa files have no mark: what is nothing else may be one.
Format recognize(std::string_view head)
{
    using namespace std::string_view_literals;
    struct Mark {
        std::string_view bytes;
        Format format;
    };
    static constexpr Mark marks[] = {
        { "\x89PNG\r\n\x1A\n"sv, Format::Png },
        { "\xFF\xD8\xFF"sv, Format::Jpeg },
        { "BM"sv, Format::Bmp },
        { "#?RADIANCE\n"sv, Format::Hdr },
        { "#?RGBE\n"sv, Format::Hdr },
        { "GIF8"sv, Format::Gif },
        { "8BPS"sv, Format::Psd },
        { "P5"sv, Format::Pnm },
        { "P6"sv, Format::Pnm },
        { "\x53\x80\xF6\x34"sv, Format::Pic },
    };
    for (Mark const &mark : marks) {
        if (head.starts_with(mark.bytes))
            return mark.format;
    }
    return Format::Tga;
}

unsigned int png_bits(unsigned int depth, unsigned int color_type)
{
    static constexpr unsigned int channels[] = { 1, 0, 3, 1, 2, 0, 4 };
    return color_type < std::size(channels) ? depth * channels[color_type] : 0;
}

// Bits of a pixel in the file; 0 when the format does not tell in its first bytes.
unsigned int file_bits(Format format, std::string_view head)
{
    auto const byte = [&](std::size_t at) -> unsigned int {
        return at < head.size() ? static_cast<unsigned char>(head[at]) : 0;
    };
    switch (format) {
    case Format::Png:
        return png_bits(byte(24), byte(25));
    case Format::Bmp:
        return byte(14) == 12 ? byte(24) : byte(28); // the oldest header is shorter
    case Format::Tga:
        return byte(16);
    case Format::Hdr:
        return 32;
    default:
        return 0;
    }
}

class Loader {
public:
    Loader(IoPluginLoad &request, Format format, unsigned int bits)
        : m_request(request)
        , m_source(request)
        , m_bits(bits)
        , m_format(format)
        , m_is_float(format == Format::Hdr)
    {
    }

    bool run()
    {
        if (m_format == Format::Jpeg && !is_sound_jpeg(m_source))
            return refuse("its tables are damaged");
        m_source.rewind();
        int width = 0;
        int height = 0;
        int channels = 0;
        if (!stbi_info_from_callbacks(&m_callbacks, &m_source, &width, &height, &channels))
            return refuse();
        auto const pixels = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
        if (width <= 0 || height <= 0 || pixels > maximum_pixels)
            return fail(m_request, ioUnsupported, "the picture is too large");
        m_source.rewind();
        m_is_wide = stbi_is_16_bit_from_callbacks(&m_callbacks, &m_source) != 0;
        m_source.rewind();
        std::unique_ptr<void, FreePixels> const rows(decode(width, height, channels));
        if (!rows || m_source.was_too_short())
            return refuse();
        return hand_over(rows.get(), width, height, channels);
    }

private:
    void *decode(int &width, int &height, int &channels)
    {
        if (m_is_float)
            return stbi_loadf_from_callbacks(
                &m_callbacks, &m_source, &width, &height, &channels, 0);
        if (m_is_wide)
            return stbi_load_16_from_callbacks(
                &m_callbacks, &m_source, &width, &height, &channels, 0);
        return stbi_load_from_callbacks(&m_callbacks, &m_source, &width, &height, &channels, 0);
    }

    bool hand_over(void const *rows, int width, int height, int channels)
    {
        IoPluginBitmap bitmap;
        IO_PLUGIN_INIT(bitmap);
        bitmap.width = static_cast<std::uint32_t>(width);
        bitmap.height = static_cast<std::uint32_t>(height);
        bitmap.channels = static_cast<std::uint32_t>(channels);
        bitmap.depth = m_is_float ? ioDepthFloat : m_is_wide ? ioDepth16 : ioDepth8;
        bitmap.file_bits = m_bits ? m_bits : bitmap.channels * bitmap.depth * 8;
        std::size_t const stride = std::size_t { bitmap.width } * bitmap.channels * bitmap.depth;
        return m_request.begin_bitmap(m_request.host, &bitmap)
            && m_request.add_rows(m_request.host, 0, bitmap.height, rows, stride)
            && m_request.progress(m_request.host, 1);
    }

    bool refuse(char const *reason = stbi_failure_reason())
    {
        if (m_source.is_cancelled())
            return fail(m_request, ioCancelled, "cancelled");
        if (m_source.was_too_short())
            return fail(m_request, ioDamaged, "the file is cut");
        if (reason && std::strcmp(reason, "outofmem") == 0)
            return fail(m_request, ioNoMemory, "memory is exhausted");
        return fail(m_request, ioDamaged, reason);
    }

    IoPluginLoad &m_request;
    ByteSource m_source;
    stbi_io_callbacks const m_callbacks = ByteSource::make_callbacks();
    unsigned int m_bits; // of a pixel in the file, 0: not known
    Format m_format;
    bool m_is_float;
    bool m_is_wide = false; // 16 bits per channel
};

} // namespace

bool load(IoPluginLoad &request)
{
    char bytes[32];
    std::size_t const size = request.read(request.host, 0, bytes, sizeof bytes);
    std::string_view const head(bytes, size);
    if (head.empty())
        return fail(request, ioDamaged, "the file is empty");
    Format const format = recognize(head);
    if (format == Format::Tga && find_format(request.file_class) != Format::Tga)
        return fail(request, ioWrongFormat, "not a picture of a known format");
    return Loader(request, format, file_bits(format, head)).run();
}

} // namespace bitmap_plugin
