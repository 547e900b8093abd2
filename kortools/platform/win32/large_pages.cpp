// SPDX-License-Identifier: MIT
#include "kortools/platform/large_pages.h"

namespace kortools::platform {

// Large pages exist for processes with the right to lock memory only, and never for heap blocks.
void prefer_large_pages(void *, std::size_t) noexcept { }

} // namespace kortools::platform
