// SPDX-License-Identifier: MIT
// ProgressWindow: the window behind CProgressDlg, without any rules of its own. Made by
// BackEnd::CreateProgressWindow(), hidden; deleting it closes it. From its thread only.
#pragma once

#include "kortools/core/xstring.h"

namespace kortools::ui {

// What the window tells. Exceptions are treated as those of a WindowHandler.
class ProgressWindowHandler {
public:
    ProgressWindowHandler() = default;
    ProgressWindowHandler(ProgressWindowHandler const &) = delete;
    ProgressWindowHandler &operator=(ProgressWindowHandler const &) = delete;
    virtual ~ProgressWindowHandler() = default;

    virtual void OnCancel() = 0; // the button, Escape, or the window's close box
    virtual void OnOk() = 0;     // the button of ShowOkButton(); then there is no OnCancel()
    virtual void OnTimer(unsigned int id) = 0;
};

// Bars are 0 (the main one, above) and 1. Their range is 0 to 100; what lies outside is put on the
// nearer end.
class ProgressWindow {
public:
    ProgressWindow() = default;
    ProgressWindow(ProgressWindow const &) = delete;
    ProgressWindow &operator=(ProgressWindow const &) = delete;
    virtual ~ProgressWindow() = default;

    virtual void Show(bool show) = 0;
    virtual bool IsVisible() const = 0;

    virtual void SetTitle(wchar_t const *text) = 0;  // of the window and of the line above the bars
    virtual void SetStatus(wchar_t const *text) = 0; // the line below the bars

    virtual void ShowBar(int bar, bool show) = 0; // with its label; bar 1 is hidden at first
    virtual void SetBarPos(int bar, int percent) = 0;
    virtual int GetBarPos(int bar) const = 0;
    virtual void SetBarStep(int bar, int percent) = 0;         // 10 at first
    virtual void StepBar(int bar) = 0;                         // beyond its end it begins again
    virtual void SetBarText(int bar, wchar_t const *text) = 0; // the label
    virtual void SetMarquee(int bar, bool on) = 0;             // runs without a position

    virtual void SetCancelText(wchar_t const *text) = 0;
    virtual void EnableCancel(bool enable) = 0;
    virtual void ShowCancel(bool show) = 0;

    // Centred below the texts, `width` pixels wide. It replaces Cancel.
    virtual void ShowOkButton(wchar_t const *text, int width) = 0;

    // The indicator on the application's sign in the task bar, where the system has one; -1 removes
    // it.
    virtual void SetTaskbarPos(int percent) = 0;

    virtual void UpdateWindow() = 0; // invalidates and paints now

    virtual void SetTimer(unsigned int id, unsigned int milliseconds) = 0;
    virtual void KillTimer(unsigned int id) = 0;
};

} // namespace kortools::ui
