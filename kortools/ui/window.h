// SPDX-License-Identifier: MIT
// CWnd, CScrollView and CDC: what the library asks of a window and of its drawing surface, for a
// windowing layer to implement. All coordinates are those of the client area, in pixels.
//
// A back end must implement everything here; the library calls it from the thread that owns the
// window only. What a call does not mention it leaves alone: setting the scroll range does not
// scroll the contents, invalidating does not paint. A pen, pattern or cursor that it cannot create
// it reports by an exception, which passes through the library.
#pragma once

#include "kortools/graphics/point.h"
#include "kortools/graphics/rect.h"
#include "kortools/graphics/rgb_color.h"

#include <array>

class CScrollView;

namespace kortools::ui {

enum class ScrollBar { Horizontal, Vertical };

enum class CursorShape {
    Arrow,
    SizeDiagonal,
    SizeAntidiagonal,
    SizeHorizontal,
    SizeVertical,
    Move
};

// Numbers of keys, as the window system has them. Others are told by their number, too.
enum Key : unsigned int {
    KeyShift = 0x10,
    KeyControl = 0x11,
    KeyEscape = 0x1B,
    KeyLeft = 0x25,
    KeyUp = 0x26,
    KeyRight = 0x27,
    KeyDown = 0x28,
};

// The scroll bar shows `page` of `size`, from `position` on; it hides when the page holds all.
struct ScrollRange {
    int size;
    int page;
    int position;
};

struct InputEvent {
    enum class Kind { MouseMove, LeftButtonUp, RightButtonDown, KeyDown, CaptureLost };
    Kind kind;
    CXPoint position;     // of the mouse
    unsigned int key = 0; // of KeyDown
};

struct Pen { // one pixel wide
    enum class Line { Solid, Dotted };
    CRGBColor color;
    Line line = Line::Solid;
};

// Rows from the top; the highest bit is the leftmost pixel. Set bits are drawn.
using HatchPattern = std::array<unsigned char, 8>;

} // namespace kortools::ui

class CDC {
public:
    CDC() = default;
    CDC(CDC const &) = delete;
    CDC &operator=(CDC const &) = delete;
    virtual ~CDC() = default;

    virtual void FillRect(CXRect const &rect, CRGBColor const &color) = 0;
    virtual void FillPattern(
        CXRect const &rect, kortools::ui::HatchPattern const &pattern, CRGBColor const &color)
        = 0;
    virtual void DrawFrame(CXRect const &rect, kortools::ui::Pen const &pen) = 0; // inside `rect`
};

class CWnd {
public:
    CWnd() = default;
    CWnd(CWnd const &) = delete;
    CWnd &operator=(CWnd const &) = delete;
    virtual ~CWnd() = default;

    // The window as a scrolling view, or null.
    virtual CScrollView *GetScrollView() { return nullptr; }

    virtual CXSize GetClientSize() const = 0; // without the scroll bars that it shows

    // --- Scroll bars

    virtual bool HasScrollBar(kortools::ui::ScrollBar bar) const = 0; // shown now
    virtual CXSize GetScrollBarSize() const = 0; // width of a vertical, height of a horizontal one
    virtual void SetScrollInfo(kortools::ui::ScrollBar bar, kortools::ui::ScrollRange const &range)
        = 0;

    // --- Painting

    virtual void SetRedraw(bool redraw) = 0; // while off nothing shows
    virtual void Invalidate(bool erase) = 0; // the whole client area
    virtual void InvalidateRect(CXRect const &rect, bool erase) = 0;
    virtual void UpdateWindow() = 0; // paints now what is invalid

    // The frame that follows the mouse, above everything else in the client area.
    virtual void ShowRubberBand(CXRect const &rect) = 0; // normalised; replaces the last one
    virtual void HideRubberBand() = 0;

    // --- Input

    virtual CXPoint GetCursorPos() const = 0; // of the mouse; may lie outside
    virtual void SetCursor(kortools::ui::CursorShape shape) = 0;
    virtual bool IsKeyDown(unsigned int key) const = 0;
    virtual void SetCapture() = 0; // the mouse, wherever it is, until ReleaseCapture()
    virtual void ReleaseCapture() = 0;

    // Waits for the next event while the mouse is captured, serving everything else that arrives
    // for the thread's windows, and stores it. False when no more will come: the window or the
    // program ends.
    virtual bool WaitForInput(kortools::ui::InputEvent &event) = 0;
};

// A window that scrolls its contents itself.
class CScrollView : public CWnd {
public:
    CScrollView *GetScrollView() override { return this; }

    // The extent of all there is to scroll, and how far one step of a scroll bar goes.
    virtual void SetScrollSizes(CXSize const &total, CXSize const &step) = 0;
    virtual void ScrollToPosition(CXPoint const &position) = 0;
};
