// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

PLUGIN_EXPORT int function_of_absent_library();
PLUGIN_EXPORT int function_of_present_library();

int function_of_present_library()
{
    return function_of_absent_library();
}
