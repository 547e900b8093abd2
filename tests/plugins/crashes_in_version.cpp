// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

unsigned int BrantisGetPluginVersion()
{
    *static_cast<int volatile *>(nullptr) = 1;
    return 0x50000;
}

int InitTest(int number)
{
    return number + 1;
}
