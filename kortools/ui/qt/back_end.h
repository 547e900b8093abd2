// SPDX-License-Identifier: MIT
// The windows of Qt 6 Widgets.
#pragma once

#include "kortools/ui/back_end.h"
#include "kortools/ui/qt/export.h"

#include <memory>

class QWidget;

namespace kortools::ui::qt {

// Makes Qt the library's window system, and returns its back end. To be called on the main thread;
// creates a QApplication when the program has none yet, with the style and platform that the
// environment names.
KORTOOLS_QT_API BackEnd &install_back_end();

// A widget of the host's own, for the library's calls (CKorCoord, CKorTracker, CProgressDlg). Its
// events stay the host's; timers come to `handler`, which may be null. With a QAbstractScrollArea
// it is the viewport with its scroll bars. The widget must outlive the object.
KORTOOLS_QT_API std::unique_ptr<CWnd> attach_widget(QWidget *widget, WindowHandler *handler);

// A QLineEdit, QPlainTextEdit or QTextEdit of the host's own; a CXInvalidArgException for others.
KORTOOLS_QT_API std::unique_ptr<CEdit> attach_edit(QWidget *widget);

// The widget of a window of this back end, which a host may extend and a test may look at: the
// client area of a view, whose window() is the frame, or the dialog. Null for other windows.
KORTOOLS_QT_API QWidget *get_widget(CWnd &window);
KORTOOLS_QT_API QWidget *get_widget(ProgressWindow &window);

} // namespace kortools::ui::qt
