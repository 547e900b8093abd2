// SPDX-License-Identifier: MIT
// CKorCoord: where a document of whole units (pixels of an image) lies in the client area of a
// window, under a zoom. It keeps zoom and scroll position within their limits, fits and centres the
// document, and maps points, rectangles and polygons both ways. It draws nothing but the ground
// around the document and needs of the window what kortools/ui/window.h declares.
//
// Three systems of coordinates, all in whole numbers:
//
//   document   units from 0 to the size of the document
//   page       pixels: the scaled document at the page rectangle's origin, not scrolled yet
//   client     pixels of the client area: page less scroll position (also called viewport)
//
// The zoom is in pixels per unit. Arithmetic with it is that of floats; what an int cannot hold
// becomes the nearest number that it can. The window must outlive the object; both belong to one
// thread.
//
//   CKorCoord coord(window, imageSize);
//   coord.AutoFit(1, 0);        // from a command
//   coord.ClientSizeChange(size); // from the window's size handler
//   coord.ClientToDoc(point);   // from its mouse handler
#pragma once

#include "kortools/export.h"
#include "kortools/graphics/point.h"
#include "kortools/graphics/rect.h"

#include <memory>
#include <vector>

class CDC;
class CScrollView;
class CViewTracker;
class CWnd;

class KORTOOLS_API CKorCoord {
public:
    CKorCoord();
    CKorCoord(CWnd *wnd, CSize const &docSize);
    CKorCoord(CKorCoord const &) = delete;
    CKorCoord &operator=(CKorCoord const &) = delete;
    ~CKorCoord(); // deletes the trackers that are left

    // Binds a window and a document of `docSize` units: zoom 1 (limits 1/32 and 32), scrolled to
    // the top left. A window that is no scrolling view gets its scroll bars set. Negative sizes
    // count as 0.
    void Init(CWnd *wnd, CSize const &docSize);

    // --- Queries

    float GetZoom() const { return m_zoom; }
    CSize GetDocSize() const { return m_docSize; }
    CSize GetScrollPos() const { return m_scrollPos; } // pixels
    CWnd *GetWnd() const { return m_wnd; }
    CScrollView *GetView() const { return m_view; } // null when the window is none
    CPoint ClientCenter() const { return { m_clientSize.cx / 2, m_clientSize.cy / 2 }; }
    bool IsDocFitInView() const; // on both axes

    void GetVisDoc(CRect &rect) const;    // the units that are visible, in part at least
    void GetVisClient(CRect &rect) const; // where in the client area the document shows
    void GetVisPage(CRect &rect) const;   // the same in page coordinates

    // --- Zoom. The functions that change it return 1, or 0 when it stays as it is; then nothing
    // else is done either.

    // The zoom that would be set for `z`: with `snap` the nearer step of the ladder (1/32 1/16 1/8
    // 1/6 1/5 1/4 1/3 1/2 2/3 1 2 3 4 5 6 8 16 24 32; the upper one in the middle), within the
    // limits.
    float VerifyZoom(float z, int snap) const;

    // The next step of the ladder above or below the zoom.
    float GetDefaultRatio(int zoomIn) const;

    int SetZoom(float z, int snap);

    // And scrolls so that a point of the document comes to lie under the mouse or in the middle.
    int SetZoomAndCenter(float z, CPoint const &docPoint, int snap, int atCursor);
    int Zoom(int zoomIn); // one step, around the middle of what is visible

    // So that the whole document just fits, with 2 per cent left over for a `margin`; never above 1
    // unless `allowEnlarge`.
    int AutoFit(int margin, int allowEnlarge);

    // So that the longer side of a rectangle of the document fills the client area's width (when it
    // is wider than high) or height, and centred on it.
    int SetVisDoc(CRect const &rect);

    // --- Scrolling

    // Limits a scroll position to what there is to scroll; it is also the result.
    CPoint VerifyScrollPos(CPoint &pos) const;

    // Scrolls by `delta` pixels as far as possible; `delta` becomes the distance that was. 0 when
    // nothing moved.
    int Scroll(CSize &delta);

    // Pixels made a whole number of units, position down and size up, on the axes on which the
    // document is not smaller than the client area.
    CPoint DiscretCoord(CPoint const &point) const;
    CSize DiscretSize(CSize const &size) const;

    // --- Window

    void ClientSizeChange(CSize const &size); // to be told by the window
    void UpdateWindow();                      // asks the window for its size and paints it anew

    // Computes the page rectangle and the visible document anew, makes the scroll position whole
    // units and tells the window what there is to scroll. Changes do this by themselves.
    void InitInfo();

    // Fills the client area around the document, and behind it, too, with bit 0 of `flags`.
    void EraseBackground(CDC *dc, unsigned long colorWord, int flags) const;

    // --- Mapping. Into the document: 1, or 0 when something lay outside and was put on the edge.

    int ClientToDoc(CPoint &point) const; // to the unit under it, truncating toward zero

    // To the units that the rectangle touches. It is normalised.
    int ClientToDoc(CRect &rect) const;
    int ClientToDoc(CPoint *points, int count) const;

    // To the pixel at the unit's top left corner, truncating toward zero.
    void DocToPage(CPoint &point) const { DocToPage(&point, 1); }
    void DocToPage(CRect &rect) const;
    void DocToPage(CPoint *points, int count) const;
    void DocToViewport(CPoint &point) const { DocToViewport(&point, 1); }
    void DocToViewport(CRect &rect) const;
    void DocToViewport(CPoint *points, int count) const;

    // --- Trackers

    // Lets the user draw a rectangle from `point` of the client area on, with a constraint as
    // CKorTracker::SetConstraint() takes it (0 for none). Stores the units that it touches and
    // returns 1; 0, with `docRect` unchanged, when the user gave up or drew nothing.
    int DoRubberBandTracker(CRect &docRect, CPoint const &point, int mode, float ratio);

    // A tracker on a rectangle of the document, which follows zoom and scrolling until it is
    // released.
    CViewTracker *InitTracker(
        CRect const &docRect, unsigned int style = 0, int mode = 0, float ratio = 0);
    void ReleaseTracker(CViewTracker *tracker); // null is allowed

private:
    void ApplyZoom(float zoom);
    void LimitScrollPos();
    void UpdateScrollInfo();
    void UpdateVisDoc();
    void MapFromDoc(CPoint *points, int count, CPoint const &origin) const;
    CPoint GetScrolledOrigin() const { return m_page.TopLeft() - CPoint(m_scrollPos); }

    CWnd *m_wnd = nullptr;
    CScrollView *m_view = nullptr;
    CSize m_clientSize; // pixels
    CSize m_scaledSize; // the document in pixels
    CSize m_scrollPos;  // pixels, 0 to scaled size - client size
    CSize m_docSize;
    CRect m_visDoc; // right and bottom are inside; within 0 to size - 1
    CRect m_page;   // the scaled document in the client area, centred where it is smaller
    float m_minZoom = 1 / 32.0F;
    float m_maxZoom = 32;
    float m_zoom = 1;
    CSize m_snappedPos;      // made whole units last, at this zoom: below 1, doing it again would
    float m_snappedZoom = 0; // creep towards 0
    std::vector<std::unique_ptr<CViewTracker>> m_trackers;
};
