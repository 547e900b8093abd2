// SPDX-License-Identifier: MIT
// A picture in a window: zoomed along the ladder, fitted, scrolled, with a rectangle that the user
// draws and drags. Everything is the library's own; this is what ties it together.
//
//   + - wheel     zoom in and out         1 F          100 per cent, fit
//   left drag     draw or drag the frame  L            lock its proportions
//   arrows        move the frame by a unit, with Shift or Ctrl an edge; scroll without one
//   Escape        remove the frame, or close
//   Page Up/Down  the previous or next file
#pragma once

#include "kortools/graphics/kor_coord.h"
#include "kortools/graphics/view_tracker.h"
#include "kortools/ui/back_end.h"

#include <functional>
#include <memory>

namespace viewer {

using Text = CXTString<wchar_t>;

class ViewWindow : private kortools::ui::WindowHandler {
public:
    // `turn_page` is called with -1 or 1 for the previous and the next file.
    ViewWindow(kortools::ui::BackEnd &back_end, std::function<void(int)> turn_page);
    ~ViewWindow() override;

    CWnd &GetView() { return m_frame->GetView(); }
    kortools::ui::ViewFrame &GetFrame() { return *m_frame; }
    CKorCoord const &GetCoord() const { return m_coord; }

    // Shows a picture as a whole, never enlarged. `name` is for the title.
    void ShowPicture(kortools::ui::Picture picture, Text const &name);

    void SetZoom(float zoom);
    void Fit();

    // Frames a part of the picture, in its units; an empty rectangle removes the frame.
    void Select(CRect const &rect);
    CRect GetSelection() const; // empty when there is none

    // Keeps height / width of the frame as it is now, or at `ratio` when that is not 0.
    void LockProportions(bool lock, float ratio = 0);

    Text GetStatus() const;

private:
    void OnPaint(CDC &dc, CXRect const &invalid) override;
    void OnSize(CXSize const &client) override;
    void OnScroll(kortools::ui::ScrollBar bar, int position) override;
    void OnMouseMove(CXPoint const &position) override;
    void OnLeftButtonDown(CXPoint const &position) override;
    void OnMouseWheel(CXPoint const &position, int steps) override;
    bool OnSetCursor(CXPoint const &position) override;
    bool OnKeyDown(unsigned int key) override;
    bool OnClose() override;

    static void OnTracker(CKorTracker *tracker, CKorTracker::Event event, void *window);
    bool OnArrow(unsigned int key);
    void ZoomAt(CXPoint const &position, int steps);
    void DragFrame(CXPoint const &position);
    void UpdateStatus();
    CXRect GetFrameRect() const; // with its handles, in pixels; empty without a frame

    kortools::ui::BackEnd &m_backEnd;
    std::function<void(int)> m_turnPage;
    kortools::ui::Picture m_picture;
    std::unique_ptr<kortools::ui::ViewFrame> m_frame;
    CKorCoord m_coord;
    CViewTracker *m_tracker = nullptr; // the coordinates'
    bool m_isLocked = false;
    float m_ratio = 0; // height / width
    CXPoint m_mouse { -1, -1 };
};

} // namespace viewer
