// SPDX-License-Identifier: MIT
#include "kortools/graphics/wide_color.h"

#include <limits>

namespace {

unsigned int truncate(float value)
{
    constexpr unsigned int maximum = std::numeric_limits<unsigned int>::max();
    if (!(value > 0))
        return 0;
    return value < static_cast<float>(maximum) ? static_cast<unsigned int>(value) : maximum;
}

} // namespace

void CRGB32Color::SetColor(unsigned int r, unsigned int g, unsigned int b, unsigned int a)
{
    m_channels[0] = r;
    m_channels[1] = g;
    m_channels[2] = b;
    m_channels[3] = a;
}

CRGB32Color &CRGB32Color::operator=(CRGBColor const &color)
{
    SetColor(color[0], color[1], color[2], color[3]);
    return *this;
}

CRGB32Color &CRGB32Color::operator+=(CRGBColor const &color)
{
    for (int i = 0; i < 4; ++i)
        m_channels[i] += color[i];
    return *this;
}

CRGB32Color &CRGB32Color::operator-=(CRGBColor const &color)
{
    for (int i = 0; i < 4; ++i)
        m_channels[i] -= color[i];
    return *this;
}

CRGB32Color &CRGB32Color::operator*=(float factor)
{
    for (unsigned int &channel : m_channels)
        channel = truncate(static_cast<float>(channel) * factor);
    return *this;
}

CRGBColor CRGB32Color::ConvertToRGBColor(float divisor) const
{
    CRGBColor color;
    for (int i = 0; i < 4; ++i)
        color[i]
            = static_cast<unsigned char>(truncate(static_cast<float>(m_channels[i]) / divisor));
    return color;
}
