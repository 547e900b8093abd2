// SPDX-License-Identifier: MIT
// The window behind the progress dialog: a title, two bars with labels, a status and a button. What
// is hidden takes no room.
#pragma once

#include "kortools/ui/progress_window.h"
#include "kortools/ui/win32/task_bar.h"
#include "kortools/ui/win32/window_services.h"

#include <array>

namespace kortools::ui::win32 {

class NativeProgressWindow final : public ProgressWindow {
public:
    NativeProgressWindow(HWND owner, ProgressWindowHandler &handler);
    ~NativeProgressWindow() override;

    void Show(bool show) override;
    bool IsVisible() const override { return IsWindowVisible(m_handle) != 0; }
    void SetTitle(wchar_t const *text) override;
    void SetStatus(wchar_t const *text) override { SetWindowTextW(m_status, text); }
    void ShowBar(int bar, bool show) override;
    void SetBarPos(int bar, int percent) override;
    int GetBarPos(int bar) const override { return GetBar(bar).position; }
    void SetBarStep(int bar, int percent) override { GetBar(bar).step = percent; }
    void StepBar(int bar) override;
    void SetBarText(int bar, wchar_t const *text) override
    {
        SetWindowTextW(GetBar(bar).label, text);
    }
    void SetMarquee(int bar, bool on) override;
    void SetCancelText(wchar_t const *text) override { SetWindowTextW(m_cancel, text); }
    void EnableCancel(bool enable) override { EnableWindow(m_cancel, enable); }
    void ShowCancel(bool show) override;
    void ShowOkButton(wchar_t const *text, int width) override;
    void SetTaskbarPos(int percent) override;
    void UpdateWindow() override;
    void SetTimer(unsigned int id, unsigned int milliseconds) override;
    void KillTimer(unsigned int id) override;

    LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam);
    HWND m_handle = nullptr; // set by its first message

private:
    struct Bar {
        HWND label;
        HWND control;
        bool is_shown = true;
        int position = 0; // percent; the control forgets it while it runs without one
        int step = 10;
    };

    Bar &GetBar(int bar) { return m_bars.at(std::size_t(bar)); }
    Bar const &GetBar(int bar) const { return m_bars.at(std::size_t(bar)); }
    void CreateControls();
    void LayOut();
    int Place(HWND control, int y, int height) const;
    void OnButton();
    int scale_x(int units) const { return MulDiv(units, m_units.cx, 4); }
    int scale_y(int units) const { return MulDiv(units, m_units.cy, 8); }
    bool HasOk() const { return m_ok_width > 0; }

    ProgressWindowHandler &m_handler;
    HWND m_owner;
    CXSize m_units; // of the font
    HWND m_line = nullptr;
    std::array<Bar, 2> m_bars {};
    HWND m_status = nullptr;
    HWND m_cancel = nullptr;
    HWND m_ok = nullptr;
    bool m_shows_cancel = true;
    int m_ok_width = 0; // pixels; 0 while there is no such button
    bool m_was_shown = false;
    std::optional<Timers> m_timers;
    TaskBar m_task_bar;
};

} // namespace kortools::ui::win32
