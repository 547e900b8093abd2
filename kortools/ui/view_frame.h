// SPDX-License-Identifier: MIT
// ViewFrame: a top-level window with a scrolling view and a status line, for programs that have no
// windows of their own. Made by BackEnd::CreateViewFrame(); deleting it closes it.
#pragma once

#include "kortools/ui/pixels.h"
#include "kortools/ui/window.h"

namespace kortools::ui {

class ViewFrame {
public:
    ViewFrame() = default;
    ViewFrame(ViewFrame const &) = delete;
    ViewFrame &operator=(ViewFrame const &) = delete;
    virtual ~ViewFrame() = default;

    // What is scrolled, a CScrollView when the frame was made so. It lives as long as the frame.
    virtual CWnd &GetView() = 0;

    virtual void Show(bool show) = 0;
    virtual bool IsVisible() const = 0;
    virtual void SetTitle(wchar_t const *title) = 0;
    virtual void SetStatus(wchar_t const *text) = 0; // in the status line

    // So that the client area of the view has this size while it shows no scroll bars.
    virtual void SetViewSize(CXSize const &size) = 0;

    // What the view shows now, with the rubber band but without scroll bars; the frame must be
    // visible. For tests and pictures of the program.
    virtual Picture CaptureView() = 0;

    // The same of the whole frame, with scroll bars and status line; where a back end cannot, the
    // view alone.
    virtual Picture CaptureFrame() { return CaptureView(); }
};

} // namespace kortools::ui
