// SPDX-License-Identifier: MIT
#include "tests/plugins/plugin.h"

int InitTest(int number)
{
    return number + 1;
}
