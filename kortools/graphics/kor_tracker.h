// SPDX-License-Identifier: MIT
// CKorTracker: a rectangle in a window that the user moves and resizes by its handles, with the
// mouse or the keyboard, and draws from nothing (a rubber band). It keeps a minimum size while an
// edge is dragged and, with a constraint, an aspect ratio. CViewTracker is the one for rectangles
// of a zoomed document.
//
// Handles are numbered
//
//   0 --- 4 --- 1
//   |           |
//   7     8     5      8 is the inside, -1 is nothing
//   |           |
//   3 --- 6 --- 2
//
// by the rectangle's own edges: in one that is inverted 0 lies on the right. While the mouse is
// followed the window shows a frame; the tracker itself is drawn by the window's paint handler.
//
//   if (m_tracker.Track(window, point))       // in the mouse handler
//       Apply(m_tracker.GetRect());
//   else if (m_tracker.OnKey(key, &client))   // in the key handler
//       window->Invalidate(true);
//
// For the thread that owns the window.
#pragma once

#include "kortools/export.h"
#include "kortools/graphics/point.h"
#include "kortools/graphics/rect.h"

class CDC;
class CWnd;

class KORTOOLS_API CKorTracker {
public:
    enum Handle {
        nothing = -1,
        topLeft,
        topRight,
        bottomRight,
        bottomLeft,
        topSide,
        rightSide,
        bottomSide,
        leftSide,
        inside,
    };

    // Bits of the style. Without solidLine or dottedLine there is no frame.
    enum Style : unsigned int {
        solidLine = 1,
        dottedLine = 2,
        redLine = 4,
        hatchInside = 8,
        fixedHandleSize = 0x10, // handles do not shrink on small rectangles
        noHandles = 0x20,       // none are drawn; they can still be hit
    };

    enum Event {
        trackBegin,     // the mouse is captured
        rectChanged,    // by mouse or key
        trackEnd,       // the button was released
        trackCancelled, // the user gave up or changed nothing: the rectangle is what it was
    };

    // Called for each event of a drag; `data` is what was given with it.
    using Callback = void (*)(CKorTracker *tracker, Event event, void *data);

    CKorTracker() { Construct(); }
    CKorTracker(CRect const &rect, unsigned int style)
    {
        Construct();
        m_rect = rect;
        m_style = style;
    }
    CKorTracker(CKorTracker const &) = delete;
    CKorTracker &operator=(CKorTracker const &) = delete;
    virtual ~CKorTracker() = default;

    // The size of handles of trackers that are constructed from now on, in pixels, at least 1.
    static void SetNominalHandleSize(int size);
    static int GetNominalHandleSize();

    void Construct(); // everything as in a new tracker: solid line, no constraint, no callback

    // --- Properties

    unsigned int SetStyle(unsigned int style); // the old one
    void SetMinSize(CSize const &size) { m_minSize = size; }
    void SetAllowInvert(bool allow) { m_allowInvert = allow; } // dragging may turn it inside out

    // Any mode but 0 keeps height / width at `ratio` and leaves the corners as handles. Mode 1 lets
    // the height follow the width, 2 the width the height, others the shorter the longer. A ratio
    // of 0 becomes 0.01.
    void SetConstraint(int mode, float ratio);
    int GetConstraint() const { return m_constraintMode; }
    void SetCallback(Callback callback, void *data = nullptr);

    // The window whose Shift and Ctrl keys OnKey() asks for; Track() sets it, too. It must outlive
    // the tracker or be reset. Null, at first: no modifiers.
    void SetWnd(CWnd *wnd) { m_wnd = wnd; }

    CRect const &GetRect() const { return m_rect; }
    void SetRect(CRect const &rect) { m_rect = rect; }
    bool IsTracking() const { return m_trackedHandle != nothing; }

    // --- Handles

    int HitTest(CPoint const &point) const;        // a handle, which goes before the inside
    int HitTestHandles(CPoint const &point) const; // one of 0 to 7 or -1
    int NormalizeHit(int handle) const; // the one in its place if the rectangle was normalised
    virtual int GetHandleMask() const;  // bit n for handle n; sides only where there is room
    virtual int GetHandleSize(CRect const *rect = nullptr) const; // pixels; null: its own rectangle
    CRect GetHandleRect(int handle) const;
    CRect GetTrueRect() const; // normalised, and the handles

    // --- Display

    void Draw(CDC *dc) const;
    void DrawTrackerRect(CWnd *wnd) const;                // as the frame that follows the mouse
    bool SetCursor(CWnd *wnd, CPoint const &point) const; // false, nothing set, beside the tracker

    // --- Tracking. Captures the mouse, which was pressed at `point`, until the button is released.
    // True when the rectangle changed; a key Escape, the right button and the loss of the capture
    // restore it. A rectangle that was inverted is normalised at the end.

    bool Track(CWnd *wnd, CPoint const &point); // by the handle under the point
    bool TrackHandle(int handle, CWnd *wnd, CPoint const &point);
    bool TrackRubberBand(CWnd *wnd, CPoint const &point, bool allowInvert = true); // a new one

    // Puts the edges that a handle moves back to the minimum size, when it is not 8, and then
    // applies the constraint.
    virtual void AdjustRect(int handle, CRect &rect) const;

    // Makes the sides keep the ratio, moving the corner of the handle. Nothing for other handles
    // and without a constraint. `mode` is that of SetConstraint().
    void AdjustConstraint(int handle, CRect &rect, int mode) const;

    // An arrow key moves the rectangle by a pixel, with Shift its top or left edge, with Ctrl its
    // bottom or right one. 0 for other keys. `bounds` (or null) limits the result: what is moved
    // stays inside, and a change that cannot keep the ratio inside is not made.
    virtual int OnKey(unsigned int key, CRect const *bounds);

protected:
    virtual void OnRectChanged(CRect const &oldRect); // the rectangle is the new one
    virtual void OnTrackerCallback(Event event);      // tells the callback

    // What an arrow key makes of a rectangle, in steps of 1; `bounds` as for OnKey().
    CRect GetKeyResult(CRect const &rect, unsigned int key, CRect const *bounds) const;
    static bool IsArrowKey(unsigned int key);

    int GetTrackedHandle() const { return m_trackedHandle; } // -1 when none is dragged
    CWnd *GetWnd() const { return m_wnd; }
    CRect m_rect;

private:
    class Session;

    bool Drag(int handle, CWnd *wnd, CPoint const &point, CRect const &first);
    bool ReplaceRect(CRect const &rect);
    void Follow(CRect const &start, CSize const &distance);
    bool FollowMouse(CRect const &start, CPoint const &point);
    CRect GetFreeKeyResult(CRect const &rect, unsigned int key) const;

    unsigned int m_style;
    int m_handleSize; // nominal
    CSize m_minSize;
    int m_constraintMode;
    float m_ratio; // height / width
    bool m_allowInvert;
    int m_trackedHandle;
    Callback m_callback;
    void *m_callbackData;
    CWnd *m_wnd;
};
