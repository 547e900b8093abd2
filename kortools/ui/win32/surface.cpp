// SPDX-License-Identifier: MIT
#include "kortools/ui/win32/surface.h"

#include <algorithm>
#include <cstring>

namespace kortools::ui::win32 {
namespace {

constexpr Word white = 0xFFFFFF;

Word to_word(CRGBColor const &color)
{
    return Word(color[0]) << 16 | Word(color[1]) << 8 | color[2];
}

// For each pixel of the target from `first` on the source pixel under its middle.
std::vector<int> map_pixels(int target, int part, int first, int count)
{
    std::vector<int> sources(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        auto const middle = static_cast<std::uint64_t>(first + i) * 2 + 1; // in half pixels
        sources[static_cast<std::size_t>(i)] = static_cast<int>(
            middle * static_cast<unsigned>(part) / 2 / static_cast<unsigned>(target));
    }
    return sources;
}

CXRect intersect(CXRect const &a, CXRect const &b)
{
    CXRect const both(std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
        std::min(a.bottom, b.bottom));
    return both.left < both.right && both.top < both.bottom ? both : CXRect();
}

} // namespace

Surface::Surface()
    : m_dc(check(CreateCompatibleDC(nullptr)))
{
    SelectObject(m_dc, get_font());
    SetBkMode(m_dc, TRANSPARENT);
}

Surface::~Surface()
{
    if (m_first_bitmap)
        SelectObject(m_dc, m_first_bitmap);
    DeleteDC(m_dc);
}

void Surface::Resize(CXSize const &size)
{
    if (size == m_size && m_bitmap.get())
        return;
    BITMAPINFO info {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = std::max(size.cx, 1);
    info.bmiHeader.biHeight = -std::max(size.cy, 1); // from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void *words = nullptr;
    HBITMAP const bitmap = check(CreateDIBSection(m_dc, &info, DIB_RGB_COLORS, &words, nullptr, 0));
    HGDIOBJ const before = SelectObject(m_dc, bitmap);
    if (!m_first_bitmap)
        m_first_bitmap = before;
    m_bitmap.reset(bitmap);
    m_words = static_cast<Word *>(words);
    m_size = size;
    SetClip({ CXPoint(), size });
    FillRect(m_clip, CRGBColor(255, 255, 255));
}

void Surface::SetClip(CXRect const &clip)
{
    m_clip = intersect(clip, { CXPoint(), m_size });
    SelectClipRgn(m_dc, nullptr);
    IntersectClipRect(m_dc, m_clip.left, m_clip.top, m_clip.right, m_clip.bottom);
}

void Surface::CopyTo(HDC target, CXRect const &area) const
{
    BitBlt(target, area.left, area.top, area.Width(), area.Height(), m_dc, area.left, area.top,
        SRCCOPY);
}

void Surface::CopyFrom(HDC source)
{
    BitBlt(m_dc, 0, 0, m_size.cx, m_size.cy, source, 0, 0, SRCCOPY);
}

Picture Surface::Read() const
{
    GdiFlush();
    Picture picture { {}, m_size };
    picture.pixels.reserve(std::size_t(m_size.cx) * std::size_t(m_size.cy));
    for (int y = 0; y < m_size.cy; ++y) {
        for (Word const word : GetRow(y, 0, m_size.cx))
            picture.pixels.emplace_back(
                int(word >> 16 & 0xFF), int(word >> 8 & 0xFF), int(word & 0xFF));
    }
    return picture;
}

std::span<Word> Surface::GetRow(int y, int left, int right) const
{
    return { m_words + std::size_t(y) * std::size_t(m_size.cx) + std::size_t(left),
        std::size_t(right - left) };
}

void Surface::FillRect(CXRect const &rect, CRGBColor const &color)
{
    CXRect const area = intersect(rect, m_clip);
    GdiFlush();
    for (int y = area.top; y < area.bottom; ++y)
        std::ranges::fill(GetRow(y, area.left, area.right), to_word(color));
}

void Surface::FillPattern(CXRect const &rect, HatchPattern const &pattern, CRGBColor const &color)
{
    CXRect const area = intersect(rect, m_clip);
    GdiFlush();
    for (int y = area.top; y < area.bottom; ++y) {
        int const bits = pattern[std::size_t(y % 8)];
        Word *word = GetRow(y, area.left, area.right).data();
        for (int x = area.left; x < area.right; ++x, ++word) {
            if ((bits >> (7 - x % 8) & 1) != 0)
                *word = to_word(color);
        }
    }
}

// Every other pixel, the same ones wherever the rectangle begins.
void Surface::FillDots(CXRect const &rect, Word word)
{
    CXRect const area = intersect(rect, m_clip);
    for (int y = area.top; y < area.bottom; ++y) {
        std::span<Word> const row = GetRow(y, area.left, area.right);
        for (std::size_t i = std::size_t((area.left + y) % 2); i < row.size(); i += 2)
            row[i] = word;
    }
}

void Surface::DrawFrame(CXRect const &rect, Pen const &pen)
{
    for (CXRect const &side : get_sides(rect)) {
        if (pen.line == Pen::Line::Dotted) {
            GdiFlush();
            FillDots(side, to_word(pen.color));
        } else {
            FillRect(side, pen.color);
        }
    }
}

void Surface::DrawLine(CXPoint const &from, CXPoint const &to, Pen const &pen)
{
    LOGBRUSH const brush { BS_SOLID, pen.color.GetRGB(), 0 };
    DWORD const style = pen.line == Pen::Line::Dotted ? PS_ALTERNATE : PS_SOLID;
    DrawingObject<HPEN> const native(
        check(ExtCreatePen(PS_COSMETIC | style, 1, &brush, 0, nullptr)));
    HGDIOBJ const before = SelectObject(m_dc, native.get());
    MoveToEx(m_dc, from.x, from.y, nullptr);
    LineTo(m_dc, to.x, to.y);
    SelectObject(m_dc, before);
}

void Surface::DrawString(
    CXPoint const &position, wchar_t const *text, int length, CRGBColor const &color)
{
    SetTextColor(m_dc, color.GetRGB());
    ExtTextOutW(m_dc, position.x, position.y, 0, nullptr, text, UINT(length), nullptr);
}

void Surface::DrawPixels(CXRect const &target, Pixels const &picture, CXRect const &part)
{
    CXRect const area = intersect(target, m_clip);
    if (area.IsRectEmpty() || part.IsRectEmpty())
        return;
    std::vector<int> const columns
        = map_pixels(target.Width(), part.Width(), area.left - target.left, area.Width());
    std::vector<int> const rows
        = map_pixels(target.Height(), part.Height(), area.top - target.top, area.Height());
    GdiFlush();
    for (int y = area.top; y < area.bottom; ++y) {
        auto const source_y = std::size_t(part.top + rows[std::size_t(y - area.top)]);
        CRGBColor const *const source
            = picture.data + source_y * std::size_t(picture.stride) + std::size_t(part.left);
        std::ranges::transform(columns, GetRow(y, area.left, area.right).data(),
            [source](int column) { return to_word(source[column]); });
    }
}

std::vector<CXRect> get_sides(CXRect const &frame)
{
    if (frame.IsRectEmpty())
        return {};
    std::vector<CXRect> sides { { frame.left, frame.top, frame.right, frame.top + 1 } };
    if (frame.Height() > 1)
        sides.emplace_back(frame.left, frame.bottom - 1, frame.right, frame.bottom);
    if (frame.Height() > 2) {
        sides.emplace_back(frame.left, frame.top + 1, frame.left + 1, frame.bottom - 1);
        if (frame.Width() > 1)
            sides.emplace_back(frame.right - 1, frame.top + 1, frame.right, frame.bottom - 1);
    }
    return sides;
}

Surface::Overlay::Overlay(Surface &surface, CXRect const &frame)
    : m_surface(surface)
    , m_sides(get_sides(frame))
{
    m_surface.SetClip({ CXPoint(), m_surface.m_size });
    GdiFlush();
    for (CXRect &side : m_sides) {
        side = intersect(side, m_surface.m_clip);
        for (int y = side.top; y < side.bottom; ++y) {
            std::span<Word> const row = m_surface.GetRow(y, side.left, side.right);
            m_beneath.insert(m_beneath.end(), row.begin(), row.end());
            std::ranges::fill(row, white);
        }
        m_surface.FillDots(side, 0);
    }
}

Surface::Overlay::~Overlay()
{
    GdiFlush();
    Word const *beneath = m_beneath.data();
    for (CXRect const &side : m_sides) {
        for (int y = side.top; y < side.bottom; ++y) {
            std::span<Word> const row = m_surface.GetRow(y, side.left, side.right);
            std::copy_n(beneath, row.size(), row.begin());
            beneath += row.size();
        }
    }
}

} // namespace kortools::ui::win32
