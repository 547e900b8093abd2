// SPDX-License-Identifier: MIT
// CRGBColor: a colour of four bytes, red, green, blue and alpha (255 is opaque). A plain value.
// Sums of many colours need CRGB32Color; whole buffers are converted by color_buffers.h.
//
// Real components are multiplied by a scale (255 for components from 0 to 1), limited to 0 to 255
// and truncated, not rounded: 127.5 gives 127. A NaN gives 0. Integer components keep their low 8
// bits. Where a form has no alpha it is 255.
//
// The model called HSL here is that of hue, saturation and value: the "luminance" is the largest of
// the three components, and pure red has 1. Each of the three lies in 0 to 1.
//
//   CRGBColor color(1.0F, 0.5F, 0.0F, 255.0F); // (255, 127, 0, 255)
//   color.Darken(0.25F);
//   CXTString<wchar_t> const text = color.GetRGBString(); // 191 95 0 (RGB)
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

#include <concepts>
#include <ostream>

class CXArchive;

namespace kortools::graphics {

// The byte of a scaled component.
template <std::floating_point F> constexpr unsigned char to_byte(F value)
{
    F const positive = value > 0 ? value : F(0);
    F const limited = positive < 255 ? positive : F(255);
    return static_cast<unsigned char>(static_cast<int>(limited));
}

} // namespace kortools::graphics

class KORTOOLS_API CRGBColor {
public:
    CRGBColor() = default; // opaque black
    CRGBColor(unsigned char r, unsigned char g, unsigned char b) { SetColor(r, g, b); }
    CRGBColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a)
    {
        SetColor(r, g, b, a);
    }
    CRGBColor(int r, int g, int b) { SetColor(r, g, b); }
    CRGBColor(int r, int g, int b, int a) { SetColor(r, g, b, a); }
    template <std::integral R, std::integral G, std::integral B, std::integral A = int>
    CRGBColor(R r, G g, B b, A a = 255) // of several types
    {
        SetColor(r, g, b, a);
    }

    // From the first `count` bytes, at most four; what is missing is 0, and 255 for alpha.
    CRGBColor(unsigned char const *bytes, int count) { SetColor(bytes, count); }

    // The window system's colour word: red in the low byte, then green and blue.
    CRGBColor(unsigned long colorWord) { SetColor(colorWord); }
    CRGBColor(float r, float g, float b, float scale) { SetColor(r, g, b, scale); }
    CRGBColor(float r, float g, float b, float a, float scale) { SetColor(r, g, b, a, scale); }
    CRGBColor(double r, double g, double b, float scale) { SetColor(r, g, b, scale); }
    CRGBColor(double r, double g, double b, double a, float scale) { SetColor(r, g, b, a, scale); }

    void SetColor(unsigned char r, unsigned char g, unsigned char b)
    {
        SetColor(r, g, b, static_cast<unsigned char>(255));
    }
    void SetColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a);
    void SetColor(int r, int g, int b) { SetColor(r, g, b, 255); }
    void SetColor(int r, int g, int b, int a);
    template <std::integral R, std::integral G, std::integral B, std::integral A = int>
    void SetColor(R r, G g, B b, A a = 255) // of several types
    {
        SetColor(static_cast<unsigned char>(r), static_cast<unsigned char>(g),
            static_cast<unsigned char>(b), static_cast<unsigned char>(a));
    }
    void SetColor(unsigned char const *bytes, int count);
    void SetColor(unsigned long colorWord);
    void SetColor(float r, float g, float b, float scale);
    void SetColor(float r, float g, float b, float a, float scale);
    void SetColor(double r, double g, double b, float scale);
    void SetColor(double r, double g, double b, double a, float scale);
    void SetColor3(unsigned char const *channels) { SetColor(channels, 3); }
    void SetColor3(float const *channels, float scale);
    void SetColor3(double const *channels, float scale);
    void SetColor4(unsigned char const *channels) { SetColor(channels, 4); }
    void SetColor4(float const *channels, float scale);
    void SetColor4(double const *channels, float scale);

    // --- Channels

    // The four bytes; `channel` is 0 for red to 3 for alpha and is not checked.
    unsigned char *ValPtr() { return m_channels; }
    unsigned char const *ValPtr() const { return m_channels; }
    unsigned char &operator[](int channel) { return m_channels[channel]; }
    unsigned char operator[](int channel) const { return m_channels[channel]; }

    unsigned long GetRGB() const;  // red | green << 8 | blue << 16
    unsigned long GetRGBA() const; // and alpha << 24

    // All four, real ones as channel / scale.
    void GetColor4(unsigned char *channels) const;
    void GetColor4(int *channels) const;
    void GetColor4(float *channels, float scale) const;
    void GetColor4f(float *channels, float scale) const { GetColor4(channels, scale); }
    void GetColor4d(double *channels, float scale) const;
    void Normalize(float &r, float &g, float &b) const; // from 0 to 1
    void Normalize(float &r, float &g, float &b, float &a) const;

    // --- Arithmetic on all four channels, limited to 0 to 255

    CRGBColor operator+(CRGBColor const &color) const;
    CRGBColor operator-(CRGBColor const &color) const;
    CRGBColor operator*(float factor) const;
    CRGBColor operator*(double factor) const;
    template <std::integral I> CRGBColor operator*(I factor) const
    {
        return *this * static_cast<double>(factor);
    }
    CRGBColor &operator*=(float factor) { return *this = *this * factor; }
    bool operator==(CRGBColor const &) const = default;

    // c1 x t + c2 x (1 - t): `t` is the weight of the first colour. Alpha too, or 255.
    static CRGBColor Interpolate(float t, CRGBColor const &c1, CRGBColor const &c2, bool withAlpha);

    // --- The model of hue, saturation and luminance. Alpha never changes.

    float GetHue() const; // 0 for red and greys, 1/3 for green, 2/3 for blue
    float GetSaturation() const;
    float GetLuminance() const;
    void ConvertToHSL(float &h, float &s, float &l) const;
    void InitFromHSL(float h, float s, float l);
    void SetHue(float h);        // goes round: 1.25 and -0.75 are 0.25
    void SetSaturation(float s); // limited to 0 to 1, as is the luminance
    void SetLuminance(float l);
    void Lighten(float amount); // adds to the luminance, up to 1
    void Darken(float amount);  // takes from it, down to 0
    CRGBColor CreateLighten(float amount) const;
    CRGBColor CreateDarken(float amount) const;

    // --- Texts, in the active language: "255 127 0 (RGB)", "255 127 0 255 (RGBA)"

    CXTString<wchar_t> GetRGBString() const;
    void GetRGBString(CXTString<wchar_t> &text) const { text = GetRGBString(); }
    CXTString<wchar_t> GetRGBAString() const;
    void GetRGBAString(CXTString<wchar_t> &text) const { text = GetRGBAString(); }

    // Writes or reads the four bytes, as the operators do.
    void Serialize(CXArchive &archive);

private:
    unsigned char m_channels[4] = { 0, 0, 0, 255 };
};

static_assert(sizeof(CRGBColor) == 4);

KORTOOLS_API CXArchive &operator<<(CXArchive &archive, CRGBColor const &color);
KORTOOLS_API CXArchive &operator>>(CXArchive &archive, CRGBColor &color);

// How GoogleTest shows colours.
template <std::same_as<CRGBColor> T> void PrintTo(T const &color, std::ostream *stream)
{
    *stream << '(' << int(color[0]) << ", " << int(color[1]) << ", " << int(color[2]) << ", "
            << int(color[3]) << ')';
}
