// SPDX-License-Identifier: MIT
// The frame: a top-level window that holds a view and a status line.
#pragma once

#include "kortools/ui/win32/view_window.h"

namespace kortools::ui::win32 {

class FrameWindow final : public ViewFrame {
public:
    FrameWindow(WindowHandler &handler, ViewKind kind, wchar_t const *title);
    ~FrameWindow() override;

    CWnd &GetView() override { return *m_view; }
    void Show(bool show) override;
    bool IsVisible() const override { return IsWindowVisible(m_handle) != 0; }
    void SetTitle(wchar_t const *title) override { SetWindowTextW(m_handle, title); }
    void SetStatus(wchar_t const *text) override;
    void SetViewSize(CXSize const &size) override;
    Picture CaptureView() override { return m_view->Capture(); }
    Picture CaptureFrame() override;

    LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam);
    HWND m_handle = nullptr; // set by its first message

private:
    void LayOut();
    void OnClose();

    WindowHandler &m_handler;
    HWND m_status_line = nullptr;
    std::unique_ptr<ViewWindow> m_view;
};

} // namespace kortools::ui::win32
