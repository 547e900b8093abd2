// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

unsigned int BrantisGetPluginVersion()
{
    return 0x40001;
}

int InitTest(int number)
{
    return number + 1;
}
