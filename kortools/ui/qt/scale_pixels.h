// SPDX-License-Identifier: MIT
// Pictures of the library as pixels of Qt's images.
#pragma once

#include "kortools/graphics/rect.h"
#include "kortools/ui/pixels.h"

#include <cstddef>
#include <cstdint>

namespace kortools::ui::qt {

// Where opaque pixels of 0xAARRGGBB are written: the first of `clip`, and the pixels from one row
// to the next.
struct PixelTarget {
    std::uint32_t *data;
    std::ptrdiff_t stride;
};

// The part of the picture that fills `target`, as much of it as lies in `clip`, which must lie in
// `target`: for each pixel the one under its middle.
void scale_pixels(Pixels const &picture, CXRect const &part, CXRect const &target,
    CXRect const &clip, PixelTarget const &to);

// Of opaque pixels.
Picture to_picture(std::uint32_t const *data, std::ptrdiff_t stride, CXSize const &size);

} // namespace kortools::ui::qt
