// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

#include "kortools/core/prime.h"

unsigned int BrantisGetPluginVersion()
{
    return 0x50000;
}

int InitTest(int number)
{
    return static_cast<int>(NextPrime(static_cast<unsigned int>(number)));
}
