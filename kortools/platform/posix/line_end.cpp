// SPDX-License-Identifier: MIT
#include "kortools/platform/line_end.h"

namespace kortools::platform {

std::string_view get_line_end()
{
    return "\n";
}

} // namespace kortools::platform
