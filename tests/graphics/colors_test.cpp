// SPDX-License-Identifier: MIT
#include "kortools/graphics/rgb_color.h"

#include "kortools/archive/archive.h"
#include "kortools/archive/mem_file.h"
#include "kortools/graphics/color_buffers.h"
#include "kortools/graphics/color_model.h"
#include "kortools/graphics/named_colors.h"
#include "kortools/graphics/wide_color.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

using Triple = std::array<float, 3>;

// The model step by step.
Triple model_hsl(float r, float g, float b)
{
    float const max = std::max({ r, g, b });
    float const min = std::min({ r, g, b });
    if (max == 0 || max == min)
        return { 0, 0, max };
    float const rc = (max - r) / (max - min);
    float const gc = (max - g) / (max - min);
    float const bc = (max - b) / (max - min);
    float h = 0;
    if (r == max)
        h = g == min ? 5 + bc : 1 - gc;
    else if (g != max)
        h = r == min ? 3 + gc : 5 - rc;
    else
        h = b == min ? 1 + rc : 3 - bc;
    h /= 6;
    return { h >= 1 ? h - 1 : h, 1 - min / max, max };
}

Triple model_rgb(float h, float s, float l)
{
    if (l <= 0)
        return {};
    float const v = std::min(l, 1.0F);
    float const x = std::clamp(h, 0.0F, 1.0F) * 6;
    int const i = static_cast<int>(x);
    float const f = x - static_cast<float>(i);
    float const p = v * (1 - std::clamp(s, 0.0F, 1.0F));
    float const q = v - (v - p) * f;
    float const t = p + (v - p) * f;
    Triple const sectors[] { { v, t, p }, { q, v, p }, { p, v, t }, { p, q, v }, { t, p, v },
        { v, p, q }, { v, t, p } };
    return sectors[i];
}

Triple hsl_of(CRGBColor const &color)
{
    Triple hsl {};
    color.ConvertToHSL(hsl[0], hsl[1], hsl[2]);
    return hsl;
}

// Every combination of a few channel values, ties and both ends among them.
std::vector<CRGBColor> some_colors()
{
    std::vector<CRGBColor> colors;
    int const values[] { 0, 1, 2, 51, 100, 127, 128, 191, 200, 254, 255 };
    for (int const r : values) {
        for (int const g : values) {
            for (int const b : values)
                colors.emplace_back(r, g, b, (r + 2 * g) & 255);
        }
    }
    return colors;
}

} // namespace

TEST(Colors, TakeComponentsOfEveryType)
{
    EXPECT_EQ(CRGBColor(), CRGBColor(0, 0, 0, 255));
    EXPECT_EQ(CRGBColor(1.0F, 0.5F, 0.0F, 255.0F), CRGBColor(255, 127, 0, 255));
    EXPECT_EQ(CRGBColor(2.0F, -1.0F, nan, 0.9999F, 255.0F), CRGBColor(255, 0, 0, 254));
    EXPECT_EQ(CRGBColor(1e300, 0.5, -1e300, 0.25, 100.0F), CRGBColor(255, 50, 0, 25));
    EXPECT_EQ(CRGBColor(0x11332211UL), CRGBColor(0x11, 0x22, 0x33, 255));
    unsigned char const bytes[] { 9, 8, 7, 6, 5 };
    EXPECT_EQ(CRGBColor(bytes, 3), CRGBColor(9, 8, 7, 255));
    EXPECT_EQ(CRGBColor(bytes, 5), CRGBColor(bytes[0], bytes[1], 7, 6)); // mixed types, too
    float const reals[] { 0.1F, 0.2F, 0.3F, 0.4F };
    CRGBColor color;
    color.SetColor4(reals, 100);
    EXPECT_EQ(color, CRGBColor(10, 20, 30, 40));
}

TEST(Colors, ComputeWithinTheirLimits)
{
    CRGBColor const a(200, 100, 10, 40);
    CRGBColor const b(100, 120, 10, 20);
    EXPECT_EQ(a + b, CRGBColor(255, 220, 20, 60));
    EXPECT_EQ(a - b, CRGBColor(100, 0, 0, 20));
    EXPECT_EQ(a * 0.29F, CRGBColor(58, 29, 2, 11)); // 100 x 0.29F is 29 as a float
    EXPECT_EQ(a * 0.29, CRGBColor(57, 28, 2, 11));  // and just below as a double
    EXPECT_EQ(CRGBColor::Interpolate(0.25F, a, b, true), CRGBColor(125, 115, 10, 25));
    EXPECT_EQ(CRGBColor::Interpolate(2, a, b, true), CRGBColor(255, 80, 10, 60));

    CRGB32Color sum;
    EXPECT_EQ(sum, CRGB32Color(0, 0, 0, 0xFFFFFF));
    sum += CRGBColor(1, 2, 3, 1);
    sum -= CRGBColor(2, 2, 2, 0);
    EXPECT_EQ(sum, CRGB32Color(0xFFFFFFFF, 0, 1, 0x1000000)); // not limited
    sum.SetColor(1000, 514, 3);
    EXPECT_EQ(sum.ConvertToRGBColor(2), CRGBColor(500 & 255, 257 & 255, 1, 255));
    sum *= 0.5F;
    EXPECT_EQ(sum, CRGB32Color(500, 257, 1, 8388607));
}

TEST(Colors, FollowTheModelOneByOneAndInBuffers)
{
    std::vector<CRGBColor> const colors = some_colors();
    std::size_t const count = colors.size();
    std::vector<float> planes[3];
    for (std::vector<float> &plane : planes)
        plane.resize(count + 1, -7);
    kortools::graphics::convert_to_hsl(
        colors.data(), count, { planes[0].data(), planes[1].data(), planes[2].data() });
    std::vector<CRGBColor> back(count, CRGBColor(0, 0, 0, 77));
    kortools::graphics::convert_from_hsl(
        { planes[0].data(), planes[1].data(), planes[2].data() }, count, back.data());
    for (std::size_t i = 0; i < count; ++i) {
        CRGBColor const &color = colors[i];
        SCOPED_TRACE(testing::PrintToString(color));
        float r = 0;
        float g = 0;
        float b = 0;
        color.Normalize(r, g, b);
        Triple const hsl = model_hsl(r, g, b);
        ASSERT_EQ(hsl_of(color), hsl);
        ASSERT_EQ((Triple { planes[0][i], planes[1][i], planes[2][i] }), hsl);
        Triple const rgb = model_rgb(hsl[0], hsl[1], hsl[2]);
        CRGBColor expected(rgb[0], rgb[1], rgb[2], 255.0F);
        expected[3] = 77;
        ASSERT_EQ(back[i], expected);
        CRGBColor single(0, 0, 0, 77);
        single.InitFromHSL(hsl[0], hsl[1], hsl[2]);
        ASSERT_EQ(single, expected);
    }
    EXPECT_EQ(planes[2][count], -7);
}

TEST(Colors, ConvertModelComponentsOutOfRange)
{
    for (float const h : { -1.0F, 0.0F, 0.1F, 1 / 6.0F, 0.25F, 0.5F, 0.7F, 0.9F, 1.0F, 3.0F }) {
        for (float const s : { -1.0F, 0.0F, 0.5F, 1.0F, 2.0F }) {
            for (float const l : { -1.0F, 0.0F, 0.3F, 1.0F, 7.0F }) {
                Triple rgb {};
                ConvertHSLToRGB(h, s, l, rgb[0], rgb[1], rgb[2]);
                ASSERT_EQ(rgb, model_rgb(h, s, l)) << h << ' ' << s << ' ' << l;
            }
        }
    }
    CRGBColor color(255, 0, 0);
    color.SetHue(-0.25F);
    EXPECT_EQ(color.GetHue(), CRGBColor(127, 0, 255).GetHue());
    color.SetHue(2.5F);
    EXPECT_EQ(color, CRGBColor(0, 255, 255));
    color.SetSaturation(-3);
    EXPECT_EQ(color, CRGBColor(255, 255, 255));
}

TEST(Colors, AreFourBytesInAnArchive)
{
    CXMemFile file;
    CXArchive out(&file, CXArchive::store);
    CRGBColor color(1, 2, 3, 4);
    out << color;
    color.Serialize(out);
    out.Close();
    ASSERT_EQ(file.GetLength(), 8U);
    file.Seek(0, CXFile::begin);
    unsigned char bytes[8];
    file.Read(bytes, 8);
    EXPECT_EQ(std::vector<int>(bytes, bytes + 8), (std::vector<int> { 1, 2, 3, 4, 1, 2, 3, 4 }));
    file.Seek(0, CXFile::begin);
    CXArchive in(&file, CXArchive::load);
    CRGBColor read;
    in >> read;
    EXPECT_EQ(read, color);
    read = CRGBColor();
    read.Serialize(in);
    EXPECT_EQ(read, color);
}

TEST(NamedColors, AreReadInTheirOrder)
{
    using kortools::graphics::Theme;
    struct Row {
        wchar_t const *text;
        unsigned long light, dark; // 0xBBGGRR
    } const rows[] = { { L"aliceblue", 0xFFF8F0, 0xFFF8F0 }, { L"YELLOWGREEN", 0x32CD9A, 0x32CD9A },
        { L"LightGoldenrodYellow", 0xD2FAFA, 0xD2FAFA }, { L"Grey", 0x808080, 0x808080 },
        { L"darkslategray", 0x4F4F2F, 0x4F4F2F }, { L"Red", 0x0000FF, 0x6257F5 },
        { L"green", 0x008000, 0x34D5A0 }, { L"bluE", 0xFF0000, 0xFFDC9C },
        { L"lime", 0x00FF00, 0x00FF00 }, { L" red", 0, 0 }, { L"", 0, 0 }, { L"lightgold", 0, 0 },
        { L"a name longer than any colour has", 0, 0 }, { L"#FF0000", 0x0000FF, 0x0000FF },
        { L"#1a2B3c", 0x3C2B1A, 0x3C2B1A }, { L"#FFF", 0, 0 }, { L"x#FF000", 0, 0 },
        { L"#FF00001", 0, 0 }, { L"#1G0aZZ", 0x000A01, 0x000A01 },
        { L"10,20,30", 0x14140A, 0x14140A }, { L" 300 , -1, 7", 0xFFFF2C, 0xFFFF2C },
        { L"red,#12", 0, 0 }, { L"4294967297,+3", 0x030301, 0x030301 } };
    for (Row const &row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.text));
        kortools::graphics::set_theme(Theme::Dark);
        EXPECT_EQ(CXNamedColors(row.text).GetColor(), row.dark);
        kortools::graphics::set_theme(Theme::Light);
        EXPECT_EQ(CXNamedColors(row.text).GetColor(), row.light);
    }
    EXPECT_EQ(CRGBColor(CXNamedColors(L"coral")), CRGBColor(255, 127, 80));
}
