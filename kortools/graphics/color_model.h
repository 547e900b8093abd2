// SPDX-License-Identifier: MIT
// The colour model of hue, saturation and value, which the interface calls HSL. See rgb_color.h.
#pragma once

#include "kortools/export.h"

// Components in 0 to 1. `l` is the largest of the three; a grey has hue 0 and saturation 0.
KORTOOLS_API void ConvertRGBToHSL(float r, float g, float b, float &h, float &s, float &l);

// What lies outside 0 to 1 is limited to it; hue 1 is red, as 0 is.
KORTOOLS_API void ConvertHSLToRGB(float h, float s, float l, float &r, float &g, float &b);
