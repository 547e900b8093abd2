// SPDX-License-Identifier: MIT
// TaskBar: the progress that the task bar shows on a window's sign. Systems without it, or without
// a task bar, show nothing; no failure is told.
#pragma once

#include "kortools/ui/win32/native.h"

struct ITaskbarList3;

namespace kortools::ui::win32 {

class TaskBar {
public:
    TaskBar() = default;
    TaskBar(TaskBar const &) = delete;
    TaskBar &operator=(TaskBar const &) = delete;
    ~TaskBar();

    void Show(HWND window, int percent); // -1: none

private:
    void Connect();

    bool m_has_tried = false;
    bool m_is_initialized = false; // the thread's use of components, by this object
    ITaskbarList3 *m_list = nullptr;
};

} // namespace kortools::ui::win32
