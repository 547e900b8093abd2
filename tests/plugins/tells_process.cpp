// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

#include <unistd.h>

unsigned int BrantisGetPluginVersion()
{
    return static_cast<unsigned int>(getpid());
}
