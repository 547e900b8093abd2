// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

PLUGIN_EXPORT int function_of_absent_library();

int function_of_absent_library()
{
    return 1;
}
