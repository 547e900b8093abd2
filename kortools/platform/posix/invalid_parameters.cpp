// SPDX-License-Identifier: MIT
#include "kortools/platform/invalid_parameters.h"

namespace kortools::platform {

bool report_invalid_parameters(InvalidParameterReport)
{
    return false;
}

} // namespace kortools::platform
