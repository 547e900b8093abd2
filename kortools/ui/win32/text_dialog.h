// SPDX-License-Identifier: MIT
// The dialog that shows a text of many lines.
#pragma once

#include "kortools/ui/win32/native.h"

namespace kortools::ui::win32 {

// Returns when the user has closed it, or the program ends. `owner`, which may be null, takes no
// input meanwhile.
void show_text(HWND owner, wchar_t const *title, wchar_t const *text);

} // namespace kortools::ui::win32
