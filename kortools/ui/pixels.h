// SPDX-License-Identifier: MIT
// Pictures in memory.
#pragma once

#include "kortools/graphics/point.h"
#include "kortools/graphics/rgb_color.h"

#include <vector>

namespace kortools::ui {

// Rows from the top, `stride` pixels from one to the next. Does not own what it points to.
struct Pixels {
    CRGBColor const *data = nullptr;
    CXSize size;
    int stride = 0;
};

// A picture that owns its pixels, without gaps between its rows.
struct Picture {
    std::vector<CRGBColor> pixels;
    CXSize size;

    Pixels view() const { return { pixels.data(), size, size.cx }; }
    CRGBColor const &at(int x, int y) const
    {
        return pixels[std::size_t(y) * std::size_t(size.cx) + std::size_t(x)];
    }
};

} // namespace kortools::ui
