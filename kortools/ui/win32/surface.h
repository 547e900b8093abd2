// SPDX-License-Identifier: MIT
// Surface: what a view shows, kept in memory. It is painted there and copied to the window in one
// go, so nothing flickers, and a frame above it comes and goes without anything being painted anew.
//
// The system draws texts and slanted lines; everything else is written into the pixels here: the
// system's own scaling rounds otherwise than wanted, and its dots depend on the driver.
#pragma once

#include "kortools/ui/win32/native.h"
#include "kortools/ui/window.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kortools::ui::win32 {

// As the system has it: blue in the low byte. Alpha is 0.
using Word = std::uint32_t;

class Surface : public CDC {
public:
    Surface();
    ~Surface() override;

    // Contents are lost when the size changes.
    void Resize(CXSize const &size);
    CXSize GetSize() const { return m_size; }

    // Until the next call everything outside is left alone.
    void SetClip(CXRect const &clip);

    void CopyTo(HDC target, CXRect const &area) const;
    void CopyFrom(HDC source); // as much as it holds
    Picture Read() const;

    // Puts a frame above the contents for as long as the object lives.
    class Overlay;

    void FillRect(CXRect const &rect, CRGBColor const &color) override;
    void FillPattern(
        CXRect const &rect, HatchPattern const &pattern, CRGBColor const &color) override;
    void DrawFrame(CXRect const &rect, Pen const &pen) override;
    void DrawLine(CXPoint const &from, CXPoint const &to, Pen const &pen) override;
    void DrawString(
        CXPoint const &position, wchar_t const *text, int length, CRGBColor const &color) override;
    void DrawPixels(CXRect const &target, Pixels const &picture, CXRect const &part) override;
    CXRect GetClipBox() const override { return m_clip; }

private:
    std::span<Word> GetRow(int y, int left, int right) const;
    void FillDots(CXRect const &rect, Word word);

    HDC m_dc;
    DrawingObject<HBITMAP> m_bitmap;
    HGDIOBJ m_first_bitmap = nullptr; // what the context came with
    Word *m_words = nullptr;
    CXSize m_size;
    CXRect m_clip;
};

// The four sides of a frame, one pixel wide; fewer where it is that thin.
std::vector<CXRect> get_sides(CXRect const &frame);

class Surface::Overlay {
public:
    Overlay(Surface &surface, CXRect const &frame); // black and white by turns; none when empty
    Overlay(Overlay const &) = delete;
    Overlay &operator=(Overlay const &) = delete;
    ~Overlay();

private:
    Surface &m_surface;
    std::vector<CXRect> m_sides;
    std::vector<Word> m_beneath;
};

} // namespace kortools::ui::win32
