// SPDX-License-Identifier: MIT
// Whole buffers of colours, several at a time; each result is bit for bit that of the operation of
// CRGBColor on one. Source and target must not overlap.
//
//   std::vector<float> hues(count), saturations(count), values(count);
//   kortools::graphics::convert_to_hsl(pixels, count, { hues.data(), saturations.data(),
//       values.data() });
#pragma once

#include "kortools/export.h"
#include "kortools/graphics/rgb_color.h"

#include <cstddef>

namespace kortools::graphics {

// The three components in arrays of their own.
template <class T> struct HslPlanes {
    T *hues;
    T *saturations;
    T *luminances;
};

// Four numbers for each colour, channel / scale and back.
KORTOOLS_API void convert_to_floats(
    CRGBColor const *colors, std::size_t count, float *channels, float scale);
KORTOOLS_API void convert_to_bytes(
    float const *channels, std::size_t count, CRGBColor *colors, float scale);

KORTOOLS_API void convert_to_hsl(
    CRGBColor const *colors, std::size_t count, HslPlanes<float> const &planes);

// The alpha of the colours stays.
KORTOOLS_API void convert_from_hsl(
    HslPlanes<float const> const &planes, std::size_t count, CRGBColor *colors);

} // namespace kortools::graphics
