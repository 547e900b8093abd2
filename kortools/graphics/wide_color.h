// SPDX-License-Identifier: MIT
// CRGB32Color: four 32-bit channels in which colours are summed up before the sum is divided by
// their number. A plain value; channels wrap around.
//
//   CRGB32Color sum(0, 0, 0, 0);
//   for (CRGBColor const &pixel : pixels)
//       sum += pixel;
//   CRGBColor const average = sum.ConvertToRGBColor(static_cast<float>(pixels.size()));
#pragma once

#include "kortools/export.h"
#include "kortools/graphics/rgb_color.h"

#include <concepts>
#include <ostream>

class KORTOOLS_API CRGB32Color {
public:
    static constexpr unsigned int default_alpha = 0xFFFFFF; // 24 bits, all that a float can tell

    CRGB32Color() = default; // black
    CRGB32Color(unsigned int r, unsigned int g, unsigned int b, unsigned int a = default_alpha)
    {
        SetColor(r, g, b, a);
    }

    void SetColor(unsigned int r, unsigned int g, unsigned int b, unsigned int a = default_alpha);
    CRGB32Color &operator=(CRGBColor const &color);

    // `channel` is 0 for red to 3 for alpha and is not checked.
    unsigned int &operator[](int channel) { return m_channels[channel]; }
    unsigned int operator[](int channel) const { return m_channels[channel]; }

    CRGB32Color &operator+=(CRGBColor const &color);
    CRGB32Color &operator-=(CRGBColor const &color);

    // Truncates; below 0 gives 0, above 2^32 - 1 that.
    CRGB32Color &operator*=(float factor);
    bool operator==(CRGB32Color const &) const = default;

    // The low bytes of channel / divisor, truncated and limited to 32 bits.
    CRGBColor ConvertToRGBColor(float divisor) const;

private:
    unsigned int m_channels[4] = { 0, 0, 0, default_alpha };
};

// How GoogleTest shows colours.
template <std::same_as<CRGB32Color> T> void PrintTo(T const &color, std::ostream *stream)
{
    *stream << '(' << color[0] << ", " << color[1] << ", " << color[2] << ", " << color[3] << ')';
}
