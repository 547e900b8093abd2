// SPDX-License-Identifier: MIT
// The back end for Windows. What each service is here:
//
//   GetName             "win32"
//   ShowMessageBox      MessageBoxW on the calling thread; above the active window on the main one
//   ShowText            text_dialog.cpp: a read-only field, with a loop of its own
//   CreateProgressWindow progress_window.cpp: common controls, and ITaskbarList3 for the task bar
//   CreateViewFrame     view_frame.cpp, view_window.cpp: frame, view with the system's own scroll
//                       bars, status line; painted through a bitmap in memory (surface.cpp)
//   PumpMessages, Run, Quit   event_loop.cpp: PeekMessageW, GetMessageW, PostQuitMessage
//   attach_window, attach_edit  host_windows.cpp: subclasses of the host's windows
//   SetCapture, WaitForInput, timers, menus  window_services.cpp, for our windows and the host's
//   exceptions          HandlerCalls in event_loop.h: no frame of the system is unwound
//   resolution          the font and everything measured by it follow the screen; the host's
//                       manifest says whether the program knows of it
//
// Open points
//
// - A host that does not serve messages by PumpMessages(), Run() or another function of the library
//   never gets the exceptions of handlers, and no handler is called after the first.
// - A bar without a position moves with version 6 of the common controls only, which the host's
//   manifest asks for. Without it the bar stands still.
// - The rubber band in a host's own window is drawn by inverting: what the host paints meanwhile
//   outside of WM_PAINT leaves traces.
// - Message boxes and menus stay when a handler has thrown, until the user has answered.
#include "kortools/ui/win32/back_end.h"

#include "kortools/ui/win32/progress_window.h"
#include "kortools/ui/win32/text_dialog.h"
#include "kortools/ui/win32/view_frame.h"

namespace kortools::ui::win32 {
namespace {

class NativeBackEnd final : public BackEnd {
public:
    NativeBackEnd()
        : m_main_thread(GetCurrentThreadId())
    {
        INITCOMMONCONTROLSEX const controls { sizeof controls,
            ICC_STANDARD_CLASSES | ICC_PROGRESS_CLASS | ICC_BAR_CLASSES };
        InitCommonControlsEx(&controls); // fails where they need no such call
    }

    char const *GetName() const override { return "win32"; }
    int ShowMessageBox(wchar_t const *text, wchar_t const *title, unsigned int flags) override;
    void ShowText(CWnd *parent, wchar_t const *title, wchar_t const *text) override
    {
        show_text(get_top_level(get_handle(parent)), title, text);
    }
    std::unique_ptr<ProgressWindow> CreateProgressWindow(
        CWnd *parent, ProgressWindowHandler &handler) override
    {
        return std::make_unique<NativeProgressWindow>(get_top_level(get_handle(parent)), handler);
    }
    std::unique_ptr<ViewFrame> CreateViewFrame(
        WindowHandler &handler, ViewKind kind, wchar_t const *title) override
    {
        return std::make_unique<FrameWindow>(handler, kind, title);
    }
    bool PumpMessages() override { return get_event_loop().serve_waiting(); }
    int Run() override { return get_event_loop().run(); }
    void Quit(int result) override { get_event_loop().quit(result); }

private:
    DWORD m_main_thread;
};

// A box of another thread has no owner: the input of both threads would be tied together, and one
// that waits for the other would never get any.
int NativeBackEnd::ShowMessageBox(wchar_t const *text, wchar_t const *title, unsigned int flags)
{
    bool const is_main = GetCurrentThreadId() == m_main_thread;
    HWND const owner = is_main ? GetActiveWindow() : nullptr;
    UINT const modality = owner ? MB_APPLMODAL : MB_TASKMODAL | MB_SETFOREGROUND;
    int const answer
        = check(MessageBoxW(owner, text, title, (flags & ~UINT(MB_MODEMASK)) | modality));
    if (is_main)
        get_event_loop().rethrow();
    return (flags & MB_TYPEMASK) == MB_OK ? IDOK : answer; // the close box cancels
}

} // namespace

BackEnd &install_back_end()
{
    static NativeBackEnd s_back_end;
    set_back_end(&s_back_end);
    return s_back_end;
}

void *get_native_window(CWnd &window)
{
    return get_handle(&window);
}

} // namespace kortools::ui::win32
