// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

unsigned int BrantisGetPluginVersion()
{
    return 0x50000;
}
