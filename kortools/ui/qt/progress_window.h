// SPDX-License-Identifier: MIT
#pragma once

#include "kortools/ui/back_end.h"

#include <memory>

class QWidget;

namespace kortools::ui::qt {

std::unique_ptr<ProgressWindow> make_progress_window(
    QWidget *parent, ProgressWindowHandler &handler);

// The window on the screen; null for one that is not of this back end.
QWidget *find_progress_widget(ProgressWindow &window);

} // namespace kortools::ui::qt
