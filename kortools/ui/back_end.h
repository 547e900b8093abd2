// SPDX-License-Identifier: MIT
// BackEnd: a window system, as far as the library shows anything itself. There is one for Windows
// in the library (kortools/ui/win32/back_end.h) and one for Qt in a library of its own
// (kortools/ui/qt/back_end.h). A program installs the one that it wants at its start, on its main
// thread, which owns all windows of the library.
//
// Without a back end there are no windows: message boxes go to standard error and answer with their
// default button, dialogs that are asked for are not created.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"
#include "kortools/ui/progress_window.h"
#include "kortools/ui/view_frame.h"
#include "kortools/ui/window_handler.h"

#include <memory>

namespace kortools::ui {

enum class ViewKind {
    Plain,    // a CWnd, whose scroll bars its user sets
    Scrolling // a CScrollView
};

// All functions but ShowMessageBox() are called on the main thread. What cannot be created costs a
// CXResourceException.
class BackEnd {
public:
    BackEnd() = default;
    BackEnd(BackEnd const &) = delete;
    BackEnd &operator=(BackEnd const &) = delete;
    virtual ~BackEnd() = default;

    virtual char const *GetName() const = 0; // "win32", "qt"

    // Shows the text and waits for a button. Flags and answers are those of
    // kortools/platform/message_box.h; the title is the product's name. From any thread; from
    // others than the main one it waits until that one pumps messages, where the system wants it.
    virtual int ShowMessageBox(wchar_t const *text, wchar_t const *title, unsigned int flags) = 0;

    // A dialog that shows a text of many lines, which can be selected, until the user closes it.
    // Null, or the window that is disabled meanwhile.
    virtual void ShowText(CWnd *parent, wchar_t const *title, wchar_t const *text) = 0;

    // `parent` may be null; it must outlive the window. The handler, too.
    virtual std::unique_ptr<ProgressWindow> CreateProgressWindow(
        CWnd *parent, ProgressWindowHandler &handler)
        = 0;

    // Hidden at first. The handler may be told a size before the frame is returned.
    virtual std::unique_ptr<ViewFrame> CreateViewFrame(
        WindowHandler &handler, ViewKind kind, wchar_t const *title)
        = 0;

    // Serves all events that wait for the thread's windows. False once the program is to end.
    virtual bool PumpMessages() = 0;

    // Serves events until Quit(), whose number is the result.
    virtual int Run() = 0;
    virtual void Quit(int result) = 0;
};

// Installs a back end, which must stay until it is replaced; null removes it. Message boxes and
// measured texts of the library go through it from now on. Returns the one before. Thread safe, but
// not while another thread uses the one before.
KORTOOLS_API BackEnd *set_back_end(BackEnd *back_end);
KORTOOLS_API BackEnd *get_back_end(); // null when there is none

} // namespace kortools::ui
