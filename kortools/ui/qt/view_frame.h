// SPDX-License-Identifier: MIT
#pragma once

#include "kortools/ui/back_end.h"

#include <memory>

namespace kortools::ui::qt {

std::unique_ptr<ViewFrame> make_view_frame(
    WindowHandler &handler, ViewKind kind, wchar_t const *title);

} // namespace kortools::ui::qt
