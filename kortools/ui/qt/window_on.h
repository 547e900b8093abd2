// SPDX-License-Identifier: MIT
// WindowOn<CWnd>, <CScrollView>, <CEdit>: the library's interface of a window on a Surface. It may
// be destroyed by a handler that one of its own functions calls, so these hold what they use.
#pragma once

#include "kortools/ui/qt/surface.h"

#include <memory>

namespace kortools::ui::qt {

// What is behind a window of this back end.
class HasSurface {
public:
    HasSurface() = default;
    HasSurface(HasSurface const &) = delete;
    HasSurface &operator=(HasSurface const &) = delete;
    virtual ~HasSurface() = default;
    virtual std::shared_ptr<Surface> get_surface() const = 0;
};

template <class Interface> class WindowOn : public Interface, public HasSurface {
public:
    explicit WindowOn(std::shared_ptr<Surface> surface)
        : m_surface(std::move(surface))
    {
    }
    std::shared_ptr<Surface> get_surface() const override { return m_surface; }

    CXSize GetClientSize() const override { return m_surface->get_client_size(); }
    int GetTextWidth(wchar_t const *text, int length) const override
    {
        return m_surface->get_text_width(text, length);
    }
    bool HasScrollBar(ScrollBar bar) const override { return m_surface->has_scroll_bar(bar); }
    CXSize GetScrollBarSize() const override { return m_surface->get_scroll_bar_size(); }
    void SetScrollInfo(ScrollBar bar, ScrollRange const &range) override
    {
        hold()->set_scroll_info(bar, range);
    }
    void SetRedraw(bool redraw) override { m_surface->set_redraw(redraw); }
    void Invalidate(bool) override { m_surface->invalidate(); }
    void InvalidateRect(CXRect const &rect, bool) override { m_surface->invalidate(rect); }
    void UpdateWindow() override { hold()->update(); }
    void ShowRubberBand(CXRect const &rect) override { m_surface->show_rubber_band(rect); }
    void HideRubberBand() override { m_surface->hide_rubber_band(); }
    CXPoint GetCursorPos() const override { return m_surface->get_cursor_pos(); }
    void SetCursor(CursorShape shape) override { m_surface->set_cursor(shape); }
    bool IsKeyDown(unsigned int key) const override
    {
        return WindowThread::get().keys.is_down(key);
    }
    void SetCapture() override { m_surface->set_capture(); }
    void ReleaseCapture() override { m_surface->release_capture(); }
    bool WaitForInput(InputEvent &event) override { return hold()->wait_for_input(event); }
    void SetTimer(unsigned int id, unsigned int milliseconds) override
    {
        m_surface->set_timer(id, milliseconds);
    }
    void KillTimer(unsigned int id) override { m_surface->kill_timer(id); }
    int TrackPopupMenu(CXPoint const &position, CXArray<CXTString<wchar_t>> const &entries) override
    {
        return hold()->track_popup_menu(position, entries);
    }

private:
    std::shared_ptr<Surface> hold() const { return m_surface; }

    std::shared_ptr<Surface> m_surface;
};

} // namespace kortools::ui::qt
