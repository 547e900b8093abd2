// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

PLUGIN_EXPORT int function_of_absent_library();

unsigned int BrantisGetPluginVersion()
{
    return 0x50000;
}

int InitTest(int number)
{
    return number + function_of_absent_library();
}
