// SPDX-License-Identifier: MIT
// CWnd, CScrollView, CEdit and CDC: what the library asks of a window and of its drawing surface,
// for a back end to implement (kortools/ui/back_end.h). All coordinates are those of the client
// area, in pixels.
//
// The library calls them from the thread that owns the window only. What a call does not mention it
// leaves alone: setting the scroll range does not scroll the contents, invalidating does not paint.
// A window, pen, pattern or cursor that cannot be created costs a CXResourceException.
#pragma once

#include "kortools/core/array.h"
#include "kortools/core/xstring.h"

#include "kortools/graphics/point.h"
#include "kortools/graphics/rect.h"
#include "kortools/graphics/rgb_color.h"
#include "kortools/ui/pixels.h"

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
    KeyReturn = 0x0D,
    KeyEscape = 0x1B,
    KeyPageUp = 0x21,
    KeyPageDown = 0x22,
    KeyEnd = 0x23,
    KeyHome = 0x24,
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

    // The pixels of the rectangle, right and bottom excluded, in a colour.
    virtual void FillRect(CXRect const &rect, CRGBColor const &color) = 0;
    // The set pixels of the pattern only.
    virtual void FillPattern(
        CXRect const &rect, kortools::ui::HatchPattern const &pattern, CRGBColor const &color)
        = 0;
    virtual void DrawFrame(CXRect const &rect, kortools::ui::Pen const &pen) = 0; // inside `rect`

    // Without the pixel at `to`.
    virtual void DrawLine(CXPoint const &from, CXPoint const &to, kortools::ui::Pen const &pen) = 0;

    // One line in the window's font on what is there, its top left corner at `position`.
    virtual void DrawString(
        CXPoint const &position, wchar_t const *text, int length, CRGBColor const &color)
        = 0;

    // The `part` of a picture, which must lie inside it, made to fill `target`: the pixel under the
    // middle of each pixel of the target, never mixed. Alpha is not looked at.
    virtual void DrawPixels(
        CXRect const &target, kortools::ui::Pixels const &picture, CXRect const &part)
        = 0;

    virtual CXRect GetClipBox() const = 0; // what is painted at all
};

// A window, as far as the library draws in it and listens to it.
class CWnd {
public:
    CWnd() = default;
    CWnd(CWnd const &) = delete;
    CWnd &operator=(CWnd const &) = delete;
    virtual ~CWnd() = default;

    // The window as a scrolling view, or null.
    virtual CScrollView *GetScrollView() { return nullptr; }

    virtual CXSize GetClientSize() const = 0; // without the scroll bars that it shows

    // The width of one line in the window's font.
    virtual int GetTextWidth(wchar_t const *text, int length) const = 0;

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

    // --- Timers and menus

    // From now on WindowHandler::OnTimer() is called with `id` about every `milliseconds`, never
    // twice for a time that was missed. Replaces a timer of the same number.
    virtual void SetTimer(unsigned int id, unsigned int milliseconds) = 0;
    virtual void KillTimer(unsigned int id) = 0;

    // Shows the entries, an empty one as a separator, with `position` at its top left corner, and
    // waits. "&" marks the next character as a key, "&&" is one "&". The index of the chosen entry,
    // or -1.
    virtual int TrackPopupMenu(CXPoint const &position, CXArray<CXTString<wchar_t>> const &entries)
        = 0;
};

// A window that scrolls its contents itself.
class CScrollView : public CWnd {
public:
    CScrollView *GetScrollView() override { return this; }

    // The extent of all there is to scroll, and how far one step of a scroll bar goes.
    virtual void SetScrollSizes(CXSize const &total, CXSize const &step) = 0;
    virtual void ScrollToPosition(CXPoint const &position) = 0;
};

// A field for one line or more of text.
class CEdit : public CWnd {
public:
    virtual CXTString<wchar_t> GetText() const = 0;
    virtual void SetText(wchar_t const *text) = 0;

    // What is selected, in characters: from `start` to `end`, which are equal where the caret only
    // stands.
    virtual void GetSel(int &start, int &end) const = 0;
    virtual void SetSel(int start, int end) = 0;
    virtual void ReplaceSel(wchar_t const *text) = 0; // and places the caret behind it
};
