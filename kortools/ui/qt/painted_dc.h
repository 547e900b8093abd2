// SPDX-License-Identifier: MIT
// PaintedDC: a drawing surface on a widget, for the time of its paint event.
#pragma once

#include "kortools/ui/window.h"

#include <QPainter>
#include <QRegion>

#include <cstdint>

class QImage;
class QWidget;

namespace kortools::ui::qt {

class PaintedDC : public CDC {
public:
    // `invalid` is to be painted, all that the widget's event is about or a part of it.
    PaintedDC(QWidget &widget, QRegion const &invalid, QRegion const &event_region);

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
    void draw_side(CXRect const &rect, Pen const &pen);
    void draw_slope(CXPoint const &from, CXPoint const &to, Pen const &pen);

    QPainter m_painter;
    QRegion m_invalid;
    CXRect m_clip; // the box around it
};

// The image of pixels of 0xAARRGGBB that is painted on, and where the widget lies in it. Null when
// it is none, does not hold all of `needed`, which is a part of the widget, or has pixels of
// another size.
QImage *get_painted_image(QPainter const &painter, QRect const &needed, QPoint &origin);

} // namespace kortools::ui::qt
