// SPDX-License-Identifier: MIT
#include "tests/ui/pixel_dc.h"

#include <algorithm>
#include <cstdlib>

namespace kor_test {

using kortools::ui::Pen;

// Draws the pixels for which there is a colour.
template <class Color> void PixelDC::draw(CXRect const &rect, Color const &color_at)
{
    CXRect const drawn = rect & m_clip;
    for (int y = drawn.top; y < drawn.bottom; ++y) {
        for (int x = drawn.left; x < drawn.right; ++x) {
            if (CRGBColor const *const color = color_at(x, y))
                m_picture.pixels[std::size_t(y * m_picture.size.cx + x)] = *color;
        }
    }
}

void PixelDC::FillRect(CXRect const &rect, CRGBColor const &color)
{
    draw(rect, [&](int, int) { return &color; });
}

void PixelDC::FillPattern(
    CXRect const &rect, kortools::ui::HatchPattern const &pattern, CRGBColor const &color)
{
    draw(rect, [&](int x, int y) {
        return (pattern[std::size_t(y & 7)] << (x & 7) & 0x80) != 0 ? &color : nullptr;
    });
}

void PixelDC::DrawFrame(CXRect const &rect, Pen const &pen)
{
    bool const is_solid = pen.line == Pen::Line::Solid;
    draw(rect, [&](int x, int y) {
        bool const is_edge
            = x == rect.left || x == rect.right - 1 || y == rect.top || y == rect.bottom - 1;
        return is_edge && (is_solid || ((x + y) & 1) == 0) ? &pen.color : nullptr;
    });
}

void PixelDC::DrawLine(CXPoint const &from, CXPoint const &to, Pen const &pen)
{
    CXSize const way = to - from;
    int const length = std::max(std::abs(way.cx), std::abs(way.cy));
    int const step = pen.line == Pen::Line::Solid ? 1 : 2;
    for (int i = 0; i < length; i += step) {
        auto const along = [&](int distance) {
            double const exact = double(distance) * i / length;
            return int(exact < 0 ? exact - 0.5 : exact + 0.5);
        };
        FillRect(CXRect(from + CXSize(along(way.cx), along(way.cy)), CXSize(1, 1)), pen.color);
    }
}

// Letters are 8 pixels wide and 12 high, each with bars that its number makes.
void PixelDC::DrawString(
    CXPoint const &position, wchar_t const *text, int length, CRGBColor const &color)
{
    CXRect const extent(position, CXSize(8 * length, 12));
    draw(extent, [&](int x, int y) {
        int const bit = (x - position.x) % 8;
        wchar_t const letter = text[(x - position.x) / 8];
        return letter != ' ' && y > position.y && (letter >> bit & 1) != 0 ? &color : nullptr;
    });
}

void PixelDC::DrawPixels(
    CXRect const &target, kortools::ui::Pixels const &picture, CXRect const &part)
{
    auto const source = [](int pixel, int low, int size, int part_low, int part_size) {
        long long const doubled = 2LL * (pixel - low) + 1;
        return part_low + int(doubled * part_size / (2LL * size));
    };
    draw(target, [&](int x, int y) {
        int const row = source(y, target.top, target.Height(), part.top, part.Height());
        int const column = source(x, target.left, target.Width(), part.left, part.Width());
        return picture.data + std::ptrdiff_t(row) * picture.stride + column;
    });
}

} // namespace kor_test
