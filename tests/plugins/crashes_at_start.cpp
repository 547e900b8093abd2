// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

#include <cstdlib>

[[gnu::constructor]] static void crash()
{
    std::abort();
}

unsigned int BrantisGetPluginVersion()
{
    return 0x50000;
}

int InitTest(int number)
{
    return number + 1;
}
