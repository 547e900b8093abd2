// SPDX-License-Identifier: MIT
// The windows of Windows.
#pragma once

#include "kortools/export.h"
#include "kortools/ui/back_end.h"

#include <memory>

namespace kortools::ui::win32 {

// Makes the back end of Windows the library's, and returns it. To be called on the main thread.
// Only in the library for Windows.
KORTOOLS_API BackEnd &install_back_end();

// A window of the host's own, an HWND, for the library's calls (CKorCoord, CKorTracker,
// CProgressDlg). Its messages stay the host's; timers come to `handler`, which may be null. The
// native window must outlive the object.
KORTOOLS_API std::unique_ptr<CWnd> attach_window(void *native_window, WindowHandler *handler);

// An edit control of the host's own.
KORTOOLS_API std::unique_ptr<CEdit> attach_edit(void *native_window);

// The HWND of a window of this back end: of a frame's view, or what was attached. Null for others.
KORTOOLS_API void *get_native_window(CWnd &window);

} // namespace kortools::ui::win32
