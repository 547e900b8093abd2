// SPDX-License-Identifier: MIT
// WindowHandler: what a window of a back end tells the code that works in it. All on the thread of
// the window. An exception that leaves a function is kept, passes no frame of the window system,
// and leaves the call that served the window's events: PumpMessages(), Run(), WaitForInput(),
// UpdateWindow(), TrackPopupMenu() or ShowMessageBox(). Until then no handler is called.
#pragma once

#include "kortools/ui/window.h"

namespace kortools::ui {

class WindowHandler {
public:
    WindowHandler() = default;
    WindowHandler(WindowHandler const &) = delete;
    WindowHandler &operator=(WindowHandler const &) = delete;
    virtual ~WindowHandler() = default;

    // `invalid` is the smallest rectangle around all that is painted. Nothing has been erased.
    virtual void OnPaint(CDC & /*dc*/, CXRect const & /*invalid*/) { }
    virtual void OnSize(CXSize const & /*client*/) { }

    // The user scrolled; the window shows the new position already.
    virtual void OnScroll(ScrollBar /*bar*/, int /*position*/) { }

    virtual void OnMouseMove(CXPoint const & /*position*/) { }
    virtual void OnLeftButtonDown(CXPoint const & /*position*/) { }
    virtual void OnLeftButtonUp(CXPoint const & /*position*/) { }
    virtual void OnRightButtonDown(CXPoint const & /*position*/) { }

    // By `steps` of the wheel, away from the user when positive.
    virtual void OnMouseWheel(CXPoint const & /*position*/, int /*steps*/) { }

    // The mouse rests or moves in the client area. True when the cursor was set; else it is an
    // arrow.
    virtual bool OnSetCursor(CXPoint const & /*position*/) { return false; }

    // False when the key is of no interest.
    virtual bool OnKeyDown(unsigned int /*key*/) { return false; }

    virtual void OnTimer(unsigned int /*id*/) { }

    // The user closes the window. True hides it; whoever made it deletes it later.
    virtual bool OnClose() { return true; }
};

} // namespace kortools::ui
