// SPDX-License-Identifier: MIT
#include "kortools/graphics/color_buffers.h"

#include "kortools/graphics/color_kernel.h"

#include <algorithm>
#include <bit>
#include <cstring>

// Bytes are taken out of and put into words of four, which vector registers do and gathering every
// fourth byte they do not. The words of a block are copied to be where no pointer of the caller
// points to; so the compiler needs no proof.
namespace kortools::graphics {
namespace {

static_assert(std::endian::native == std::endian::little); // red is the low byte of a word

constexpr std::size_t block_size = 512; // colours; all that a block needs stays in the cache

float channel_of(unsigned int word, int shift)
{
    return static_cast<float>(static_cast<int>((word >> shift) & 0xFF));
}

unsigned int word_of(float channel, int shift)
{
    return static_cast<unsigned int>(to_byte(channel)) << shift;
}

void block_to_hsl(unsigned int const *words, std::size_t count, float *__restrict hues,
    float *__restrict saturations, float *__restrict luminances)
{
    for (std::size_t i = 0; i < count; ++i) {
        unsigned int const word = words[i];
        Components const hsl = to_hsl(
            channel_of(word, 0) / 255, channel_of(word, 8) / 255, channel_of(word, 16) / 255);
        hues[i] = hsl.first;
        saturations[i] = hsl.second;
        luminances[i] = hsl.third;
    }
}

void block_from_hsl(float const *hues, float const *saturations, float const *luminances,
    std::size_t count, unsigned int *__restrict words)
{
    for (std::size_t i = 0; i < count; ++i) {
        Components const rgb = to_rgb(hues[i], saturations[i], luminances[i]);
        words[i] = (words[i] & 0xFF000000U) | word_of(rgb.first * 255, 0)
            | word_of(rgb.second * 255, 8) | word_of(rgb.third * 255, 16);
    }
}

} // namespace

void convert_to_floats(CRGBColor const *colors, std::size_t count, float *channels, float scale)
{
    auto const *const bytes = reinterpret_cast<unsigned char const *>(colors);
    float *__restrict const target = channels;
    for (std::size_t i = 0; i < 4 * count; ++i)
        target[i] = static_cast<float>(bytes[i]) / scale;
}

void convert_to_bytes(float const *channels, std::size_t count, CRGBColor *colors, float scale)
{
    auto *__restrict const target = reinterpret_cast<unsigned char *>(colors);
    for (std::size_t i = 0; i < 4 * count; ++i)
        target[i] = to_byte(channels[i] * scale);
}

void convert_to_hsl(CRGBColor const *colors, std::size_t count, HslPlanes<float> const &planes)
{
    unsigned int words[block_size];
    for (std::size_t done = 0; done < count; done += block_size) {
        std::size_t const now = std::min(block_size, count - done);
        std::memcpy(words, colors + done, now * sizeof(CRGBColor));
        block_to_hsl(
            words, now, planes.hues + done, planes.saturations + done, planes.luminances + done);
    }
}

void convert_from_hsl(HslPlanes<float const> const &planes, std::size_t count, CRGBColor *colors)
{
    unsigned int words[block_size];
    for (std::size_t done = 0; done < count; done += block_size) {
        std::size_t const now = std::min(block_size, count - done);
        std::memcpy(words, colors + done, now * sizeof(CRGBColor));
        block_from_hsl(
            planes.hues + done, planes.saturations + done, planes.luminances + done, now, words);
        std::memcpy(static_cast<void *>(colors + done), words, now * sizeof(CRGBColor));
    }
}

} // namespace kortools::graphics
