// SPDX-License-Identifier: MIT
#include "kortools/graphics/rgb_color.h"

#include "kortools/archive/archive.h"
#include "kortools/graphics/color_model.h"

#include <algorithm>
#include <cmath>

using kortools::graphics::to_byte;

namespace {

constexpr unsigned int rgb_format = 5340; // numbers of texts
constexpr unsigned int rgba_format = 5341;

// Each channel of a colour by a rule on the channels of two.
template <class Rule> CRGBColor combine(CRGBColor const &a, CRGBColor const &b, Rule rule)
{
    CRGBColor result;
    for (int i = 0; i < 4; ++i)
        result[i] = rule(a[i], b[i]);
    return result;
}

struct Hsl {
    float h;
    float s;
    float l;
};

Hsl hsl_of(CRGBColor const &color)
{
    Hsl hsl {};
    color.ConvertToHSL(hsl.h, hsl.s, hsl.l);
    return hsl;
}

} // namespace

void CRGBColor::SetColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a)
{
    m_channels[0] = r;
    m_channels[1] = g;
    m_channels[2] = b;
    m_channels[3] = a;
}

void CRGBColor::SetColor(int r, int g, int b, int a)
{
    SetColor(static_cast<unsigned char>(r), static_cast<unsigned char>(g),
        static_cast<unsigned char>(b), static_cast<unsigned char>(a));
}

void CRGBColor::SetColor(unsigned char const *bytes, int count)
{
    CRGBColor color;
    std::copy_n(bytes, std::clamp(count, 0, 4), color.m_channels);
    *this = color;
}

void CRGBColor::SetColor(unsigned long colorWord)
{
    SetColor(static_cast<unsigned char>(colorWord), static_cast<unsigned char>(colorWord >> 8),
        static_cast<unsigned char>(colorWord >> 16));
}

void CRGBColor::SetColor(float r, float g, float b, float scale)
{
    SetColor(to_byte(r * scale), to_byte(g * scale), to_byte(b * scale));
}

void CRGBColor::SetColor(float r, float g, float b, float a, float scale)
{
    SetColor(to_byte(r * scale), to_byte(g * scale), to_byte(b * scale), to_byte(a * scale));
}

void CRGBColor::SetColor(double r, double g, double b, float scale)
{
    SetColor(to_byte(r * scale), to_byte(g * scale), to_byte(b * scale));
}

void CRGBColor::SetColor(double r, double g, double b, double a, float scale)
{
    SetColor(to_byte(r * scale), to_byte(g * scale), to_byte(b * scale), to_byte(a * scale));
}

void CRGBColor::SetColor3(float const *channels, float scale)
{
    SetColor(channels[0], channels[1], channels[2], scale);
}

void CRGBColor::SetColor3(double const *channels, float scale)
{
    SetColor(channels[0], channels[1], channels[2], scale);
}

void CRGBColor::SetColor4(float const *channels, float scale)
{
    SetColor(channels[0], channels[1], channels[2], channels[3], scale);
}

void CRGBColor::SetColor4(double const *channels, float scale)
{
    SetColor(channels[0], channels[1], channels[2], channels[3], scale);
}

unsigned long CRGBColor::GetRGB() const
{
    return GetRGBA() & 0xFFFFFF;
}

unsigned long CRGBColor::GetRGBA() const
{
    auto const at = [this](int i) { return static_cast<unsigned long>(m_channels[i]) << (8 * i); };
    return at(0) | at(1) | at(2) | at(3);
}

void CRGBColor::GetColor4(unsigned char *channels) const
{
    std::copy_n(m_channels, 4, channels);
}

void CRGBColor::GetColor4(int *channels) const
{
    std::copy_n(m_channels, 4, channels);
}

void CRGBColor::GetColor4(float *channels, float scale) const
{
    std::transform(m_channels, m_channels + 4, channels,
        [scale](unsigned char channel) { return static_cast<float>(channel) / scale; });
}

void CRGBColor::GetColor4d(double *channels, float scale) const
{
    std::transform(m_channels, m_channels + 4, channels,
        [scale](unsigned char channel) { return channel / static_cast<double>(scale); });
}

void CRGBColor::Normalize(float &r, float &g, float &b) const
{
    float a = 0;
    Normalize(r, g, b, a);
}

void CRGBColor::Normalize(float &r, float &g, float &b, float &a) const
{
    r = static_cast<float>(m_channels[0]) / 255;
    g = static_cast<float>(m_channels[1]) / 255;
    b = static_cast<float>(m_channels[2]) / 255;
    a = static_cast<float>(m_channels[3]) / 255;
}

CRGBColor CRGBColor::operator+(CRGBColor const &color) const
{
    return combine(*this, color,
        [](int a, int b) { return static_cast<unsigned char>(std::min(a + b, 255)); });
}

CRGBColor CRGBColor::operator-(CRGBColor const &color) const
{
    return combine(
        *this, color, [](int a, int b) { return static_cast<unsigned char>(std::max(a - b, 0)); });
}

CRGBColor CRGBColor::operator*(float factor) const
{
    return combine(*this, *this, [factor](unsigned char a, unsigned char) {
        return to_byte(static_cast<float>(a) * factor);
    });
}

CRGBColor CRGBColor::operator*(double factor) const
{
    return combine(
        *this, *this, [factor](unsigned char a, unsigned char) { return to_byte(a * factor); });
}

CRGBColor CRGBColor::Interpolate(float t, CRGBColor const &c1, CRGBColor const &c2, bool withAlpha)
{
    CRGBColor blend = combine(c1, c2, [t](unsigned char a, unsigned char b) {
        return to_byte(static_cast<float>(a) * t + static_cast<float>(b) * (1 - t));
    });
    if (!withAlpha)
        blend[3] = 255;
    return blend;
}

float CRGBColor::GetHue() const
{
    return hsl_of(*this).h;
}

float CRGBColor::GetSaturation() const
{
    return hsl_of(*this).s;
}

float CRGBColor::GetLuminance() const
{
    return hsl_of(*this).l;
}

void CRGBColor::ConvertToHSL(float &h, float &s, float &l) const
{
    float r = 0;
    float g = 0;
    float b = 0;
    Normalize(r, g, b);
    ConvertRGBToHSL(r, g, b, h, s, l);
}

void CRGBColor::InitFromHSL(float h, float s, float l)
{
    float r = 0;
    float g = 0;
    float b = 0;
    ConvertHSLToRGB(h, s, l, r, g, b);
    SetColor(to_byte(r * 255), to_byte(g * 255), to_byte(b * 255), m_channels[3]);
}

void CRGBColor::SetHue(float h)
{
    if (h < 0)
        h = 1 + (h - std::trunc(h));
    else if (h > 1)
        h = h - std::trunc(h);
    Hsl const hsl = hsl_of(*this);
    InitFromHSL(h, hsl.s, hsl.l);
}

void CRGBColor::SetSaturation(float s)
{
    Hsl const hsl = hsl_of(*this);
    InitFromHSL(hsl.h, s, hsl.l); // which limits it
}

void CRGBColor::SetLuminance(float l)
{
    Hsl const hsl = hsl_of(*this);
    InitFromHSL(hsl.h, hsl.s, l);
}

void CRGBColor::Lighten(float amount)
{
    SetLuminance(GetLuminance() + amount);
}

void CRGBColor::Darken(float amount)
{
    SetLuminance(GetLuminance() - amount);
}

CRGBColor CRGBColor::CreateLighten(float amount) const
{
    CRGBColor color = *this;
    color.Lighten(amount);
    return color;
}

CRGBColor CRGBColor::CreateDarken(float amount) const
{
    CRGBColor color = *this;
    color.Darken(amount);
    return color;
}

CXTString<wchar_t> CRGBColor::GetRGBString() const
{
    CXTString<wchar_t> text;
    text.Format(rgb_format, m_channels[0], m_channels[1], m_channels[2]);
    return text;
}

CXTString<wchar_t> CRGBColor::GetRGBAString() const
{
    CXTString<wchar_t> text;
    text.Format(rgba_format, m_channels[0], m_channels[1], m_channels[2], m_channels[3]);
    return text;
}

void CRGBColor::Serialize(CXArchive &archive)
{
    if (archive.IsLoading())
        archive >> *this;
    else
        archive << *this;
}

CXArchive &operator<<(CXArchive &archive, CRGBColor const &color)
{
    archive.WriteValues(color.ValPtr(), 4);
    return archive;
}

CXArchive &operator>>(CXArchive &archive, CRGBColor &color)
{
    archive.ReadValues(color.ValPtr(), 4);
    return archive;
}
