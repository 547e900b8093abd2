// SPDX-License-Identifier: MIT
// The arithmetic of the colour model without branches, for one colour and for loops that the
// compiler vectorises: every path is computed and one of them chosen.
#pragma once

namespace kortools::graphics {

struct Components {
    float first; // red or hue
    float second;
    float third;
};

// As a hexagon seen along its grey axis: the largest component tells the two of six sectors, the
// smallest which of them, and the one between the place inside. Of equal largest ones red is taken,
// then blue, then green.
inline Components to_hsl(float r, float g, float b)
{
    float const larger = r > g ? r : g;
    float const smaller = r < g ? r : g;
    float const maximum = larger > b ? larger : b;
    float const minimum = smaller < b ? smaller : b;
    bool const is_grey = maximum == minimum || maximum == 0;

    float const delta = is_grey ? 1.0F : maximum - minimum; // no division by 0
    float const rc = (maximum - r) / delta;
    float const gc = (maximum - g) / delta;
    float const bc = (maximum - b) / delta;
    float const from_red = g == minimum ? 5 + bc : 1 - gc;
    float const from_blue = r == minimum ? 3 + gc : 5 - rc;
    float const from_green = b == minimum ? 1 + rc : 3 - bc;
    float const not_red = g != maximum ? from_blue : from_green;
    float const turns = (r == maximum ? from_red : not_red) / 6;
    float const hue = turns >= 1 ? turns - 1 : turns;
    float const saturation = 1 - minimum / (is_grey ? 1.0F : maximum);
    return { is_grey ? 0.0F : hue, is_grey ? 0.0F : saturation, maximum };
}

inline float limit_to_one(float value)
{
    float const positive = value > 0 ? value : 0.0F;
    return positive < 1 ? positive : 1.0F;
}

inline Components to_rgb(float h, float s, float l)
{
    float const v = limit_to_one(l);
    float const x = limit_to_one(h) * 6;
    int const sector = static_cast<int>(x); // 6 for a hue of 1, with nothing over
    float const f = x - static_cast<float>(sector);
    float const p = v * (1 - limit_to_one(s));
    float const falling = v - (v - p) * f;
    float const rising = p + (v - p) * f;
    auto const choose = [=](int shifted) { // falls in 1, is least in 2 and 3, rises in 4
        float const outer = shifted == 4 ? rising : v;
        float const inner = shifted == 1 ? falling : p;
        return shifted >= 1 && shifted <= 3 ? inner : outer;
    };
    // The three go through the same sectors, two apart.
    return { choose(sector), choose(sector < 2 ? sector + 4 : sector - 2),
        choose(sector < 4 ? sector + 2 : sector - 4) };
}

} // namespace kortools::graphics
