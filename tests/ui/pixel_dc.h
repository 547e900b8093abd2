// SPDX-License-Identifier: MIT
// PixelDC: a drawing surface of pixels in memory.
#pragma once

#include "kortools/ui/window.h"

namespace kor_test {

using kortools::ui::Picture;

class PixelDC : public CDC {
public:
    PixelDC(Picture &picture, CXRect const &clip)
        : m_picture(picture)
        , m_clip(clip)
    {
    }
    void FillRect(CXRect const &rect, CRGBColor const &color) override;
    void FillPattern(CXRect const &rect, kortools::ui::HatchPattern const &pattern,
        CRGBColor const &color) override;
    void DrawFrame(CXRect const &rect, kortools::ui::Pen const &pen) override;
    void DrawLine(CXPoint const &from, CXPoint const &to, kortools::ui::Pen const &pen) override;
    void DrawString(
        CXPoint const &position, wchar_t const *text, int length, CRGBColor const &color) override;
    void DrawPixels(
        CXRect const &target, kortools::ui::Pixels const &picture, CXRect const &part) override;
    CXRect GetClipBox() const override { return m_clip; }

private:
    template <class Color> void draw(CXRect const &rect, Color const &color_at);

    Picture &m_picture;
    CXRect m_clip;
};

} // namespace kor_test
