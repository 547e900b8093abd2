// SPDX-License-Identifier: MIT
#include "kortools/graphics/color_model.h"

#include "kortools/graphics/color_kernel.h"

void ConvertRGBToHSL(float r, float g, float b, float &h, float &s, float &l)
{
    kortools::graphics::Components const hsl = kortools::graphics::to_hsl(r, g, b);
    h = hsl.first;
    s = hsl.second;
    l = hsl.third;
}

void ConvertHSLToRGB(float h, float s, float l, float &r, float &g, float &b)
{
    kortools::graphics::Components const rgb = kortools::graphics::to_rgb(h, s, l);
    r = rgb.first;
    g = rgb.second;
    b = rgb.third;
}
